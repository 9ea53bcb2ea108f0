/**
 * @file reference_plane.h
 * A plane through two or three points as the library keeps it, and the sights onto it.
 */
#ifndef QSTD_REFERENCE_PLANE_H
#define QSTD_REFERENCE_PLANE_H

#include "input/field_book.h"
#include "proof/space_proof.h"
#include "results/result.h"
#include "results/sink.h"
#include "verbs/sight_list.h"

#include <qstdlib.h>

#include <optional>

namespace qstd {

using SpaceVector = Space;

struct ReferencePlane
{
    KnownPoint first;
    KnownPoint second;
    std::optional<KnownPoint> third;
    bool isInclined = false; /**< two points, taken as a plane in space as three are */
    KnownPoint station;
    double instrumentHeight = 0.0;
    AngleUnit orientation = 0; /**< azimuth of the circle's zero, in the instrument's reference */
    bool isSouth = false;      /**< that reference */

    /** By the three-point functions of the library. */
    [[nodiscard]] bool IsInSpace() const
    {
        return third || isInclined;
    }

    /** Along which distances count: level, or in space from the first to the second point. */
    [[nodiscard]] SpaceVector Baseline() const;

    /** Across the plane, of any length; of no length where the points give no plane. */
    [[nodiscard]] SpaceVector Normal() const;
};

/** Where a sight meets the plane. */
struct PlanePlace
{
    PointRecord point = {};
    double along = 0.0;  /**< from the first point */
    double across = 0.0; /**< in space: the library's offset across the baseline; else height above the first point */
    std::optional<double> slopeDistance; /**< from the axis */
};

/** Hands the plane to the library, which keeps it. False where it is refused; the row then says why. */
bool DefinePlane(const ReferencePlane& plane, Row& row);

/**
 * Meets the plane with a sight, and holds the place against both.
 *
 * @param row  status and what to say of it
 */
PlanePlace MeetPlane(const ReferencePlane& plane, const AngleSight& sight, const Sink& sink, Row& row);

} // namespace qstd

#endif
