/**
 * @file stake_proof.h
 * Stations and offsets along a line or an arc put back into the points that they come from.
 */
#ifndef QSTD_STAKE_PROOF_H
#define QSTD_STAKE_PROOF_H

#include "proof/plan_geometry.h"
#include "proof/proof.h"

#include <optional>

namespace qstd {

/** A line to be staked out along, as its two points give it. */
class StakeLine
{
public:
    StakeLine(const PointRecord& first, const PointRecord& second);

    [[nodiscard]] double Length() const
    {
        return length;
    }

    /** Station and offset lead back to the point, and the foot lies on the line, at its grade. */
    [[nodiscard]] Proof Prove(const PointRecord& point, const ReferenceLineResult& result) const;

private:
    Course course;
    double length;
    bool hasGrade;
    double firstHeight;
    double rise;
};

/** An arc as its start, tangent and radius give it. */
class StakeArc
{
public:
    /**
     * @param azimuthOfStart  of its tangent, radians from north
     * @param radiusOfArc     negative where it turns left
     */
    StakeArc(const PlanVector& startOfArc, double azimuthOfStart, double radiusOfArc, double lengthOfArc);

    [[nodiscard]] const PlanVector& Start() const
    {
        return start;
    }

    [[nodiscard]] double StartAzimuth() const
    {
        return startAzimuth;
    }

    [[nodiscard]] double Radius() const
    {
        return radius;
    }

    [[nodiscard]] double Length() const
    {
        return length;
    }

    /** The place at a distance along the arc, or its tangents beyond either end, and an offset to the right. */
    [[nodiscard]] PlanVector At(double along, double offset) const;

private:
    PlanVector start;
    double startAzimuth;
    double radius;
    double length;
    PlanVector centre;
};

/** Distance along and offset lead back to the point. */
Proof ProveOnArc(const StakeArc& arc, const PointRecord& point, double along, double offset);

/** What an arc was asked to be; what it was not asked for is nothing. */
struct ArcWish
{
    AngleUnit startAzimuth = 0;
    bool isSouth = false;
    std::optional<double> radius;
    std::optional<double> length;
    std::optional<AngleUnit> endAzimuth;
    std::optional<PlanVector> end; /**< on the end tangent */
};

/** The arc begins with its tangent and ends with the tangent, and has the radius and the length, asked for. */
Proof ProveArc(const StakeArc& arc, const ArcParams& params, const ArcWish& wish);

} // namespace qstd

#endif
