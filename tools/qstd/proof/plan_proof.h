/**
 * @file plan_proof.h
 * Results of the coordinate geometry put back into what they were asked for.
 */
#ifndef QSTD_PLAN_PROOF_H
#define QSTD_PLAN_PROOF_H

#include "proof/plan_geometry.h"
#include "proof/proof.h"

#include <optional>
#include <vector>

namespace qstd {

/** What an inverse computation found; what is not known is nothing. */
struct FoundWay
{
    std::optional<AngleUnit> azimuth;
    double horizontalDistance = 0.0;
    std::optional<AngleUnit> zenith;
    std::optional<double> slopeDistance;
    std::optional<double> heightDifference;
};

/** Azimuth and distance lead from one point to the other, zenith angle and slope distance too. */
Proof ProveInverse(const PointRecord& from, const PointRecord& to, const FoundWay& way, bool isSouth);

/** The way to the new point has the azimuth, the distance and the height difference asked for. */
Proof ProveForward(const PointRecord& from, const AngDistRecord& asked, const PointRecord& result, bool isSouth);

/** The point has the chainage and the offset asked for, and the height of the line there. */
Proof ProveOffset(const PointRecord& start, const PointRecord& end, double chainage, double offset,
                  const PointRecord& result);

/** Grade and ratio lead from one distance to the other. */
Proof ProveGrade(double horizontal, double vertical, const SlopeResult& slope);

struct PlanCircle
{
    PlanVector centre;
    double radius = 0.0;
};

/** The place lies on both lines. */
Proof ProveCrossing(const Course& first, const Course& second, const PointRecord& result);

/** Each place lies on the line and on the circle, and the line meets it as often. */
Proof ProveCrossing(const Course& line, const PlanCircle& circle, const std::vector<PointRecord>& results);

/** Each place lies on both circles, and they meet as often. */
Proof ProveCrossing(const PlanCircle& first, const PlanCircle& second, const std::vector<PointRecord>& results);

/** The foot lies on the line, square to the point, at the height of the line. */
Proof ProveFoot(const LineDef& line, const PointRecord& point, const PointRecord& foot, bool isSouth);

/** Distance and azimuth lead from the point to its foot. @param azimuth  nothing for a point of the line */
void RequireWayToFoot(const PointRecord& point, const PointRecord& foot, double distance,
                      std::optional<AngleUnit> azimuth, bool isSouth, Proof& proof);

/**
 * The transferred line is turned by the angle about the first point, and runs at the offset.
 *
 * @param rotation  of either sign
 * @param azimuth   told of the new line
 */
Proof ProveTransfer(const LineDef& line, AngleUnit rotation, double offset, const LineDef& result, AngleUnit azimuth,
                    bool isSouth);

/** The area, counted from the first corner, and what the rounding of the corners may do to it. */
struct CountedArea
{
    double area = 0.0;
    double allowed = 0.0;
};

CountedArea AreaOf(const std::vector<PlanVector>& corners);

} // namespace qstd

#endif
