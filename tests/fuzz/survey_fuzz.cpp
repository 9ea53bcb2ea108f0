// A table of points and a field book of any bytes, as far as the reports: whatever was written, the answer is text.
#include "input/field_book.h"
#include "input/inputs.h"
#include "require.h"
#include "station/report.h"
#include "station/station_solution.h"
#include "text/outcome.h"
#include "text/text.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using qstd::Messages;

namespace {

constexpr std::string_view DIVIDER = "====\n";

/** More would only be slower: the adjustment goes with the cube of the sights. */
constexpr size_t MOST_SIGHTS = 40;

qstd::PointList Points(std::string_view content, Messages& messages)
{
    const std::optional<qstd::Table> table = qstd::ParseTable("points.csv", content, messages);
    return table ? qstd::ReadPoints(*table, messages) : qstd::PointList();
}

std::vector<qstd::SetUp> SetUps(std::string_view content, Messages& messages)
{
    const std::optional<qstd::Table> table = qstd::ParseTable("sights.csv", content, messages);
    return table ? qstd::ReadSetUps(*table, qstd::AngleForm::DMS, messages) : std::vector<qstd::SetUp>();
}

void CheckStation(const qstd::SetUp& setUp, const qstd::PointList& points)
{
    if (setUp.sights.size() > MOST_SIGHTS)
    {
        return;
    }
    const qstd::StationSolution solution = qstd::SolveStation(setUp, points);
    Require(!solution.IsSolved() || std::isfinite(solution.station.position.northing), "a station is somewhere");
    Require(qstd::IsUtf8(qstd::TextReport(solution, {})), "a report is UTF-8");
    Require(qstd::IsUtf8(qstd::CsvReport({solution}, {})), "a report is UTF-8");
    Require(qstd::IsUtf8(qstd::JsonReport({solution}, {})), "a report is UTF-8");
}

/** The first line as it could stand on a command line. */
void CheckLiteral(const std::string& text, Messages& messages)
{
    qstd::Inputs inputs("", std::nullopt, messages);
    try
    {
        const qstd::KnownPoint point = inputs.Point(text);
        Require(std::isfinite(point.point.northing) && std::isfinite(point.point.easting), "a point is somewhere");
        Require((point.point.flags & POINT_HAS_PLAN) != 0, "a literal point has plan coordinates");
    }
    catch (const qstd::WrongUse& problem)
    {
        Require(qstd::IsUtf8(problem.what()), "a message is UTF-8");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text = TextOf(data, size);
    const size_t divider = text.find(DIVIDER);
    const std::string_view first = text.substr(0, divider);
    const std::string_view second = divider == std::string_view::npos ? "" : text.substr(divider + DIVIDER.size());
    Messages messages;
    CheckLiteral(std::string(first.substr(0, first.find('\n'))), messages);
    const qstd::PointList points = Points(first, messages);
    for (const qstd::SetUp& setUp : SetUps(second, messages))
    {
        CheckStation(setUp, points);
    }
    Require(qstd::IsUtf8(messages.Text()), "a message is UTF-8");
    return 0;
}
