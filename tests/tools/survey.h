/**
 * @file survey.h
 * Tables as texts, read by the tool, for its tests.
 */
#ifndef QSTDLIB_TESTS_TOOLS_SURVEY_H
#define QSTDLIB_TESTS_TOOLS_SURVEY_H

#include "input/field_book.h"
#include "input/table.h"
#include "station/station_solution.h"
#include "text/message.h"

#include <optional>
#include <string>
#include <vector>

namespace survey {

inline qstd::PointList Points(const std::string& text, qstd::Messages& messages)
{
    const std::optional<qstd::Table> table = qstd::ParseTable("points.csv", text, messages);
    return table ? qstd::ReadPoints(*table, messages) : qstd::PointList();
}

inline std::vector<qstd::SetUp> SetUps(const std::string& text, qstd::Messages& messages,
                                       std::optional<qstd::AngleForm> bareAngles = std::nullopt)
{
    const std::optional<qstd::Table> table = qstd::ParseTable("sights.csv", text, messages);
    return table ? qstd::ReadSetUps(*table, bareAngles, messages) : std::vector<qstd::SetUp>();
}

/** The messages about a points table, or about a sights table. */
inline std::string PointMessages(const std::string& text)
{
    qstd::Messages messages;
    Points(text, messages);
    return messages.Text();
}

inline std::string SightMessages(const std::string& text)
{
    qstd::Messages messages;
    SetUps(text, messages);
    return messages.Text();
}

/** The first set-up of a survey, solved. Keeps what the solution points into. */
struct Solved
{
    Solved(const std::string& pointText, const std::string& sightText)
        : points(Points(pointText, messages)), setUps(SetUps(sightText, messages)),
          solution(qstd::SolveStation(setUps.at(0), points))
    {
    }

    qstd::Messages messages;
    qstd::PointList points;
    std::vector<qstd::SetUp> setUps;
    qstd::StationSolution solution;
};

} // namespace survey

#endif
