#include "station/station_doubts.h"

#include "station/misfit_text.h"
#include "station/plan_search.h"
#include "station/small_length.h"
#include "text/angle_text.h"
#include "text/text.h"

#include <fmt/format.h>

#include <cmath>

namespace qstd {

namespace {

constexpr AngleUnit SECOND_IN_UNITS = 16;
constexpr double THOUSANDTH = 0.001;

/** A circle farther off than this share of its radius is no danger. */
constexpr double NEAR_CIRCLE = 0.1;

/** One sight to each place. */
std::vector<const PreparedSight*> Places(const std::vector<PreparedSight>& taken)
{
    std::vector<const PreparedSight*> places;
    for (const PreparedSight& sight : taken)
    {
        bool isNew = true;
        for (const PreparedSight* const place : places)
        {
            const bool isSame = sight.target != nullptr && place->target != nullptr &&
                                sight.target->point.northing == place->target->point.northing &&
                                sight.target->point.easting == place->target->point.easting;
            isNew = isNew && !isSame;
        }
        if (isNew)
        {
            places.push_back(&sight);
        }
        // So many places show their circle; more would take time.
        if (places.size() > MOST_SIGHTS)
        {
            break;
        }
    }
    return places;
}

/** How many places there are where marks side by side count as one: exchanged or mirrored they look alike. */
size_t CountApart(const std::vector<const PreparedSight*>& places)
{
    constexpr double SIDE_BY_SIDE = 0.1;
    size_t count = 0;
    for (size_t i = 0; i < places.size(); ++i)
    {
        const PointRecord& place = places[i]->target->point;
        bool isApart = true;
        for (size_t j = 0; j < i && isApart; ++j)
        {
            const PointRecord& other = places[j]->target->point;
            isApart = std::hypot(place.northing - other.northing, place.easting - other.easting) >= SIDE_BY_SIDE;
        }
        count += isApart ? 1U : 0U;
        // More than two are enough, and many would take time.
        if (count > 2)
        {
            break;
        }
    }
    return count;
}

/** A circle through points, or the line that it becomes. */
class TargetCircle
{
public:
    /** Least squares of x^2 + y^2 - 2 a x - 2 b y - m = 0 about the centroid; exact for three points. */
    explicit TargetCircle(const std::vector<const PreparedSight*>& places)
    {
        const auto count = static_cast<double>(places.size());
        for (const PreparedSight* const place : places)
        {
            northing += place->target->point.northing / count;
            easting += place->target->point.easting / count;
        }
        double xx = 0.0, xy = 0.0, yy = 0.0, xq = 0.0, yq = 0.0;
        for (const PreparedSight* const place : places)
        {
            const double x = place->target->point.northing - northing;
            const double y = place->target->point.easting - easting;
            const double square = x * x + y * y;
            xx += x * x;
            xy += x * y;
            yy += y * y;
            xq += x * square / 2.0;
            yq += y * square / 2.0;
            mean += square / count;
        }
        const double determinant = xx * yy - xy * xy;
        isLine = !(determinant > 1e-12 * (xx + yy) * (xx + yy));
        if (isLine)
        {
            const double azimuth = 0.5 * std::atan2(2.0 * xy, xx - yy);
            centreX = -std::sin(azimuth);
            centreY = std::cos(azimuth);
            return;
        }
        centreX = (xq * yy - yq * xy) / determinant;
        centreY = (xx * yq - xy * xq) / determinant;
        radius = std::sqrt(centreX * centreX + centreY * centreY + mean);
    }

    /** The power of the point over the sum of both distances: no difference of two large numbers. */
    [[nodiscard]] double DistanceTo(const PointRecord& point) const
    {
        const double x = point.northing - northing;
        const double y = point.easting - easting;
        if (isLine)
        {
            return std::fabs(x * centreX + y * centreY);
        }
        const double power = x * x + y * y - 2.0 * (x * centreX + y * centreY) - mean;
        return std::fabs(power) / (std::hypot(x - centreX, y - centreY) + radius);
    }

    [[nodiscard]] bool IsNear(const PointRecord& point) const
    {
        return !isLine && DistanceTo(point) < NEAR_CIRCLE * radius;
    }

private:
    double northing = 0.0; /**< of the centroid */
    double easting = 0.0;
    double mean = 0.0;
    double centreX = 0.0; /**< from the centroid; of a line, the unit vector across it */
    double centreY = 0.0;
    double radius = 0.0;
    bool isLine = false;
};

double MeanDistance(const std::vector<const PreparedSight*>& places, const PointRecord& station)
{
    double sum = 0.0;
    for (const PreparedSight* const place : places)
    {
        sum += std::hypot(place->target->point.northing - station.northing,
                          place->target->point.easting - station.easting);
    }
    return sum / static_cast<double>(places.size());
}

void KeepLarger(std::optional<double>& largest, std::string& name, std::optional<double> shift, const Sight& sight,
                bool isFirst)
{
    // No station at all is worse than any shift.
    if (isFirst || (largest && (!shift || *shift > *largest)))
    {
        largest = shift;
        name = sight.target;
    }
}

/** Changes each reading a little and computes again. */
Sensitivity FindSensitivity(const std::vector<PreparedSight>& taken, const PointRecord& station,
                            const PositionSolver& solve, bool withDistances)
{
    const auto shiftOf = [&](const std::vector<PreparedSight>& changed) -> std::optional<double> {
        const std::optional<PointRecord> moved = solve(changed);
        if (!moved)
        {
            return std::nullopt;
        }
        return std::hypot(moved->northing - station.northing, moved->easting - station.easting);
    };
    Sensitivity sensitivity;
    for (size_t i = 0; i < taken.size(); ++i)
    {
        std::vector<PreparedSight> changed = taken;
        changed[i].circle = WithinCircle(changed[i].circle + SECOND_IN_UNITS);
        KeepLarger(sensitivity.perSecond, sensitivity.direction, shiftOf(changed), *taken[i].sight, i == 0);
        if (withDistances && taken[i].horizontalDistance)
        {
            changed = taken;
            *changed[i].horizontalDistance += THOUSANDTH;
            KeepLarger(sensitivity.perMilli, sensitivity.distance, shiftOf(changed), *taken[i].sight,
                       sensitivity.distance.empty());
        }
    }
    return sensitivity;
}

void DoubtTwoTargets(StationDoubts& doubts, const std::vector<const PreparedSight*>& places)
{
    AngleUnit apart = WithinCircle(places[1]->circle - places[0]->circle);
    apart = apart > ANGLE_HALF_CIRCLE ? ANGLE_FULL_CIRCLE - apart : apart;
    doubts.isInLineOpposite = apart > ANGLE_QUARTER_CIRCLE;
    doubts.inLineAngle = doubts.isInLineOpposite ? ANGLE_HALF_CIRCLE - apart : apart;
    if (doubts.inLineAngle <= IN_LINE_LIMIT)
    {
        doubts.inLine = {places[0]->sight->target, places[1]->sight->target};
    }
}

void DoubtDirections(StationDoubts& doubts, const StationSolution& solution,
                     const std::vector<const PreparedSight*>& places, const std::vector<PreparedSight>& taken,
                     const PositionSolver& solve)
{
    const PointRecord& position = solution.station.position;
    const TargetCircle circle(places);
    const double unit = ARC_SECOND * MeanDistance(places, position);
    if (solution.method == StationMethod::THREE_POINT)
    {
        doubts.circleDistance = circle.DistanceTo(position);
        doubts.sensitivity = FindSensitivity(taken, position, solve, false);
        doubts.isUndetermined =
            !doubts.sensitivity->perSecond || *doubts.sensitivity->perSecond > HOPELESS_FACTOR * unit;
        doubts.isWeak = doubts.isUndetermined || *doubts.sensitivity->perSecond > WEAK_FACTOR * unit;
        return;
    }
    const double shift = FromMetres(AxesOf(solution.plan->cofactors).major * ARC_SECOND, solution.unit);
    if (shift <= WEAK_FACTOR * unit)
    {
        return;
    }
    doubts.isWeak = true;
    doubts.isUndetermined = shift > HOPELESS_FACTOR * unit;
    doubts.commonShift = shift;
    bool isCircle = circle.IsNear(position);
    for (const PreparedSight* const place : places)
    {
        isCircle = isCircle && circle.IsNear(place->target->point);
    }
    if (isCircle)
    {
        doubts.circleDistance = circle.DistanceTo(position);
    }
}

/** With distances: the longer semi-axis as expected beforehand, where it is long beside the errors of the sights. */
void DoubtWeakDistances(StationDoubts& doubts, const StationSolution& solution,
                        const std::vector<const PreparedSight*>& places)
{
    const double expected = WEIGHT_DIRECTION * AxesOf(solution.plan->cofactors).major;
    const double length = ToMetres(MeanDistance(places, solution.station.position), solution.unit);
    const double ofOneSight = std::hypot(WEIGHT_DIRECTION * length, WEIGHT_DISTANCE + WEIGHT_PROPORTION * length);
    if (expected > WEAK_FACTOR * ofOneSight)
    {
        doubts.isWeak = true;
        doubts.expected = FromMetres(expected, solution.unit);
    }
}

std::string ShiftText(const std::optional<double>& shift, LinearUnit unit)
{
    return shift ? "moves the station by " + SmallLengthText(*shift, unit) : "leaves no station";
}

std::string InLineText(const StationDoubts& doubts, LinearUnit unit, AngleForm angles)
{
    const std::string apart = FormatAngle(doubts.inLineAngle, angles);
    std::string text =
        fmt::format("targets {} and {} are nearly in line with the station, {}", doubts.inLine[0], doubts.inLine[1],
                    doubts.isInLineOpposite ? "opposite but for " + apart : apart + " apart");
    if (doubts.sensitivity)
    {
        text += fmt::format(": 1\" in the direction to {} {}", doubts.sensitivity->direction,
                            ShiftText(doubts.sensitivity->perSecond, unit));
        if (!doubts.sensitivity->distance.empty())
        {
            text += fmt::format(", {} in the distance to {} {}", SmallLengthText(THOUSANDTH, unit),
                                doubts.sensitivity->distance, ShiftText(doubts.sensitivity->perMilli, unit));
        }
    }
    return text;
}

std::string WeakText(const StationDoubts& doubts, LinearUnit unit)
{
    const std::string circle =
        doubts.circleDistance ? fmt::format("the station lies {} from the circle through its targets (danger circle)",
                                            LengthWithUnit(*doubts.circleDistance, unit))
                              : "directions alone fix this station weakly";
    if (doubts.expected)
    {
        return fmt::format("these sights fix the station weakly: ± {} is to be expected of readings to 2\" and 2 mm",
                           SmallLengthText(*doubts.expected, unit));
    }
    if (doubts.commonShift)
    {
        return fmt::format("{}: ± 1\" in every direction is ± {} in the station", circle,
                           SmallLengthText(*doubts.commonShift, unit));
    }
    return fmt::format("{}: 1\" in the direction to {} {}", circle, doubts.sensitivity->direction,
                       ShiftText(doubts.sensitivity->perSecond, unit));
}

} // namespace

StationDoubts FindDoubts(const StationSolution& solution, const std::vector<PreparedSight>& taken,
                         const PositionSolver& solve)
{
    StationDoubts doubts;
    doubts.hasNoRedundancy = solution.Redundancy() == 0;
    const std::vector<const PreparedSight*> places = Places(taken);
    doubts.isOnlyRepeated = !doubts.hasNoRedundancy && !solution.observations.empty() &&
                            CountPlaces(solution.observations).Redundancy() == 0;
    doubts.hasTwoTargets = CountApart(places) == 2 && !doubts.hasNoRedundancy && !doubts.isOnlyRepeated;
    doubts.onlyHeightTarget = solution.heightPoints.size() == 1 ? solution.heightPoints.front()->id : "";
    if (places.size() == 2)
    {
        DoubtTwoTargets(doubts, places);
        constexpr size_t MOST_REPEATED = 50;
        if (!doubts.inLine.empty() && taken.size() <= MOST_REPEATED)
        {
            doubts.sensitivity = FindSensitivity(taken, solution.station.position, solve, true);
        }
    }
    else if (places.size() > 2 && solution.distances == 0)
    {
        DoubtDirections(doubts, solution, places, taken, solve);
    }
    if (places.size() > 1 && solution.distances > 0 && solution.plan && doubts.inLine.empty())
    {
        DoubtWeakDistances(doubts, solution, places);
    }
    return doubts;
}

std::vector<std::string> DoubtTexts(const StationSolution& solution, AngleForm angles, bool withRedundancy)
{
    std::vector<std::string> texts = MisfitTexts(solution, angles);
    const StationDoubts& doubts = solution.doubts;
    if (doubts.isWeak)
    {
        texts.push_back(WeakText(doubts, solution.unit));
    }
    if (!doubts.inLine.empty())
    {
        texts.push_back(InLineText(doubts, solution.unit, angles));
    }
    const std::string unchecked = UncheckedText(solution);
    if (!unchecked.empty())
    {
        texts.push_back(unchecked);
    }
    if (doubts.hasNoRedundancy && withRedundancy)
    {
        texts.emplace_back("no redundancy: the sights fit exactly, and the precision is unknown");
    }
    for (const PointRecord& candidate : solution.candidates)
    {
        texts.push_back(
            fmt::format("another position fits the sights in plan, northing {} easting {}; the heights rule it out",
                        FormatFixed(candidate.northing, 3), FormatFixed(candidate.easting, 3)));
    }
    if (doubts.isOnlyRepeated)
    {
        texts.emplace_back(
            "only repeated readings check each other: a wrong coordinate, name or target would not show");
    }
    if (doubts.hasTwoTargets)
    {
        texts.emplace_back(
            "two targets only: with their names exchanged, or the circle read the other way, such sights fit as well");
    }
    if (!doubts.onlyHeightTarget.empty() && withRedundancy)
    {
        texts.push_back(fmt::format("nothing checks the height: it rests on one target, {}", doubts.onlyHeightTarget));
    }
    return texts;
}

} // namespace qstd
