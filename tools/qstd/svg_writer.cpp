#include "svg_writer.h"

#include "text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

/** A length as SVG has it: hundredths of a millimetre, no negative zero. */
std::string Length(double millimetres)
{
    return FormatFixed(millimetres, 2);
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    for (const char letter : text)
    {
        switch (letter)
        {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += letter;
        }
    }
    return escaped;
}

/** Width of one character of a wide sans-serif face, in parts of the font size. */
double CharacterWidth(std::string_view sequence)
{
    const char letter = sequence.front();
    if (sequence.size() > 1)
    {
        return sequence.size() == 2 ? 0.8 : 1.05;
    }
    if (std::string_view("MW@%").find(letter) != std::string_view::npos)
    {
        return 1.0;
    }
    if (std::string_view(" .,:;'|!ijl").find(letter) != std::string_view::npos)
    {
        return 0.4;
    }
    const bool isCapital = letter >= 'A' && letter <= 'Z';
    return isCapital ? 0.75 : letter == 'm' || letter == 'w' || letter == '+' || letter == '=' ? 0.9 : 0.65;
}

} // namespace

double TextWidth(std::string_view text, double size)
{
    double width = 0.0;
    while (!text.empty())
    {
        const size_t length = std::max<size_t>(Utf8Length(text), 1);
        width += CharacterWidth(text.substr(0, length)) * size;
        text.remove_prefix(length);
    }
    return width;
}

std::string FittedText(std::string_view text, double size, double width)
{
    std::string fitted(text);
    for (size_t length = DisplayWidth(text); length > 1 && TextWidth(fitted, size) > width; --length)
    {
        fitted = ShortenedInside(text, length - 1);
    }
    return fitted;
}

SvgWriter::SvgWriter(double width, double height, std::string_view title)
    : document(fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                           "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0}mm\" height=\"{1}mm\" "
                           "viewBox=\"0 0 {0} {1}\" font-family=\"sans-serif\" fill=\"none\" stroke-linecap=\"butt\">\n"
                           "<title>{2}</title>\n"
                           "<rect width=\"{0}\" height=\"{1}\" fill=\"#fff\"/>\n",
                           width, height, Escaped(title)))
{
}

void SvgWriter::Line(const SheetLine& line, std::string_view look)
{
    document += fmt::format("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" {}/>\n", Length(line.from.x),
                            Length(line.from.y), Length(line.to.x), Length(line.to.y), look);
}

void SvgWriter::Box(const SheetBox& box, std::string_view look)
{
    document += fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" {}/>\n", Length(box.left),
                            Length(box.top), Length(box.right - box.left), Length(box.bottom - box.top), look);
}

void SvgWriter::Circle(SheetPoint centre, double radius, std::string_view look)
{
    document += fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\" {}/>\n", Length(centre.x), Length(centre.y),
                            Length(radius), look);
}

void SvgWriter::Polygon(const std::vector<SheetPoint>& corners, std::string_view look)
{
    std::string points;
    for (const SheetPoint& corner : corners)
    {
        points += fmt::format("{}{},{}", points.empty() ? "" : " ", Length(corner.x), Length(corner.y));
    }
    document += fmt::format("<polygon points=\"{}\" {}/>\n", points, look);
}

void SvgWriter::Ellipse(SheetPoint centre, double first, double second, double turn, std::string_view look)
{
    document += fmt::format("<ellipse rx=\"{}\" ry=\"{}\" transform=\"translate({} {}) rotate({})\" {}/>\n",
                            Length(first), Length(second), Length(centre.x), Length(centre.y), Length(turn), look);
}

void SvgWriter::Text(SheetPoint base, std::string_view text, const TextStyle& style)
{
    const char* const anchor = style.anchor == TextAnchor::START    ? ""
                               : style.anchor == TextAnchor::MIDDLE ? " text-anchor=\"middle\""
                                                                    : " text-anchor=\"end\"";
    const std::string turn =
        style.isUpright ? fmt::format(" transform=\"rotate(-90 {} {})\"", Length(base.x), Length(base.y)) : "";
    document += fmt::format("<text x=\"{}\" y=\"{}\" font-size=\"{}\" fill=\"#000\"{}{}{}>{}</text>\n", Length(base.x),
                            Length(base.y), Length(style.size), anchor, style.isBold ? " font-weight=\"bold\"" : "",
                            turn, Escaped(text));
}

std::string SvgWriter::Finish() const
{
    return document + "</svg>\n";
}

} // namespace qstd
