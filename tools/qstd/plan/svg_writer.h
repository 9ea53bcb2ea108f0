/**
 * @file svg_writer.h
 * The few SVG elements that a plan is made of. All lengths in millimetres.
 */
#ifndef QSTD_SVG_WRITER_H
#define QSTD_SVG_WRITER_H

#include "plan/plan_labels.h"

#include <string>
#include <string_view>
#include <vector>

namespace qstd {

enum class TextAnchor
{
    START,
    MIDDLE,
    END
};

struct TextStyle
{
    double size = 2.8;
    TextAnchor anchor = TextAnchor::START;
    bool isBold = false;
    bool isUpright = false; /**< turned a quarter circle, read from the right */
    double turn = 0.0;      /**< about its base point, degrees, clockwise; for what is not upright */
};

/** Width of a text in a sans-serif face, on the safe side. */
double TextWidth(std::string_view text, double size);

/** The text, shortened in its middle until it fits: names often differ at their end. */
std::string FittedText(std::string_view text, double size, double width);

/** The text in lines that fit, broken at blanks; a word that is too long is shortened. */
std::vector<std::string> WrappedText(std::string_view text, double size, double width);

class SvgWriter
{
public:
    SvgWriter(double width, double height, std::string_view title);

    /** `look` holds presentation attributes, such as stroke-width="0.2". */
    void Line(const SheetLine& line, std::string_view look);
    void Box(const SheetBox& box, std::string_view look);
    void Circle(SheetPoint centre, double radius, std::string_view look);
    void Polyline(const std::vector<SheetPoint>& corners, std::string_view look);

    /** Circular arcs of one radius through the points, each less than half a circle. */
    void Arcs(const std::vector<SheetPoint>& points, double radius, bool isClockwise, std::string_view look);

    void Polygon(const std::vector<SheetPoint>& corners, std::string_view look);

    /** `turn` in degrees, clockwise, of the first half axis from the right. */
    void Ellipse(SheetPoint centre, double first, double second, double turn, std::string_view look);

    /** Text on its base line. */
    void Text(SheetPoint base, std::string_view text, const TextStyle& style);

    /** The finished document. */
    [[nodiscard]] std::string Finish() const;

private:
    std::string document;
};

} // namespace qstd

#endif
