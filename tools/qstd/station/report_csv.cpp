#include "station/report.h"

#include "station/misfit_text.h"
#include "station/small_length.h"
#include "station/status_text.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace qstd {

namespace {

constexpr double SECONDS_PER_RADIAN = 648000.0 / 3.14159265358979323846;

/** A cell of the line of one sight. */
using CellText = std::string (*)(const StationSolution&, size_t sight, const ReportStyle&);

struct CsvColumn
{
    std::string name;
    CellText text;
};

/** In quotes where it holds what a reader would take for structure; leading blanks would be lost elsewhere too. */
std::string CsvText(const std::string& text)
{
    if (text.find_first_of(",;\t \"#") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (const char letter : text)
    {
        quoted += letter;
        if (letter == '"')
        {
            quoted += letter;
        }
    }
    return quoted + "\"";
}

std::string LengthCell(std::optional<double> value, const ReportStyle& style)
{
    return value ? FormatFixed(*value, style.decimals) : "";
}

std::string SmallCell(std::optional<double> value, const ReportStyle& style)
{
    return value ? SmallLengthFigure(*value, style.unit) : "";
}

std::string SecondsCell(std::optional<double> radians)
{
    return radians ? FormatFixed(*radians * SECONDS_PER_RADIAN, 1) : "";
}

std::optional<double> If(bool isThere, double value)
{
    return isThere ? std::optional(value) : std::nullopt;
}

// Columns of the station, the same in each of its lines.
const std::vector<CsvColumn> STATION_COLUMNS = {
    {"station", [](const StationSolution& s, size_t, const ReportStyle&) { return CsvText(s.setUp->station); }},
    {"setup", [](const StationSolution& s, size_t, const ReportStyle&) { return std::to_string(s.setUp->number); }},
    {"status", [](const StationSolution& s, size_t, const ReportStyle&) { return OutcomeName(s); }},
    {"northing",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved(), s.station.position.northing), style);
     }},
    {"easting",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved(), s.station.position.easting), style);
     }},
    {"height",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved() && s.HasHeight(), s.station.position.height), style);
     }},
    {"mark_height",
     [](const StationSolution& s, size_t, const ReportStyle& style) { return LengthCell(s.markHeight, style); }},
    {"orientation",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return s.IsSolved() ? FormatAngle(s.station.orientation, style.angles) : "";
     }},
    {"northing_precision",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved() && s.HasPrecision(), s.station.northingPrecision), style);
     }},
    {"easting_precision",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved() && s.HasPrecision(), s.station.eastingPrecision), style);
     }},
    {"height_spread",
     [](const StationSolution& s, size_t, const ReportStyle& style) {
         return LengthCell(If(s.IsSolved() && s.HasHeight(), s.station.heightSpread), style);
     }},
    {"redundancy", [](const StationSolution& s, size_t,
                      const ReportStyle&) { return s.IsSolved() ? std::to_string(s.Redundancy()) : ""; }},
};

// Columns of the sight. Small lengths have their symbol behind the name.
const std::vector<CsvColumn> SIGHT_COLUMNS = {
    {"line",
     [](const StationSolution& s, size_t i, const ReportStyle&) { return std::to_string(s.sights[i].sight->line); }},
    {"target",
     [](const StationSolution& s, size_t i, const ReportStyle&) { return CsvText(s.sights[i].sight->target); }},
    {"hz", [](const StationSolution& s, size_t i,
              const ReportStyle& style) { return FormatAngle(s.sights[i].sight->circle, style.angles); }},
    {"v",
     [](const StationSolution& s, size_t i, const ReportStyle& style) {
         const std::optional<AngleUnit>& zenith = s.sights[i].sight->zenith;
         return zenith ? FormatAngle(*zenith, style.angles) : "";
     }},
    {"horizontal_distance", [](const StationSolution& s, size_t i,
                               const ReportStyle& style) { return LengthCell(s.sights[i].horizontalDistance, style); }},
    {"face", [](const StationSolution& s, size_t i,
                const ReportStyle&) { return std::string(s.sights[i].isFaceTwo ? "2" : "1"); }},
    {"used", [](const StationSolution& s, size_t i,
                const ReportStyle&) { return std::string(s.sights[i].isUsed ? "1" : "0"); }},
    {"direction_residual_seconds",
     [](const StationSolution& s, size_t i, const ReportStyle&) { return SecondsCell(s.residuals[i].direction); }},
    {"across_residual_", [](const StationSolution& s, size_t i,
                            const ReportStyle& style) { return SmallCell(s.residuals[i].across, style); }},
    {"distance_residual_", [](const StationSolution& s, size_t i,
                              const ReportStyle& style) { return SmallCell(s.residuals[i].distance, style); }},
    {"height_residual_", [](const StationSolution& s, size_t i,
                            const ReportStyle& style) { return SmallCell(s.residuals[i].height, style); }},
    {"remark", [](const StationSolution& s, size_t i, const ReportStyle&) { return CsvText(s.sights[i].remark); }},
    {"method", [](const StationSolution& s, size_t, const ReportStyle&) { return std::string(MethodName(s.method)); }},
    {"northing_less_known_", [](const StationSolution& s, size_t,
                                const ReportStyle& style) { return SmallCell(DifferenceToKnown(s).northing, style); }},
    {"easting_less_known_", [](const StationSolution& s, size_t,
                               const ReportStyle& style) { return SmallCell(DifferenceToKnown(s).easting, style); }},
    {"height_less_known_", [](const StationSolution& s, size_t,
                              const ReportStyle& style) { return SmallCell(DifferenceToKnown(s).height, style); }},
};

template <ObservationKind KIND>
std::string RedundancyCell(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    const ObservationCheck* const check = CheckOf(solution, sight, KIND);
    return check == nullptr || solution.fit.redundancy == 0 ? "" : FormatFixed(check->redundancy, 3);
}

template <ObservationKind KIND>
std::string StandardisedCell(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    const ObservationCheck* const check = CheckOf(solution, sight, KIND);
    return check == nullptr || solution.fit.redundancy == 0 ? "" : FormatFixed(check->standardised, 2);
}

/** Words with blanks between them. */
void AddWord(std::string& words, bool isThere, std::string_view word)
{
    if (isThere)
    {
        words += (words.empty() ? "" : " ");
        words += word;
    }
}

std::string MarkedCell(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    const auto isMarked = [](const ObservationCheck* check) { return check != nullptr && check->isMarked; };
    std::string words;
    AddWord(words, isMarked(CheckOf(solution, sight, ObservationKind::DIRECTION)), "direction");
    AddWord(words, isMarked(CheckOf(solution, sight, ObservationKind::DISTANCE)), "distance");
    AddWord(words, isMarked(HeightCheckOf(solution, sight)) || isMarked(TargetHeightCheckOf(solution, sight)),
            "height");
    return words;
}

std::string SuspectCell(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    std::string words;
    for (const Suspect& suspect : solution.suspects)
    {
        AddWord(words, suspect.sight == sight, SuspectName(suspect.kind));
    }
    return words;
}

/** What the set-up without an observation of this sight gives, where that was asked for. */
const LeftOut* Without(const StationSolution& solution, size_t sight, ObservationKind kind)
{
    for (const LeftOut& without : solution.leftOut)
    {
        if (without.sight == sight && without.kind == kind)
        {
            return without.isSolved ? &without : nullptr;
        }
    }
    return nullptr;
}

template <ObservationKind KIND>
std::string ShiftOfNorthing(const StationSolution& solution, size_t sight, const ReportStyle& style)
{
    const LeftOut* const without = Without(solution, sight, KIND);
    return without == nullptr ? "" : SmallCell(without->northingShift, style);
}

template <ObservationKind KIND>
std::string ShiftOfEasting(const StationSolution& solution, size_t sight, const ReportStyle& style)
{
    const LeftOut* const without = Without(solution, sight, KIND);
    return without == nullptr ? "" : SmallCell(without->eastingShift, style);
}

template <ObservationKind KIND>
std::string SigmaWithout(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    const LeftOut* const without = Without(solution, sight, KIND);
    return without == nullptr ? "" : SecondsCell(without->directionSigma);
}

/** The observation of this sight that helps most when it is left out. */
std::string HelpsMost(const StationSolution& solution, size_t sight, const ReportStyle& /*style*/)
{
    if (!solution.bestLeftOut || solution.leftOut[*solution.bestLeftOut].sight != sight)
    {
        return "";
    }
    return solution.leftOut[*solution.bestLeftOut].kind == ObservationKind::DIRECTION ? "direction" : "distance";
}

const std::vector<CsvColumn> LEFT_OUT_COLUMNS = {
    {"without_direction_northing_shift_", ShiftOfNorthing<ObservationKind::DIRECTION>},
    {"without_direction_easting_shift_", ShiftOfEasting<ObservationKind::DIRECTION>},
    {"without_direction_sigma_seconds", SigmaWithout<ObservationKind::DIRECTION>},
    {"without_distance_northing_shift_", ShiftOfNorthing<ObservationKind::DISTANCE>},
    {"without_distance_easting_shift_", ShiftOfEasting<ObservationKind::DISTANCE>},
    {"without_distance_sigma_seconds", SigmaWithout<ObservationKind::DISTANCE>},
    {"helps_most", HelpsMost},
};

// What the other observations say of those of the sight.
const std::vector<CsvColumn> CHECK_COLUMNS = {
    {"fits",
     [](const StationSolution& s, size_t, const ReportStyle&) {
         const std::optional<bool> verdict = s.Verdict();
         return verdict ? std::string(*verdict ? "1" : "0") : "";
     }},
    {"direction_redundancy", RedundancyCell<ObservationKind::DIRECTION>},
    {"direction_standardised", StandardisedCell<ObservationKind::DIRECTION>},
    {"distance_redundancy", RedundancyCell<ObservationKind::DISTANCE>},
    {"distance_standardised", StandardisedCell<ObservationKind::DISTANCE>},
    {"height_standardised",
     [](const StationSolution& s, size_t i, const ReportStyle&) {
         const ObservationCheck* const check = HeightCheckOf(s, i);
         return check == nullptr || s.heightFit.redundancy == 0 ? "" : FormatFixed(check->standardised, 2);
     }},
    {"marked", MarkedCell},
    {"suspect", SuspectCell},
};

std::vector<CsvColumn> AllColumns(const ReportStyle& style)
{
    std::vector<CsvColumn> all = STATION_COLUMNS;
    all.insert(all.end(), SIGHT_COLUMNS.begin(), SIGHT_COLUMNS.end());
    all.insert(all.end(), CHECK_COLUMNS.begin(), CHECK_COLUMNS.end());
    if (style.isLeaveOneOut)
    {
        all.insert(all.end(), LEFT_OUT_COLUMNS.begin(), LEFT_OUT_COLUMNS.end());
    }
    std::string symbol(SmallLengthSymbol(style.unit));
    std::replace(symbol.begin(), symbol.end(), '-', '_');
    for (CsvColumn& column : all)
    {
        column.name += column.name.back() == '_' ? symbol : "";
    }
    return all;
}

/** The columns asked for, in their order. */
std::vector<CsvColumn> PickedColumns(const ReportStyle& style)
{
    std::vector<CsvColumn> all = AllColumns(style);
    if (style.columns.empty())
    {
        return all;
    }
    std::vector<CsvColumn> picked;
    for (const std::string& name : style.columns)
    {
        const auto found =
            std::find_if(all.begin(), all.end(), [&name](const CsvColumn& column) { return column.name == name; });
        if (found != all.end())
        {
            picked.push_back(*found);
        }
    }
    return picked;
}

} // namespace

std::vector<std::string> CsvColumns(const ReportStyle& style)
{
    std::vector<std::string> names;
    for (const CsvColumn& column : AllColumns(style))
    {
        names.push_back(column.name);
    }
    return names;
}

std::string CsvReport(const std::vector<StationSolution>& solutions, const ReportStyle& style)
{
    const std::vector<CsvColumn> columns = PickedColumns(style);
    std::string text;
    for (size_t i = 0; i < columns.size(); ++i)
    {
        text += (i == 0 ? "" : ",") + columns[i].name;
    }
    text += "\n";
    for (const StationSolution& solution : solutions)
    {
        for (size_t sight = 0; sight < solution.sights.size(); ++sight)
        {
            for (size_t i = 0; i < columns.size(); ++i)
            {
                text += (i == 0 ? "" : ",") + columns[i].text(solution, sight, style);
            }
            text += "\n";
        }
    }
    return text;
}

} // namespace qstd
