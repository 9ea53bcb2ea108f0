#include "station/report.h"

#include "station/misfit_text.h"
#include "station/station_doubts.h"
#include "station/status_text.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace qstd {

namespace {

using Json = nlohmann::ordered_json;

constexpr double DEGREES_PER_RADIAN = 180.0 / 3.14159265358979323846;
constexpr double UNITS_PER_DEGREE = 57600.0;

/** An angle of the interface: the integer and the same in degrees; null twice where there is none. */
void AddAngle(Json& object, const std::string& name, std::optional<AngleUnit> units)
{
    object[name + "_degrees"] = units ? Json(DegreesOf(*units)) : Json(nullptr);
    object[name + "_units"] = units ? Json(*units) : Json(nullptr);
}

void AddOptional(Json& object, const char* name, std::optional<double> value)
{
    object[name] = value ? Json(*value) : Json(nullptr);
}

Json StationObject(const StationSolution& solution)
{
    const ResectStation& station = solution.station;
    const bool hasPrecision = solution.HasPrecision();
    const std::optional<double> nothing;
    Json object;
    object["northing"] = station.position.northing;
    object["easting"] = station.position.easting;
    AddOptional(object, "height", solution.HasHeight() ? std::optional(station.position.height) : nothing);
    AddOptional(object, "mark_height", solution.markHeight);
    AddAngle(object, "orientation", station.orientation);
    object["orientation_from"] = solution.IsOrientationFromSouth() ? "south" : "north";
    AddOptional(object, "northing_precision", hasPrecision ? std::optional(station.northingPrecision) : nothing);
    AddOptional(object, "easting_precision", hasPrecision ? std::optional(station.eastingPrecision) : nothing);
    AddOptional(object, "height_spread", solution.HasHeight() ? std::optional(station.heightSpread) : nothing);
    object["height_targets"] = solution.HasHeight() ? solution.heightTargets : 0;
    AddOptional(object, "uncorrected_curvature",
                solution.HasHeight() ? std::optional(solution.uncorrectedCurvature) : nothing);
    return object;
}

Json EllipseObject(const ErrorEllipse& ellipse)
{
    Json object;
    object["semi_major"] = ellipse.major;
    object["semi_minor"] = ellipse.minor;
    object["azimuth_degrees"] = ellipse.azimuth * DEGREES_PER_RADIAN;
    object["orientation_precision_degrees"] = ellipse.orientationSigma * DEGREES_PER_RADIAN;
    object["direction_sigma_degrees"] = ellipse.unitDirectionSigma * DEGREES_PER_RADIAN;
    return object;
}

void AddResidual(Json& object, const SightResidual& residual)
{
    std::optional<AngleUnit> direction;
    if (residual.direction)
    {
        direction = static_cast<AngleUnit>(std::lround(*residual.direction * DEGREES_PER_RADIAN * UNITS_PER_DEGREE));
    }
    AddAngle(object, "direction_residual", direction);
    AddOptional(object, "across_residual", residual.across);
    AddOptional(object, "distance_residual", residual.distance);
    AddOptional(object, "height_residual", residual.height);
}

Json KnownObject(const StationSolution& solution)
{
    const KnownDifference difference = DifferenceToKnown(solution);
    Json object;
    AddOptional(object, "northing", difference.northing);
    AddOptional(object, "easting", difference.easting);
    AddOptional(object, "height", difference.height);
    return object;
}

/** What a closed solution has to compare. */
Json CheckObject(const StationSolution& solution)
{
    const StationDoubts& doubts = solution.doubts;
    const std::optional<double> nothing;
    Json object;
    AddOptional(object, "baseline", solution.checks.baseline);
    AddOptional(object, "line_length", solution.checks.lineLength);
    AddOptional(object, "line_rise", solution.checks.lineRise);
    AddOptional(object, "danger_circle_distance", doubts.circleDistance);
    AddOptional(object, "shift_for_one_second", doubts.sensitivity ? doubts.sensitivity->perSecond : nothing);
    return object;
}

Json LeftOutObject(const LeftOut& without, const StationSolution& solution, bool isBest)
{
    const std::optional<double> nothing;
    Json object;
    object["line"] = solution.sights[without.sight].sight->line;
    object["target"] = solution.sights[without.sight].sight->target;
    object["observation"] = without.kind == ObservationKind::DIRECTION ? "direction" : "distance";
    object["solved"] = without.isSolved;
    AddOptional(object, "northing_shift", without.isSolved ? std::optional(without.northingShift) : nothing);
    AddOptional(object, "easting_shift", without.isSolved ? std::optional(without.eastingShift) : nothing);
    AddOptional(object, "northing_precision", without.northingPrecision);
    AddOptional(object, "easting_precision", without.eastingPrecision);
    AddOptional(object, "direction_sigma_degrees",
                without.directionSigma ? std::optional(*without.directionSigma * DEGREES_PER_RADIAN) : nothing);
    object["helps_most"] = isBest;
    return object;
}

/** What the others say of an observation; null where nothing does. An angle's error is in degrees. */
Json CheckOfObservation(const ObservationCheck* check, bool isAngle, LinearUnit unit)
{
    if (check == nullptr)
    {
        return nullptr;
    }
    Json object;
    object["redundancy_number"] = check->redundancy;
    object["f_percent"] = 100.0 * (1.0 - std::sqrt(1.0 - check->redundancy));
    object["standardised"] = check->standardised;
    object["studentised"] = check->studentised;
    object[isAngle ? "estimated_error_degrees" : "estimated_error"] =
        isAngle ? check->estimatedError * DEGREES_PER_RADIAN : FromMetres(check->estimatedError, unit);
    object["marked"] = check->isMarked;
    object["unchecked"] = check->isUnchecked;
    return object;
}

void AddChecks(Json& object, const StationSolution& solution, size_t sight)
{
    const bool isChecked = solution.fit.redundancy > 0;
    const auto check = [&](ObservationKind kind) { return isChecked ? CheckOf(solution, sight, kind) : nullptr; };
    object["direction_check"] = CheckOfObservation(check(ObservationKind::DIRECTION), true, solution.unit);
    object["distance_check"] = CheckOfObservation(check(ObservationKind::DISTANCE), false, solution.unit);
    object["height_check"] = CheckOfObservation(
        solution.heightFit.redundancy > 0 ? HeightCheckOf(solution, sight) : nullptr, false, solution.unit);
    object["target_height_check"] = CheckOfObservation(
        solution.targetHeightFit.redundancy > 0 ? TargetHeightCheckOf(solution, sight) : nullptr, false, solution.unit);
}

Json SuspectObject(const Suspect& suspect, const StationSolution& solution, const ReportStyle& style)
{
    const Sight& sight = *solution.sights[suspect.sight].sight;
    const bool isDirection = suspect.kind == SuspectKind::DIRECTION;
    const std::optional<double> nothing;
    Json object;
    object["target"] = sight.target;
    object["line"] = sight.line;
    object["observation"] = SuspectName(suspect.kind);
    AddOptional(object, isDirection ? "error_degrees" : "error",
                isDirection && suspect.error ? std::optional(*suspect.error * DEGREES_PER_RADIAN) : suspect.error);
    AddOptional(object, "fit_degrees", suspect.fit ? std::optional(*suspect.fit * DEGREES_PER_RADIAN) : nothing);
    object["text"] = SuspectText(suspect, solution, style.angles);
    return object;
}

/** Which observations are suspected, and which usual mistakes would explain the misfit. */
void AddSuspects(Json& object, const StationSolution& solution, const ReportStyle& style)
{
    object["suspects"] = Json::array();
    for (const Suspect& suspect : solution.suspects)
    {
        object["suspects"].push_back(SuspectObject(suspect, solution, style));
    }
    object["causes"] = solution.causes;
}

Json SightObject(const PreparedSight& prepared, const SightResidual& residual)
{
    const Sight& sight = *prepared.sight;
    Json object;
    object["line"] = sight.line;
    object["target"] = sight.target;
    AddAngle(object, "hz", sight.circle);
    AddAngle(object, "v", sight.zenith);
    AddOptional(object, "slope_distance", sight.slopeDistance);
    AddOptional(object, "horizontal_distance", prepared.horizontalDistance);
    AddOptional(object, "vertical_difference", prepared.verticalDifference);
    object["target_height"] = sight.targetHeight;
    object["face"] = prepared.isFaceTwo ? 2 : 1;
    object["used"] = prepared.isUsed;
    object["remark"] = prepared.remark.empty() ? Json(nullptr) : Json(prepared.remark);
    AddResidual(object, residual);
    return object;
}

/** The positions that a station may have where it has more than one. */
void AddCandidates(Json& object, const StationSolution& solution)
{
    for (const PointRecord& candidate : solution.candidates)
    {
        object["candidates"].push_back({{"northing", candidate.northing}, {"easting", candidate.easting}});
    }
}

Json LeftOutObjects(const StationSolution& solution)
{
    Json objects = Json::array();
    for (size_t i = 0; i < solution.leftOut.size(); ++i)
    {
        objects.push_back(LeftOutObject(solution.leftOut[i], solution, i == solution.bestLeftOut));
    }
    return objects;
}

/** Where solved the station and what tells how good it is, else why there is none. */
void AddOutcome(Json& object, const StationSolution& solution)
{
    if (!solution.IsSolved())
    {
        const StatusText words = DescribeFailure(solution);
        object["reason"] = words.reason;
        object["usual_cause"] = words.usualCause;
        object["remedy"] = words.remedy;
        AddCandidates(object, solution);
        return;
    }
    object["result"] = StationObject(solution);
    object["redundancy"] = solution.Redundancy();
    if (solution.known != nullptr)
    {
        object["computed_less_known"] = KnownObject(solution);
    }
    if (solution.method != StationMethod::MULTI)
    {
        object["checks"] = CheckObject(solution);
    }
    if (solution.ellipse)
    {
        object["error_ellipse"] = EllipseObject(*solution.ellipse);
    }
}

Json SightObjects(const StationSolution& solution)
{
    Json sights = Json::array();
    for (size_t i = 0; i < solution.sights.size(); ++i)
    {
        sights.push_back(SightObject(solution.sights[i], solution.residuals[i]));
        AddChecks(sights.back(), solution, i);
    }
    return sights;
}

Json SetUpObject(const StationSolution& solution, const ReportStyle& style)
{
    Json object;
    object["format"] = "qstd/1";
    object["station"] = solution.setUp->station;
    object["setup"] = solution.setUp->number;
    object["solved"] = solution.IsSolved();
    object["status"] = solution.status;
    object["status_name"] = OutcomeName(solution);
    object["fits"] = solution.Verdict() ? Json(*solution.Verdict()) : Json(nullptr);
    object["method"] = MethodName(solution.method);
    object["adjusted_by"] = solution.isByTool ? "tool" : "library";
    object["targets"] = TargetNames(solution);
    object["unit"] = UnitSymbol(solution.unit);
    AddOutcome(object, solution);
    AddOptional(object, "instrument_height", solution.setUp->instrumentHeight);
    object["directions"] = solution.directions;
    object["distances"] = solution.distances;
    object["reduced_from_face_two"] = solution.faceTwo;
    object["warnings"] = solution.IsSolved() ? Json(DoubtTexts(solution, style.angles, true)) : Json::array();
    AddSuspects(object, solution, style);
    if (style.isLeaveOneOut)
    {
        object["left_out"] = LeftOutObjects(solution);
    }
    object["sights"] = SightObjects(solution);
    return object;
}

} // namespace

std::string JsonReport(const std::vector<StationSolution>& solutions, const ReportStyle& style)
{
    std::string text;
    for (const StationSolution& solution : solutions)
    {
        text += SetUpObject(solution, style).dump() + "\n";
    }
    return text;
}

} // namespace qstd
