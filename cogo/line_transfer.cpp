#include <cmath>

#include "cogo/baseline.h"
#include "core/angle.h"
#include "core/point.h"
#include "qstdlib/cogo.h"

namespace qstdlib {

namespace {

int32_t CheckLine(const LineDef& line)
{
    if (!HasPlan(line.first))
    {
        return QSTD_MISSING_COORDINATES;
    }
    if (line.mode != LINE_BY_POINTS)
    {
        return QSTD_OK;
    }
    if (!HasPlan(line.second))
    {
        return QSTD_MISSING_COORDINATES;
    }
    return CoincideInPlan(line.first, line.second) ? QSTD_COINCIDENT_POINTS : QSTD_OK;
}

// Azimuth of the line, or ANGLE_UNDEFINED: by points in the instrument's reference, by azimuth turned from that to
// north.
AngleUnit Direction(const LineDef& line)
{
    if (line.mode == LINE_BY_POINTS)
    {
        return AzimuthBetween(&line.first, &line.second);
    }
    return line.azimuth == ANGLE_UNDEFINED ? ANGLE_UNDEFINED : ApplyAzimuthReference(line.azimuth);
}

// Turns the second point clockwise about the first.
void RotateSecond(LineDef& line, AngleUnit rotation)
{
    const double radians = UnreducedRadians(rotation);
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    const double dN = line.second.northing - line.first.northing;
    const double dE = line.second.easting - line.first.easting;
    line.second.northing = (c * dN - s * dE) + line.first.northing;
    line.second.easting = (c * dE + s * dN) + line.first.easting;
}

// Moves both points to the right of the line. They may coincide after a rotation, and stay then.
void ShiftPoints(LineDef& line, double offset)
{
    if (CoincideInPlan(line.first, line.second))
    {
        return;
    }
    const Baseline baseline = BaselineThrough(line.first, line.second);
    line.first = PointBeside(baseline, 0.0, offset);
    line.second = PointBeside(baseline, baseline.length, offset);
}

// Moves the first point to the right of the direction, which is converted as it stands.
void ShiftFirst(LineDef& line, AngleUnit direction, double offset)
{
    const double radians = UnreducedRadians(WrapAdd(direction, ANGLE_QUARTER_CIRCLE));
    line.first.northing = std::cos(radians) * offset + line.first.northing;
    line.first.easting = std::sin(radians) * offset + line.first.easting;
}

} // namespace

} // namespace qstdlib

using namespace qstdlib;

int32_t QCogoCalcTransLine(const LineDef* line, AngleUnit rotation, double offset, LineDef* result)
{
    const int32_t status = CheckLine(*line);
    if (status != QSTD_OK)
    {
        return status;
    }
    LineDef transferred = *line;
    const bool byPoints = line->mode == LINE_BY_POINTS;

    AngleUnit direction = Direction(*line);
    if (direction != ANGLE_UNDEFINED)
    {
        // Normalised, not reduced: the conversions below take the value as it is.
        direction = WrapAdd(direction, rotation);
        NormalizeAngle(&direction);
    }
    if (byPoints && rotation != 0)
    {
        RotateSecond(transferred, rotation);
    }
    if (offset != 0.0)
    {
        if (byPoints)
        {
            ShiftPoints(transferred, offset);
        }
        else
        {
            ShiftFirst(transferred, direction, offset);
        }
    }
    // The reference is applied a second time; for a line by azimuth the two half circles cancel.
    transferred.azimuth = direction == ANGLE_UNDEFINED ? ANGLE_UNDEFINED : ApplyAzimuthReference(direction);
    *result = transferred;
    return QSTD_OK;
}
