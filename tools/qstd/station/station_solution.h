/**
 * @file station_solution.h
 * The station of one set-up: the library's adjustment, and what is derived from it.
 */
#ifndef QSTD_STATION_SOLUTION_H
#define QSTD_STATION_SOLUTION_H

#include "station/error_ellipse.h"
#include "station/set_up.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace qstd {

/** What the adjusted station leaves over on one sight: adjusted less observed, metres and radians. */
struct SightResidual
{
    std::optional<double> direction; /**< radians */
    std::optional<double> across;    /**< the direction residual at the target, across the line of sight */
    std::optional<double> distance;
    std::optional<double> height; /**< station height from this sight less the station height */
};

/** How the computation of a set-up ended. */
enum class Outcome
{
    SOLVED,
    REFUSED,       /**< the library's status says why */
    TOO_MANY,      /**< more sights than the adjustment is given */
    NOT_A_POSITION /**< the library's result is not a finite position */
};

/** More used sights than this are not adjusted: the weight matrix has a row and a column for each observation. */
constexpr size_t MOST_SIGHTS = 2500;

struct StationSolution
{
    const SetUp* setUp = nullptr;
    const KnownPoint* known = nullptr; /**< the station's own coordinates, where it is a known point */
    std::vector<PreparedSight> sights;
    std::vector<SightResidual> residuals; /**< one a sight; empty fields where there is none */
    Outcome outcome = Outcome::REFUSED;
    int32_t status = 0; /**< of the library */
    ResectStation station = {};
    std::optional<ErrorEllipse> ellipse; /**< only with redundancy */
    std::optional<double> markHeight;    /**< of the ground mark */
    size_t used = 0;
    size_t directions = 0;
    size_t distances = 0;
    size_t heightTargets = 0; /**< that the station height is the mean of */
    bool isHeightByDistance = false;
    size_t faceTwo = 0; /**< sights brought to face one */

    [[nodiscard]] bool IsSolved() const
    {
        return outcome == Outcome::SOLVED;
    }

    [[nodiscard]] bool HasHeight() const
    {
        return (station.position.flags & POINT_HAS_HEIGHT) != 0;
    }

    /** Observations less unknowns; meaningful for a solved station, where it is not negative. */
    [[nodiscard]] size_t Redundancy() const
    {
        return directions + distances < 3 ? 0 : directions + distances - 3;
    }
};

/** Computes one set-up. The set-up and the points must outlive the result. */
StationSolution SolveStation(const SetUp& setUp, const PointList& points);

} // namespace qstd

#endif
