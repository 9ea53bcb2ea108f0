/**
 * @file figure_dxf.h
 * A figure for drawing programs: DXF of release 12 (AC1009) in ASCII, which all of them read.
 */
#ifndef QSTD_FIGURE_DXF_H
#define QSTD_FIGURE_DXF_H

#include "plan/figure.h"
#include "text/unit.h"

#include <functional>
#include <string>
#include <string_view>

namespace qstd {

/**
 * Writes each part as it comes and keeps none. X is the easting, Y the northing and Z the height where it is known, in
 * site coordinates also for an elevation; a comment (group 999) says so. Title and notes are comments, too.
 *
 * | part  | entity                | layer                                                                           |
 * |-------|-----------------------|---------------------------------------------------------------------------------|
 * | point | POINT, TEXT its name  | POINTS_GIVEN, _COMPUTED, _OTHER, _STATION, _SIGHTED, _FOOT; NAMES               |
 * | line  | LINE, TEXT its label  | REFERENCE, RESULT, SIGHT, OFFSET, CONSTRUCTION; LABELS                          |
 * | arc   | ARC or CIRCLE, as line | as a line                                                                      |
 * | tick  | LINE, TEXT its label  | STATIONING; LABELS                                                              |
 *
 * Parts with numbers that are not finite are skipped.
 */
class FigureDxf : public FigureWriter
{
public:
    /**
     * @param sinkOfText  takes the document in pieces
     * @param heightOfText of names and labels, in the unit; 1 when it is no positive number
     */
    FigureDxf(std::function<void(std::string_view)> sinkOfText, LinearUnit unit, double heightOfText);

    void Begin(const FigureView& view) override;
    void Add(const FigurePoint& point) override;
    void Add(const FigureLine& line) override;
    void Add(const FigureArc& arc) override;
    void Add(const FigureTick& tick) override;
    void Note(const std::string& text) override;

    /** Ends the document; nothing may be added afterwards. */
    void Finish();

private:
    std::function<void(std::string_view)> sink;
    double textHeight;
};

/** Text as a reader of release 12 understands it: at most 255 characters, beyond printable ASCII as \U+XXXX. */
std::string DxfText(std::string_view text);

} // namespace qstd

#endif
