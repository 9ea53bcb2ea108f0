#include "station/adjustment/approximation.h"

#include <cmath>
#include <utility>

#include "core/angle.h"
#include "station/adjustment/matrix.h"
#include "station/adjustment/observations.h"

namespace qstdlib {

namespace {

constexpr int32_t ITERATION_LIMIT = 10;

struct Approximation
{
    double northing;
    double easting;
    double height;
    double orientation;
};

struct Centre
{
    double northing;
    double easting;
};

// Strictly below, so that the epsilon itself counts as a value.
bool IsNearZero(double value)
{
    return std::fabs(value) < MACHINE_EPSILON;
}

// The next record from `begin` on that has a distance, or `end`.
const ResectWorkRecord* NextWithDistance(int32_t mode, const ResectWorkRecord* begin, const ResectWorkRecord* end)
{
    while (begin != end && !HasUsableDistance(mode, *begin))
    {
        ++begin;
    }
    return begin;
}

// The next record from `begin` on that has a direction, or `end`.
const ResectWorkRecord* NextWithDirection(const ResectWorkRecord* begin, const ResectWorkRecord* end)
{
    while (begin != end && !IsPresent(begin->direction))
    {
        ++begin;
    }
    return begin;
}

// The directions neither coincide nor oppose each other, exactly.
bool AreDistinct(const ResectWorkRecord& a, const ResectWorkRecord& b)
{
    const double difference = std::fabs(b.direction - a.direction);
    return difference > 0.0 && difference != PI;
}

// The directions neither coincide nor oppose each other, with a tolerance.
bool AreUsable(const ResectWorkRecord& a, const ResectWorkRecord& b)
{
    const double difference = std::fabs(b.direction - a.direction);
    return difference >= MACHINE_EPSILON && std::fabs(difference - PI) >= MACHINE_EPSILON;
}

bool DifferInPlan(const ResectWorkRecord& a, const ResectWorkRecord& b)
{
    return !IsNearZero(b.northing - a.northing) || !IsNearZero(b.easting - a.easting);
}

int32_t SelectOne(int32_t mode, const ResectWorkRecord* begin, const ResectWorkRecord* end,
                  const ResectWorkRecord** chosen)
{
    const ResectWorkRecord* const first = NextWithDistance(mode, begin, end);
    if (first == end)
    {
        return ADJUST_DEGENERATE;
    }
    chosen[0] = first;
    return 0;
}

int32_t SelectPair(int32_t mode, const ResectWorkRecord* begin, const ResectWorkRecord* end,
                   const ResectWorkRecord** chosen)
{
    for (const auto* first = NextWithDistance(mode, begin, end); first != end;
         first = NextWithDistance(mode, first + 1, end))
    {
        for (const auto* second = NextWithDistance(mode, first + 1, end); second != end;
             second = NextWithDistance(mode, second + 1, end))
        {
            if (DifferInPlan(*first, *second))
            {
                chosen[0] = first;
                chosen[1] = second;
                return 0;
            }
        }
    }
    return ADJUST_DEGENERATE;
}

// The third target of a triple that begins with i and j: any, when these are distinct, else one distinct from i.
const ResectWorkRecord* ThirdTarget(const ResectWorkRecord& i, const ResectWorkRecord* j, const ResectWorkRecord* end)
{
    const bool anyWillDo = AreDistinct(i, *j);
    const ResectWorkRecord* k = NextWithDirection(j + 1, end);
    while (k != end && !anyWillDo && !AreDistinct(i, *k))
    {
        k = NextWithDirection(k + 1, end);
    }
    return k;
}

// Puts neighbours together that do not coincide or oppose each other.
void OrderTriple(const ResectWorkRecord* i, const ResectWorkRecord* j, const ResectWorkRecord* k,
                 const ResectWorkRecord** chosen)
{
    if (!AreUsable(*i, *j))
    {
        std::swap(j, k);
    }
    else if (!AreUsable(*j, *k))
    {
        std::swap(i, j);
    }
    chosen[0] = i;
    chosen[1] = j;
    chosen[2] = k;
}

int32_t SelectTriple(const ResectWorkRecord* begin, const ResectWorkRecord* end, const ResectWorkRecord** chosen)
{
    for (const auto* i = NextWithDirection(begin, end); i != end; i = NextWithDirection(i + 1, end))
    {
        // Only the first j after i needs a look: were there no third target for it, there would be none for a later j,
        // because every later record has then been seen to coincide with i or oppose it.
        const ResectWorkRecord* const j = NextWithDirection(i + 1, end);
        if (j == end)
        {
            break;
        }
        const ResectWorkRecord* const k = ThirdTarget(*i, j, end);
        if (k != end)
        {
            OrderTriple(i, j, k, chosen);
            return 0;
        }
    }
    return ADJUST_DEGENERATE;
}

// Centre of the circle on which the chord from a to b is seen under the difference of their directions; false when the
// station would lie on the chord's line.
bool CircleCentre(const ResectWorkRecord& a, const ResectWorkRecord& b, Centre& centre)
{
    const double gamma = b.direction - a.direction;
    const double tangent = std::sin(gamma) / std::cos(gamma);
    if (IsNearZero(tangent))
    {
        return false;
    }
    const double k = 1.0 / tangent;
    centre.northing = (a.northing + b.northing) * 0.5 - (b.easting - a.easting) * k * 0.5;
    centre.easting = ((b.northing - a.northing) * k + a.easting + b.easting) * 0.5;
    return true;
}

// Sets the azimuth of the circle's zero, not reduced.
void OrientBy(const ResectWorkRecord& target, Approximation& station)
{
    station.orientation =
        std::atan2(target.easting - station.easting, target.northing - station.northing) - target.direction;
}

double HeightFrom(const ResectWorkRecord& target)
{
    const double height = target.height - target.verticalDifference;
    return IsPresent(target.reflectorHeight) ? height + target.reflectorHeight : height;
}

// Resection by two circles: the station is the second target, mirrored in the line of centres.
int32_t FromThreeDirections(int32_t mode, int16_t count, const ResectWorkRecord* work, Approximation& station)
{
    const ResectWorkRecord* p[3];
    if (SelectTargets(mode, 3, count, work, p) != 0)
    {
        return ADJUST_DEGENERATE;
    }
    Centre a;
    Centre b;
    if (!CircleCentre(*p[0], *p[1], a) || !CircleCentre(*p[1], *p[2], b))
    {
        return ADJUST_DEGENERATE;
    }
    const double dN = b.northing - a.northing;
    const double dE = b.easting - a.easting;
    const double squaredLength = dN * dN + dE * dE;
    if (IsNearZero(squaredLength))
    {
        return ADJUST_DEGENERATE;
    }
    const double f = ((p[1]->easting - a.easting) * dN - (p[1]->northing - a.northing) * dE) / squaredLength;
    const double g = 2.0 * f;
    if (IsNearZero(g))
    {
        return ADJUST_DEGENERATE;
    }
    station.northing = p[1]->northing + dE * g;
    station.easting = p[1]->easting - dN * g;
    OrientBy(*p[0], station);
    if (mode == ADJUST_MODE_SPATIAL)
    {
        const ResectWorkRecord* measured = nullptr;
        if (SelectTargets(mode, 1, count, work, &measured) != 0)
        {
            return ADJUST_DEGENERATE;
        }
        station.height = HeightFrom(*measured);
    }
    return 0;
}

// Similarity transformation from the circle's frame, scale included.
int32_t FromTwoDistances(int32_t mode, int16_t count, const ResectWorkRecord* work, Approximation& station)
{
    const ResectWorkRecord* p[2];
    if (SelectTargets(mode, 2, count, work, p) != 0)
    {
        return ADJUST_DEGENERATE;
    }
    const double x1 = p[0]->horizontalDistance * std::cos(p[0]->direction);
    const double y1 = p[0]->horizontalDistance * std::sin(p[0]->direction);
    const double x2 = p[1]->horizontalDistance * std::cos(p[1]->direction);
    const double y2 = p[1]->horizontalDistance * std::sin(p[1]->direction);
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double q = dx * dx + dy * dy;
    if (IsNearZero(q))
    {
        return ADJUST_DEGENERATE;
    }
    const double dN = p[1]->northing - p[0]->northing;
    const double dE = p[1]->easting - p[0]->easting;
    const double kc = (dE * dy + dx * dN) / q;
    const double ks = (dy * dN - dE * dx) / q;
    station.northing = p[0]->northing - x1 * kc - y1 * ks;
    station.easting = x1 * ks + p[0]->easting - y1 * kc;
    OrientBy(*p[0], station);
    if (mode == ADJUST_MODE_SPATIAL)
    {
        station.height = (HeightFrom(*p[0]) + HeightFrom(*p[1])) / 2.0;
    }
    return 0;
}

} // namespace

int32_t SelectTargets(int32_t mode, int32_t how, int16_t count, const ResectWorkRecord* work,
                      const ResectWorkRecord** chosen)
{
    if (count < how)
    {
        return ADJUST_DEGENERATE;
    }
    switch (how)
    {
    case 1:
        return SelectOne(mode, work, work + count, chosen);
    case 2:
        return SelectPair(mode, work, work + count, chosen);
    case 3:
        return SelectTriple(work, work + count, chosen);
    default:
        return ADJUST_DEGENERATE;
    }
}

int32_t ApproximateStation(int32_t mode, int16_t count, const ResectWorkRecord* work, int32_t distances,
                           double** unknowns, int32_t* unknownCount, [[maybe_unused]] int32_t rows,
                           int32_t* iterationLimit)
{
    *iterationLimit = ITERATION_LIMIT;
    const auto approximate = distances < 2 ? FromThreeDirections : FromTwoDistances;
    Approximation station = {};
    const int32_t result = approximate(mode, count, work, station);
    if (result != 0)
    {
        return result;
    }
    if (mode != ADJUST_MODE_PLAN && mode != ADJUST_MODE_SPATIAL)
    {
        return 0;
    }

    *unknownCount = mode + 1; // one for each coordinate, one for the orientation
    double* const x = AllocVector(*unknownCount);
    if (x == nullptr)
    {
        return ADJUST_NO_MEMORY;
    }
    x[1] = station.northing;
    x[2] = station.easting;
    if (mode == ADJUST_MODE_SPATIAL)
    {
        x[3] = station.height;
    }
    x[*unknownCount] = station.orientation;
    *unknowns = x;
    return 0;
}

} // namespace qstdlib
