#include "plan/figure_dxf.h"

#include "plan/figure_geometry.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr size_t LONGEST_TEXT = 255; // of release 12
constexpr char32_t REPLACEMENT = 0xFFFD;

struct Layer
{
    std::string_view name;
    int colour; // 1 red, 2 yellow, 3 green, 4 cyan, 5 blue, 6 magenta, 7 black or white, 8 grey
    std::string_view lineType;
};

constexpr std::array<Layer, 14> LAYERS = {{{"POINTS_GIVEN", 7, "CONTINUOUS"},
                                           {"POINTS_COMPUTED", 1, "CONTINUOUS"},
                                           {"POINTS_OTHER", 8, "CONTINUOUS"},
                                           {"POINTS_STATION", 6, "CONTINUOUS"},
                                           {"POINTS_SIGHTED", 4, "CONTINUOUS"},
                                           {"POINTS_FOOT", 8, "CONTINUOUS"},
                                           {"REFERENCE", 5, "CONTINUOUS"},
                                           {"RESULT", 1, "CONTINUOUS"},
                                           {"SIGHT", 4, "DASHED"},
                                           {"OFFSET", 3, "CONTINUOUS"},
                                           {"CONSTRUCTION", 8, "DOT"},
                                           {"STATIONING", 5, "CONTINUOUS"},
                                           {"NAMES", 7, "CONTINUOUS"},
                                           {"LABELS", 8, "CONTINUOUS"}}};

std::string UpperCase(std::string_view text)
{
    std::string upper(text);
    for (char& letter : upper)
    {
        letter = letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return upper;
}

std::string LayerOf(PointRole role)
{
    return "POINTS_" + UpperCase(RoleWord(role));
}

std::string LayerOf(LineRole role)
{
    return UpperCase(RoleWord(role));
}

/** All digits of a value, with the decimal point that tells a real number. */
std::string Real(double value)
{
    std::string digits = fmt::format("{}", PlainZero(value));
    return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
}

/** A group: its code on a line, its value on the next. */
std::string Group(int code, std::string_view value)
{
    return fmt::format("{:>3}\n{}\n", code, value);
}

std::string Group(int code, double value)
{
    return Group(code, std::string_view(Real(value)));
}

std::string Group(int code, int value)
{
    return fmt::format("{:>3}\n{:>6}\n", code, value);
}

std::string Start(std::string_view entity, std::string_view layer)
{
    return Group(0, entity) + Group(8, layer);
}

/** The groups of a place, of which `code` is the first; without a height there is no third. */
std::string PlaceGroups(int code, const FigurePlace& place, bool hasHeight)
{
    std::string groups = Group(code, place.easting) + Group(code + 10, place.northing);
    return hasHeight && place.height ? groups + Group(code + 20, *place.height) : groups;
}

std::string LineEntity(std::string_view layer, const FigurePlace& from, const FigurePlace& to)
{
    // Half a height would be taken for a line that ends at height zero.
    const bool hasHeights = from.height && to.height;
    return Start("LINE", layer) + PlaceGroups(10, from, hasHeights) + PlaceGroups(11, to, hasHeights);
}

std::string TextEntity(std::string_view layer, const FigurePlace& place, std::string_view text, double height)
{
    return text.empty() ? ""
                        : Start("TEXT", layer) + PlaceGroups(10, place, true) + Group(40, height) +
                              Group(1, std::string_view(DxfText(text)));
}

FigurePlace Shifted(const FigurePlace& place, double north, double east)
{
    return {place.northing + north, place.easting + east, place.height};
}

FigurePlace Halfway(const FigureLine& line)
{
    // Half and half: the sum of two large coordinates may be beyond all numbers.
    FigurePlace middle;
    middle.northing = line.from.northing / 2.0 + line.to.northing / 2.0;
    middle.easting = line.from.easting / 2.0 + line.to.easting / 2.0;
    if (line.from.height && line.to.height)
    {
        middle.height = *line.from.height / 2.0 + *line.to.height / 2.0;
    }
    return middle;
}

/** An azimuth as drawing programs count: in degrees from the east, counter-clockwise, 0 to below 360. */
double MathematicalDegrees(double azimuth)
{
    const double degrees = std::fmod(90.0 - azimuth * 180.0 / PI, 360.0);
    const double positive = degrees < 0.0 ? degrees + 360.0 : degrees;
    return positive < 360.0 ? positive : 0.0;
}

std::string LineTypes(double textHeight)
{
    const auto lineType = [](std::string_view name, std::string_view look, const std::vector<double>& dashes) {
        double length = 0.0;
        std::string groups;
        for (const double dash : dashes)
        {
            length += std::fabs(dash);
            groups += Group(49, dash);
        }
        return Group(0, "LTYPE") + Group(2, name) + Group(70, 0) + Group(3, look) + Group(72, 65) +
               Group(73, static_cast<int>(dashes.size())) + Group(40, length) + groups;
    };
    return Group(0, "TABLE") + Group(2, "LTYPE") + Group(70, 3) + lineType("CONTINUOUS", "Solid line", {}) +
           lineType("DASHED", "__ __ __", {textHeight, -textHeight / 2.0}) +
           lineType("DOT", ". . . . .", {0.0, -textHeight / 3.0}) + Group(0, "ENDTAB");
}

std::string LayerTable()
{
    std::string table = Group(0, "TABLE") + Group(2, "LAYER") + Group(70, static_cast<int>(LAYERS.size()));
    for (const Layer& layer : LAYERS)
    {
        table += Group(0, "LAYER") + Group(2, layer.name) + Group(70, 0) + Group(62, layer.colour) +
                 Group(6, layer.lineType);
    }
    return table + Group(0, "ENDTAB");
}

std::string StyleTable(double textHeight)
{
    return Group(0, "TABLE") + Group(2, "STYLE") + Group(70, 1) + Group(0, "STYLE") + Group(2, "STANDARD") +
           Group(70, 0) + Group(40, 0.0) + Group(41, 1.0) + Group(50, 0.0) + Group(71, 0) + Group(42, textHeight) +
           Group(3, "txt") + Group(4, "") + Group(0, "ENDTAB");
}

std::string Header(double textHeight)
{
    // Points show as crosses in circles instead of single pixels.
    return Group(0, "SECTION") + Group(2, "HEADER") + Group(9, "$ACADVER") + Group(1, "AC1009") + Group(9, "$PDMODE") +
           Group(70, 34) + Group(9, "$PDSIZE") + Group(40, textHeight / 2.0) + Group(0, "ENDSEC");
}

/** The code point of a valid sequence. */
char32_t CodePoint(std::string_view sequence)
{
    const auto byte = [sequence](size_t at) { return static_cast<unsigned char>(sequence[at]); };
    switch (sequence.size())
    {
    case 2:
        return ((byte(0) & 0x1FU) << 6U) | (byte(1) & 0x3FU);
    case 3:
        return ((byte(0) & 0x0FU) << 12U) | ((byte(1) & 0x3FU) << 6U) | (byte(2) & 0x3FU);
    case 4:
        return ((byte(0) & 0x07U) << 18U) | ((byte(1) & 0x3FU) << 12U) | ((byte(2) & 0x3FU) << 6U) | (byte(3) & 0x3FU);
    default:
        return byte(0);
    }
}

/** In units of UTF-16: beyond U+FFFF two of them stand for a letter. */
std::string Coded(char32_t letter)
{
    const auto code = static_cast<uint32_t>(letter);
    if (code <= 0xFFFFU)
    {
        return fmt::format("\\U+{:04X}", code);
    }
    const uint32_t rest = code - 0x10000U;
    return fmt::format("\\U+{:04X}\\U+{:04X}", 0xD800U + (rest >> 10U), 0xDC00U + (rest & 0x3FFU));
}

/** True where a letter would not be taken for itself: ^ is a control key, %% and \U+ begin codes. */
bool IsSpecial(std::string_view rest)
{
    const char next = rest.size() > 1 ? rest[1] : ' ';
    return rest.front() == '^' || (rest.front() == '%' && next == '%') ||
           (rest.front() == '\\' && (next == 'U' || next == 'u' || next == 'M' || next == 'm'));
}

} // namespace

std::string DxfText(std::string_view text)
{
    std::string encoded;
    while (!text.empty())
    {
        const size_t valid = Utf8Length(text);
        const std::string_view sequence = text.substr(0, std::max<size_t>(valid, 1));
        const char32_t letter = valid == 0 ? REPLACEMENT : CodePoint(sequence);
        const bool isPlain = letter >= ' ' && letter < 0x7F && !IsSpecial(text);
        const std::string code = isPlain ? std::string(sequence) : Coded(letter);
        if (encoded.size() + code.size() > LONGEST_TEXT)
        {
            break;
        }
        encoded += code;
        text.remove_prefix(sequence.size());
    }
    return encoded;
}

FigureDxf::FigureDxf(std::function<void(std::string_view)> sinkOfText, LinearUnit unit, double heightOfText)
    : sink(std::move(sinkOfText)), textHeight(std::isfinite(heightOfText) && heightOfText > 0.0 ? heightOfText : 1.0)
{
    sink(Group(999, fmt::format("site coordinates in {}: X easting, Y northing, Z height", UnitSymbol(unit))) +
         Header(textHeight) + Group(0, "SECTION") + Group(2, "TABLES") + LineTypes(textHeight) + LayerTable() +
         StyleTable(textHeight) + Group(0, "ENDSEC") + Group(0, "SECTION") + Group(2, "ENTITIES"));
}

void FigureDxf::Begin(const FigureView& view)
{
    Note(view.title);
}

void FigureDxf::Note(const std::string& text)
{
    if (!text.empty())
    {
        sink(Group(999, std::string_view(DxfText(text))));
    }
}

void FigureDxf::Add(const FigurePoint& point)
{
    if (!IsDrawable(point))
    {
        return;
    }
    const FigurePlace beside = Shifted(point.place, textHeight / 2.0, textHeight / 2.0);
    sink(Start("POINT", LayerOf(point.role)) + PlaceGroups(10, point.place, true) +
         TextEntity("NAMES", beside, point.name, textHeight));
}

void FigureDxf::Add(const FigureLine& line)
{
    if (IsDrawable(line))
    {
        sink(LineEntity(LayerOf(line.role), line.from, line.to) +
             TextEntity("LABELS", Halfway(line), line.label, textHeight));
    }
}

void FigureDxf::Add(const FigureArc& arc)
{
    if (!IsDrawable(arc))
    {
        return;
    }
    const bool isCircle = IsFullTurn(arc.sweep);
    const double first = MathematicalDegrees(AzimuthAt(arc, arc.sweep > 0.0 ? 1.0 : 0.0));
    const double last = MathematicalDegrees(AzimuthAt(arc, arc.sweep > 0.0 ? 0.0 : 1.0));
    if (!isCircle && first == last)
    {
        return; // so short that it would be read as a circle
    }
    std::string entity = Start(isCircle ? "CIRCLE" : "ARC", LayerOf(arc.role)) + PlaceGroups(10, arc.centre, true) +
                         Group(40, arc.radius);
    if (!isCircle)
    {
        entity += Group(50, first) + Group(51, last);
    }
    sink(entity + TextEntity("LABELS", PlaceOnCircle(arc, AzimuthAt(arc, 0.5)), arc.label, textHeight));
}

void FigureDxf::Add(const FigureTick& tick)
{
    if (!IsDrawable(tick))
    {
        return;
    }
    // To the right of the azimuth lies north by -sin, east by cos.
    const double north = -std::sin(tick.azimuth) * textHeight / 2.0;
    const double east = std::cos(tick.azimuth) * textHeight / 2.0;
    sink(LineEntity("STATIONING", Shifted(tick.place, -north, -east), Shifted(tick.place, north, east)) +
         TextEntity("LABELS", Shifted(tick.place, -2.0 * north, -2.0 * east), tick.label, textHeight));
}

void FigureDxf::Finish()
{
    sink(Group(0, "ENDSEC") + Group(0, "EOF"));
}

} // namespace qstd
