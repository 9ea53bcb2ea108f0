/**
 * @file station_solution.h
 * The station of one set-up: what the library makes of it, and what is derived from that.
 */
#ifndef QSTD_STATION_SOLUTION_H
#define QSTD_STATION_SOLUTION_H

#include "instrument/simulated_instrument.h"
#include "station/error_ellipse.h"
#include "station/expectation.h"
#include "station/fit.h"
#include "station/plan_adjustment.h"
#include "station/set_up.h"
#include "station/station_method.h"
#include "text/unit.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qstd {

/** What the adjusted station leaves over on one sight: adjusted less observed, in the unit of the job and radians. */
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
    REFUSED,        /**< the library's status says why */
    TOO_FEW,        /**< fewer sights than the method takes, or sights that cannot determine a station */
    NOT_A_POSITION, /**< the library's result is not a finite position */
    NO_SOLUTION,    /**< what was computed does not fulfil the equations that it came from */
    UNDETERMINED,   /**< the equations are singular where the station should be */
    AMBIGUOUS       /**< two stations fit equally well */
};

/** The library counts no more sights than this. */
constexpr size_t MOST_SIGHTS = 32767;

/** What is asked of a set-up. */
struct StationRequest
{
    StationMethod method = StationMethod::AUTO;
    std::vector<std::string> targets; /**< that may take part, in this order; none: all, as the field book has them */
    std::optional<AngleUnit> lineAzimuth; /**< of a known line */
    LinearUnit unit = LinearUnit::METRE;  /**< of the set-up and its points */
    SimulatedInstrument instrument;       /**< its corrections */
    Expectation expectation;              /**< that the sights are judged by */
    bool isLeaveOneOut = false;
};

/** What a closed solution leaves to compare, in the unit of the job. */
struct ClosedChecks
{
    std::optional<double> baseline;   /**< two distances: known baseline less measured */
    std::optional<double> lineLength; /**< known line between known points: measured length less known */
    std::optional<double> lineRise;   /**< as lineLength, the height difference */
};

/** How far small errors of the readings move a station, in the unit of the job. */
struct Sensitivity
{
    std::optional<double> perSecond; /**< the largest shift for 1" in one direction; nothing: it leaves no station */
    std::string direction;           /**< the target of that direction */
    std::optional<double> perMilli;  /**< the same for a thousandth of the unit in one distance */
    std::string distance;
};

/** What makes a solved station less sure than it looks. */
struct StationDoubts
{
    /** Distance of the station from the circle through its targets: of three directions, else where it is a doubt. */
    std::optional<double> circleDistance;
    bool isWeak = false;               /**< directions alone, near that circle or in a narrow sector */
    std::optional<double> commonShift; /**< of several directions: the station's deviation for 1" in each */
    bool isUndetermined = false;       /**< so weak that a changed reading leaves no station */
    std::optional<double> expected;    /**< with distances, weak: the longer semi-axis as expected beforehand */
    std::vector<std::string> inLine;   /**< two targets nearly in line with the station */
    AngleUnit inLineAngle = 0;         /**< between them, or left to a half circle */
    bool isInLineOpposite = false;
    std::optional<Sensitivity> sensitivity; /**< of three directions, else where there is a doubt */
    bool hasNoRedundancy = false;
    bool isOnlyRepeated = false;  /**< repeated readings check each other, and nothing the targets */
    bool hasTwoTargets = false;   /**< exchanged or mirrored they would fit as well */
    std::string onlyHeightTarget; /**< the one target that the height rests on; empty: none or more than one */
};

/** The set-up computed again without one of its observations. */
struct LeftOut
{
    size_t sight = 0;
    ObservationKind kind = ObservationKind::DIRECTION;
    bool isSolved = false;
    double northingShift = 0.0; /**< without less with the observation, in the unit of the job */
    double eastingShift = 0.0;
    std::optional<double> northingPrecision; /**< these only with redundancy */
    std::optional<double> eastingPrecision;
    std::optional<double> directionSigma; /**< of one direction after the adjustment, radians */
};

enum class SuspectKind
{
    DIRECTION,
    DISTANCE,
    HEIGHT,
    POINT /**< all sights to one target */
};

/** What seems to be wrong with a set-up that does not fit. */
struct Suspect
{
    SuspectKind kind = SuspectKind::DIRECTION;
    size_t sight = 0;            /**< of a point, the first one to it */
    std::optional<double> error; /**< observed less what the others ask for; radians, or the unit of the job */
    bool isWholeTarget = false;  /**< of a height: that from all sights to the target */
    bool isOneOfSeveral = false; /**< together with the other suspects, not in their place */
    std::optional<double> fit;   /**< without it, of one direction, radians; not of a height */
};

struct StationSolution
{
    const SetUp* setUp = nullptr;
    const KnownPoint* known = nullptr; /**< the station's own coordinates, where it is a known point */
    LinearUnit unit = LinearUnit::METRE;
    StationMethod method = StationMethod::MULTI;
    std::string choice; /**< why this method, where the tool chose it */
    std::vector<PreparedSight> sights;
    std::vector<SightResidual> residuals; /**< one a sight; empty fields where there is none */
    Outcome outcome = Outcome::REFUSED;
    int32_t status = 0; /**< of the library */
    ResectStation station = {};
    bool isByTool = false;                       /**< adjusted by the tool, where the library could not */
    std::optional<ErrorEllipse> ellipse;         /**< only with redundancy */
    std::vector<PlanObservation> observations;   /**< that the station rests on, metres */
    std::optional<PlanAdjustment> plan;          /**< the tool's own least squares of them */
    Fit fit;                                     /**< one check an observation */
    std::vector<size_t> heightSights;            /**< that the height is the mean of */
    std::vector<double> heightSigmas;            /**< expected of each of these, metres */
    Fit heightFit;                               /**< one check for each of these, metres */
    std::vector<const KnownPoint*> heightPoints; /**< their targets, each once */
    std::unordered_map<const KnownPoint*, size_t> heightPlaces; /**< their places in heightPoints */
    Fit targetHeightFit;                 /**< one check a target, metres: of what its sights have in common */
    std::vector<PointRecord> candidates; /**< of an ambiguous station, or ruled out by heights; unit of the job */
    std::vector<Suspect> suspects;       /**< most likely first; none where nothing is wrong */
    std::vector<std::string> causes;     /**< changes of the input with which the sights would fit, in words */
    std::optional<double> markHeight;    /**< of the ground mark */
    size_t used = 0;
    size_t directions = 0;
    size_t distances = 0;
    size_t heightTargets = 0; /**< that the station height is the mean of */
    bool isHeightByDistance = false;
    size_t faceTwo = 0;                /**< sights brought to face one */
    double uncorrectedCurvature = 0.0; /**< how much too high the height is at most without that correction */
    ClosedChecks checks;
    StationDoubts doubts;
    bool isSouthAzimuth = false;                 /**< the instrument counts azimuths from south */
    bool isLineByAzimuth = false;                /**< a known line whose direction is an azimuth */
    std::shared_ptr<const KnownPoint> linePoint; /**< the second point of a known line, where it is not known itself */
    std::vector<LeftOut> leftOut;                /**< one an observation, where that was asked for */
    std::optional<size_t> bestLeftOut;           /**< the one whose removal helps most, where something is wrong */

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
        // A line known by its azimuth brings the place of its second point along as a further unknown.
        const size_t unknowns = isLineByAzimuth ? 4 : 3;
        return directions + distances < unknowns ? 0 : directions + distances - unknowns;
    }

    /** False for an adjustment, whose orientation counts from north whatever the instrument's azimuths do. */
    [[nodiscard]] bool IsOrientationFromSouth() const
    {
        return isSouthAzimuth && (method == StationMethod::TWO_POINT || method == StationMethod::THREE_POINT);
    }

    /** False where sights contradict each other grossly; true without redundancy, where nothing can. */
    [[nodiscard]] bool Fits() const
    {
        return !fit.IsStrong() && !heightFit.IsStrong() && !targetHeightFit.IsStrong();
    }

    /** True where the heights differ by more than they should, among sights or among targets. */
    [[nodiscard]] bool AreHeightsDoubtful() const
    {
        return heightFit.IsMild() || heightFit.HasMarked() || targetHeightFit.IsMild() || targetHeightFit.HasMarked();
    }

    /** True where sights or heights check each other. */
    [[nodiscard]] bool IsChecked() const
    {
        return fit.redundancy > 0 || heightFit.redundancy > 0;
    }

    /** Whether sights and heights fit; nothing where nothing can tell, as repeated readings cannot of the targets. */
    [[nodiscard]] std::optional<bool> Verdict() const
    {
        if (!IsSolved() || !Fits())
        {
            return false;
        }
        return IsChecked() && !doubts.isOnlyRepeated ? std::optional(true) : std::nullopt;
    }

    /** True where the result may be taken for what it says: solved, and nothing grave against it. */
    [[nodiscard]] bool IsSound() const
    {
        return IsSolved() && Fits() && !doubts.isUndetermined;
    }

    /** True where an adjustment tells how precise the station is. */
    [[nodiscard]] bool HasPrecision() const
    {
        return method == StationMethod::MULTI && Redundancy() > 0;
    }
};

/** What the other observations say of one of a sight; null where there is none, or nothing checks it. */
const ObservationCheck* CheckOf(const StationSolution& solution, size_t sight, ObservationKind kind);

/** The same for the height from a sight, and for what the heights from all sights to its target have in common. */
const ObservationCheck* TargetHeightCheckOf(const StationSolution& solution, size_t sight);
const ObservationCheck* HeightCheckOf(const StationSolution& solution, size_t sight);

/** The targets that the station rests on, each once, in the order of the sights. */
std::vector<std::string> TargetNames(const StationSolution& solution);

/** The station's own coordinates: computed less known, each where both are there, in the unit of the job. */
struct KnownDifference
{
    std::optional<double> northing;
    std::optional<double> easting;
    std::optional<double> height; /**< of the ground mark */
};

KnownDifference DifferenceToKnown(const StationSolution& solution);

/** From where the orientation counts, in words, where the instrument counts azimuths from south; else empty. */
std::string OrientationReference(const StationSolution& solution);

/** Computes one set-up. The set-up and the points must outlive the result. */
StationSolution SolveStation(const SetUp& setUp, const PointList& points, const StationRequest& request = {});

} // namespace qstd

#endif
