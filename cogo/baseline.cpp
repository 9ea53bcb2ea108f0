#include "cogo/baseline.h"

#include <cmath>

#include "core/point.h"

namespace qstdlib {

Baseline BaselineThrough(const PointRecord& start, const PointRecord& end)
{
    const double dN = end.northing - start.northing;
    const double dE = end.easting - start.easting;
    const double length = std::hypot(dN, dE);
    const double inverseLength = 1.0 / length;
    Baseline line = {start.northing,
                     start.easting,
                     inverseLength * dN,
                     inverseLength * dE,
                     length,
                     0.0,
                     0.0,
                     HasHeight(start) || HasHeight(end)};
    if (line.hasHeight)
    {
        line.startHeight = HasHeight(start) ? start.height : end.height;
        const double endHeight = HasHeight(end) ? end.height : start.height;
        line.heightByChainage = (endHeight - line.startHeight) * inverseLength;
    }
    return line;
}

PointRecord PointBeside(const Baseline& line, double chainage, double offset)
{
    PointRecord point;
    point.northing = line.unitNorthing * chainage + line.northing - line.unitEasting * offset;
    point.easting = line.unitEasting * chainage + line.unitNorthing * offset + line.easting;
    point.height = line.hasHeight ? line.heightByChainage * chainage + line.startHeight : 0.0;
    point.flags = line.hasHeight ? FLAGS_PLAN_AND_HEIGHT : FLAGS_PLAN;
    return point;
}

} // namespace qstdlib
