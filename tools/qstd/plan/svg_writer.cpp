#include "plan/svg_writer.h"

#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

/** A length as SVG has it: hundredths of a millimetre, no negative zero. */
std::string Length(double millimetres)
{
    return FormatFixed(millimetres, 2);
}

constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD"; // U+FFFD

/** True for a sequence that a document cannot hold or nobody can see: broken UTF-8, controls, U+FFFE and U+FFFF. */
bool IsUnfit(std::string_view sequence)
{
    const auto first = static_cast<unsigned char>(sequence.front());
    const auto last = static_cast<unsigned char>(sequence.back());
    const bool isControl = first < 0x20U || first == 0x7FU || (first == 0xC2U && last < 0xA0U);
    return isControl || sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF";
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    while (!text.empty())
    {
        const size_t valid = Utf8Length(text);
        const std::string_view sequence = text.substr(0, std::max<size_t>(valid, 1));
        text.remove_prefix(sequence.size());
        if (valid == 0 || IsUnfit(sequence))
        {
            escaped += REPLACEMENT;
            continue;
        }
        escaped += sequence == "&" ? "&amp;" : sequence == "<" ? "&lt;" : sequence == ">" ? "&gt;" : sequence;
    }
    return escaped;
}

/** M x,y L x,y x,y and so on. */
std::string PathOf(const std::vector<SheetPoint>& points, std::string_view join)
{
    std::string path;
    for (const SheetPoint& point : points)
    {
        path += fmt::format("{}{},{}", path.empty() ? "M" : join, Length(point.x), Length(point.y));
    }
    return path;
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

std::vector<std::string> WrappedText(std::string_view text, double size, double width)
{
    std::vector<std::string> lines;
    for (text = Trim(text); !text.empty(); text = Trim(text))
    {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(word.size());
        if (!lines.empty() && TextWidth(lines.back(), size) + TextWidth(" ", size) + TextWidth(word, size) <= width)
        {
            lines.back().append(" ").append(word);
            continue;
        }
        lines.push_back(FittedText(word, size, width));
    }
    return lines;
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

void SvgWriter::Polyline(const std::vector<SheetPoint>& corners, std::string_view look)
{
    document += fmt::format("<path d=\"{}\" {}/>\n", PathOf(corners, "L"), look);
}

void SvgWriter::Arcs(const std::vector<SheetPoint>& points, double radius, bool isClockwise, std::string_view look)
{
    const std::string join = fmt::format("A{0} {0} 0 0 {1} ", Length(radius), isClockwise ? 1 : 0);
    document += fmt::format("<path d=\"{}\" {}/>\n", PathOf(points, join), look);
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
    const std::string degrees = style.isUpright ? "-90" : Length(style.turn);
    const std::string turn =
        degrees == "0.00" ? ""
                          : fmt::format(" transform=\"rotate({} {} {})\"", degrees, Length(base.x), Length(base.y));
    document += fmt::format("<text x=\"{}\" y=\"{}\" font-size=\"{}\" fill=\"#000\"{}{}{}>{}</text>\n", Length(base.x),
                            Length(base.y), Length(style.size), anchor, style.isBold ? " font-weight=\"bold\"" : "",
                            turn, Escaped(text));
}

std::string SvgWriter::Finish() const
{
    return document + "</svg>\n";
}

} // namespace qstd
