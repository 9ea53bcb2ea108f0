/**
 * @file alignment.h
 * A straight line or a circular arc with the tangents that continue it, as a way with stations along it.
 */
#ifndef QSTD_ALIGNMENT_H
#define QSTD_ALIGNMENT_H

#include "plan/figure.h"

#include <qstdlib.h>

namespace qstd {

/** Geometry in doubles, for what is drawn and said of a reference; the results themselves are the library's. */
class Alignment
{
public:
    /** A straight way. @param azimuth  from north whatever the instrument's reference is, radians */
    Alignment(const PointRecord& start, double azimuth, double length);

    /** An arc. @param radius  positive to turn right, negative to turn left; not 0 */
    Alignment(const PointRecord& start, double azimuth, double length, double radius);

    /** The place of a station and an offset to the right; before the start and beyond the end from the tangents. */
    [[nodiscard]] FigurePlace At(double along, double offset = 0.0) const;

    /** Direction of travel at a station, radians from north. */
    [[nodiscard]] double AzimuthAt(double along) const;

    [[nodiscard]] double Length() const;

    /** Turned from start to end, radians, positive to the right. */
    [[nodiscard]] double Sweep() const;

    /** Of an arc. */
    [[nodiscard]] FigurePlace Centre() const;

private:
    FigurePlace origin;
    double startAzimuth;
    double length;
    double radius = 0.0; /**< 0: straight */
};

} // namespace qstd

#endif
