#include "cogo/area.h"

#include <cmath>
#include <limits>

#include "core/point.h"
#include "qstdlib/cogo.h"

namespace qstdlib {

namespace {

struct AreaAccumulator
{
    double sum;
    PointRecord firstVertex;
    int16_t vertexCount;
    double compensation; // what rounding has kept out of the sum
    PointRecord previousVertex;
};

AreaAccumulator accumulator;

double CrossProduct(const PointRecord& point, const PointRecord& previous)
{
    return (point.easting * previous.northing) - (point.northing * previous.easting);
}

} // namespace

void AddAreaVertex(const PointRecord* point)
{
    AreaAccumulator& a = accumulator;
    if (a.vertexCount == 0)
    {
        a.firstVertex = *point;
        a.sum = 0.0;
        a.compensation = 0.0;
    }
    else
    {
        // Two-sum: the order of these operations is what catches the lost part.
        const double compensated = CrossProduct(*point, a.previousVertex) + a.compensation;
        const double total = a.sum + compensated;
        a.compensation = (a.sum - total) + compensated;
        a.sum = total;
    }
    a.previousVertex = *point;
    ++a.vertexCount;
}

} // namespace qstdlib

using namespace qstdlib;

double QCogoCalcArea(const PointRecord* points, int32_t n)
{
    if (n > std::numeric_limits<int16_t>::max())
    {
        return 0.0;
    }
    AreaAccumulator& a = accumulator;
    a.vertexCount = 0;
    for (int32_t i = 0; i < n; ++i)
    {
        if (HasPlan(points[i]))
        {
            AddAreaVertex(&points[i]);
        }
    }
    if (a.vertexCount < 3)
    {
        return 0.0;
    }
    const double closing = CrossProduct(a.firstVertex, a.previousVertex);
    const double total = (closing + a.compensation) + a.sum;
    return std::fabs(total) * 0.5;
}
