/**
 * @file space_proof.h
 * Measured points, planes and heights put back into the sights and points that they come from.
 */
#ifndef QSTD_SPACE_PROOF_H
#define QSTD_SPACE_PROOF_H

#include "proof/plan_geometry.h"
#include "proof/proof.h"

#include <array>
#include <optional>

namespace qstd {

/** Northing, easting, height. */
using Space = std::array<double, 3>;

Space SpaceOf(const PointRecord& point);
double Dot(const Space& one, const Space& other);
Space Cross(const Space& one, const Space& other);
Space Less(const Space& one, const Space& other);
Space Plus(const Space& one, double factor, const Space& other);
double LengthOf(const Space& vector);

/** A sight from the instrument's axis: where it points in the plan, and its zenith angle in face one, radians. */
struct SpaceSight
{
    Space axis = {};
    PlanVector direction;
    double zenith = 0.0;

    [[nodiscard]] Space Direction() const;
};

/** The hidden point lies in line with the prisms, at the extension in units of the spacing (0: as measured). */
Proof ProveRod(const PointRecord& far, const PointRecord& near, double spacing, double extension,
               const PointRecord& hidden, double measuredSpacing);

/** A slope in its section: two places, each a distance, of one sign, and a height. */
struct SectionSlope
{
    double firstDistance = 0.0;
    double firstHeight = 0.0;
    double secondDistance = 0.0;
    double secondHeight = 0.0;
};

/** Moved back by either result, the point lies on the slope. A result of UNDEFINED_REAL is none. */
Proof ProveSlope(const SectionSlope& slope, const PointRecord& base, const PointRecord& point,
                 const SlopeCheckResult& result);

/** The corner lies on the first wall, square to the third point. */
Proof ProveCorner(const PointRecord& first, const PointRecord& second, const PointRecord& third,
                  const PointRecord& corner);

/** The corner lies on both walls. */
Proof ProveCorner(const std::array<PointRecord, 4>& points, const PointRecord& corner);

/** The sight leads from the axis to the target, as far as it is known. */
void RequireExpectedSight(const SpaceSight& sight, double distance, bool hasHeight, const PointRecord& target,
                          Proof& proof);

/** The circle touches both edges in front of the station, and its near side is the face. */
Proof ProveColumn(const PlanVector& station, const std::array<PlanVector, 2>& edges, const PlanVector& face,
                  double faceDistance, const PlanVector& centre, double radius);

/** The point lies on the edge, in the vertical plane of the sight. */
Proof ProveEdge(const PointRecord& first, const PointRecord& second, const SpaceSight& sight,
                const PointRecord& target);

/** Where a sight meets a vertical plane: on its trace, in the sight, so far along; across is the height above first. */
Proof ProveVerticalPlane(const PointRecord& first, const PointRecord& second, const SpaceSight& sight,
                         const PointRecord& point, double along, std::optional<double> above);

/** A plane in space by three points. */
struct SpacePlane
{
    Space first = {};
    Space second = {};
    Space third = {};
};

/** Where a sight meets a plane in space: in the plane, in the sight, so far along the baseline and across it. */
Proof ProveSpacePlane(const SpacePlane& plane, const SpaceSight& sight, const PointRecord& point, double along,
                      double across);

/** What remote elevation works from. */
struct RemoteBase
{
    AngleUnit circle = 0; /**< in face one */
    double zenith = 0.0;  /**< in face one, radians */
    double slopeDistance = 0.0;
};

/** At the horizontal distance of the base, the height above its reflector is seen under the zenith angle. */
Proof ProveRemoteElevation(const RemoteBase& base, AngleUnit circle, double zenith, double height, double offset);

/** How much higher the sight meets the upright plane across the sight to the base. */
double HeightMissedAside(const RemoteBase& base, AngleUnit circle, double zenith);

} // namespace qstd

#endif
