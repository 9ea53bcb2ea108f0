#include "station/plan_search.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

/** More places than these give no better start; pairs and triples of them are tried all. */
constexpr size_t MOST_PLACES = 7;

/** So many of the best starting positions are adjusted. */
constexpr size_t MOST_STARTS = 4;

/** All that was observed to one place: the middle one of repeated readings. */
struct Place
{
    double northing = 0.0;
    double easting = 0.0;
    std::vector<double> directions;
    std::vector<double> distances;
};

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[(values.size() - 1) / 2];
}

/** The median of angles that may lie on both sides of the circle's zero. */
double MedianAngle(const std::vector<double>& angles)
{
    std::vector<double> differences;
    differences.reserve(angles.size());
    for (const double angle : angles)
    {
        differences.push_back(WrapToHalfCircle(angle - angles.front()));
    }
    return angles.front() + Median(std::move(differences));
}

double Direction(const Place& place)
{
    return MedianAngle(place.directions);
}

std::vector<Place> PlacesOf(const std::vector<PlanObservation>& observations)
{
    std::map<std::pair<double, double>, size_t> known;
    std::vector<Place> places;
    for (const PlanObservation& observation : observations)
    {
        const auto [entry, isNew] = known.emplace(std::pair(observation.northing, observation.easting), places.size());
        if (isNew)
        {
            places.push_back({observation.northing, observation.easting, {}, {}});
        }
        Place& place = places[entry->second];
        (observation.kind == ObservationKind::DIRECTION ? place.directions : place.distances)
            .push_back(observation.value);
    }
    return places;
}

/** As many as are tried, all around: every so many in the order of their directions, those with a distance first. */
std::vector<Place> ChosenPlaces(std::vector<Place> places)
{
    places.erase(std::remove_if(places.begin(), places.end(), [](const Place& p) { return p.directions.empty(); }),
                 places.end());
    if (places.size() <= MOST_PLACES)
    {
        return places;
    }
    std::stable_sort(places.begin(), places.end(), [](const Place& one, const Place& other) {
        return std::pair(one.distances.empty(), one.directions.front()) <
               std::pair(other.distances.empty(), other.directions.front());
    });
    std::vector<Place> chosen;
    for (size_t i = 0; i < MOST_PLACES; ++i)
    {
        chosen.push_back(std::move(places[i * (places.size() - 1) / (MOST_PLACES - 1)]));
    }
    return chosen;
}

using Positions = std::vector<PlanPosition>;

/** At a distance from `from` that makes an angle at `from` with the line to `to`, to both sides. */
void AddBothSides(Positions& positions, const Place& from, const Place& to, double distance, double angle)
{
    const double azimuth = std::atan2(to.easting - from.easting, to.northing - from.northing);
    for (const double side : {angle, -angle})
    {
        positions.push_back({from.northing + distance * std::cos(azimuth + side),
                             from.easting + distance * std::sin(azimuth + side), 0.0});
    }
}

double BaselineLength(const Place& one, const Place& other)
{
    return std::hypot(other.northing - one.northing, other.easting - one.easting);
}

/** Two distances: the circles around both places meet twice. The cosine rule gives the angle at the first place. */
void AddTwoDistances(Positions& positions, const Place& one, const Place& other)
{
    const double baseline = BaselineLength(one, other);
    const double r1 = Median(one.distances);
    const double r2 = Median(other.distances);
    const double cosine = (r1 * r1 + baseline * baseline - r2 * r2) / (2.0 * r1 * baseline);
    AddBothSides(positions, one, other, r1, std::acos(std::clamp(cosine, -1.0, 1.0)));
}

/** One distance and the angle between both directions: the sine rule gives the angle at the other place, twice. */
void AddOneDistance(Positions& positions, const Place& measured, const Place& other)
{
    const double distance = Median(measured.distances);
    const double angle = std::fabs(WrapToHalfCircle(Direction(other) - Direction(measured)));
    const double sine = distance * std::sin(angle) / BaselineLength(measured, other);
    const double acute = std::asin(std::clamp(sine, -1.0, 1.0));
    for (const double atOther : {acute, PI - acute})
    {
        if (atOther + angle <= PI)
        {
            AddBothSides(positions, measured, other, distance, PI - angle - atOther);
        }
    }
}

/**
 * Three directions: the station lies on the circles through the first and second and through the second and third
 * place, from where these appear under the angles measured. It is the second place mirrored in the line of centres.
 */
void AddThreeDirections(Positions& positions, const Place& p1, const Place& p2, const Place& p3)
{
    const double cot12 = 1.0 / std::tan(Direction(p2) - Direction(p1));
    const double cot23 = 1.0 / std::tan(Direction(p3) - Direction(p2));
    // Centres, from the second place.
    const double n1 = p1.northing - p2.northing, e1 = p1.easting - p2.easting;
    const double n3 = p3.northing - p2.northing, e3 = p3.easting - p2.easting;
    const double centreN12 = (n1 + e1 * cot12) / 2.0, centreE12 = (e1 - n1 * cot12) / 2.0;
    const double centreN23 = (n3 - e3 * cot23) / 2.0, centreE23 = (e3 + n3 * cot23) / 2.0;
    const double dN = centreN23 - centreN12;
    const double dE = centreE23 - centreE12;
    const double twice = 2.0 * (centreN12 * dE - centreE12 * dN) / (dN * dN + dE * dE);
    const PlanPosition position = {p2.northing + dE * twice, p2.easting - dN * twice, 0.0};
    if (std::isfinite(position.northing) && std::isfinite(position.easting))
    {
        positions.push_back(position);
    }
}

/** True where distances were measured to places apart from each other: circles around these meet well. */
bool HasWideDistances(const std::vector<Place>& places)
{
    constexpr double NARROW = 0.01;
    for (const Place& one : places)
    {
        for (const Place& other : places)
        {
            if (!one.distances.empty() && !other.distances.empty() &&
                BaselineLength(one, other) > NARROW * one.distances.front())
            {
                return true;
            }
        }
    }
    return false;
}

Positions ClosedPositions(const std::vector<Place>& places)
{
    const bool isScarce = places.size() == 2 || !HasWideDistances(places);
    Positions positions;
    for (size_t i = 0; i < places.size(); ++i)
    {
        for (size_t j = 0; j < places.size(); ++j)
        {
            if (isScarce && i != j && !places[i].distances.empty())
            {
                AddOneDistance(positions, places[i], places[j]);
            }
            if (i < j && !places[i].distances.empty() && !places[j].distances.empty())
            {
                AddTwoDistances(positions, places[i], places[j]);
            }
            for (size_t k = j + 1; i < j && k < places.size(); ++k)
            {
                AddThreeDirections(positions, places[i], places[j], places[k]);
                AddThreeDirections(positions, places[j], places[i], places[k]);
            }
        }
    }
    return positions;
}

/** The middle of the orientations that the directions ask for. */
double OrientationAt(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    std::vector<double> orientations;
    for (const PlanObservation& observation : observations)
    {
        if (observation.kind == ObservationKind::DIRECTION)
        {
            orientations.push_back(
                std::atan2(observation.easting - position.easting, observation.northing - position.northing) -
                observation.value);
        }
    }
    return orientations.empty() ? 0.0 : MedianAngle(orientations);
}

/** How far the observations are from a position: the sum of residuals, which one blunder does not rule. */
double SumOfResiduals(const std::vector<PlanObservation>& observations, const PlanPosition& position)
{
    double sum = 0.0;
    for (const PlanObservation& observation : observations)
    {
        sum += std::sqrt(observation.weight) * std::fabs(PlanResidual(observation, position));
    }
    return sum;
}

/** One direction and one distance to each place: enough to tell where a start lies. */
std::vector<PlanObservation> Sample(const std::vector<PlanObservation>& observations, const std::vector<Place>& places)
{
    std::vector<PlanObservation> sample;
    for (const Place& place : places)
    {
        PlanObservation one;
        one.northing = place.northing;
        one.easting = place.easting;
        one.value = Direction(place);
        sample.push_back(one);
        if (!place.distances.empty())
        {
            one.kind = ObservationKind::DISTANCE;
            one.value = Median(place.distances);
            // The weights of distances differ little; that of any will do.
            one.weight = std::find_if(observations.begin(), observations.end(), [](const PlanObservation& o) {
                             return o.kind == ObservationKind::DISTANCE;
                         })->weight;
            sample.push_back(one);
        }
    }
    return sample;
}

/** The best starting positions, oriented. */
Positions BestStarts(const std::vector<PlanObservation>& observations)
{
    const std::vector<Place> places = ChosenPlaces(PlacesOf(observations));
    const std::vector<PlanObservation> sample = Sample(observations, places);
    std::vector<std::pair<double, PlanPosition>> ranked;
    for (PlanPosition position : ClosedPositions(places))
    {
        position.orientation = OrientationAt(sample, position);
        const double distance = SumOfResiduals(sample, position);
        if (std::isfinite(distance))
        {
            ranked.emplace_back(distance, position);
        }
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    Positions starts;
    for (const auto& [distance, position] : ranked)
    {
        const double apart = 0.01 * distance;
        const bool isNew = std::none_of(starts.begin(), starts.end(), [&, p = position](const PlanPosition& start) {
            return std::hypot(start.northing - p.northing, start.easting - p.easting) < std::max(apart, 0.01);
        });
        if (isNew && starts.size() < MOST_STARTS)
        {
            starts.push_back(position);
        }
    }
    return starts;
}

bool IsSamePlace(const PlanPosition& one, const PlanPosition& other)
{
    constexpr double APART = 1e-3;
    return std::hypot(one.northing - other.northing, one.easting - other.easting) < APART;
}

} // namespace

PlaceCount CountPlaces(const std::vector<PlanObservation>& observations)
{
    std::map<std::pair<double, double>, bool> places;
    for (const PlanObservation& observation : observations)
    {
        bool& isMeasured = places[{observation.northing, observation.easting}];
        isMeasured = isMeasured || observation.kind == ObservationKind::DISTANCE;
    }
    const auto measured = std::count_if(places.begin(), places.end(), [](const auto& place) { return place.second; });
    return {places.size(), static_cast<size_t>(measured)};
}

bool AreDistancesScarce(const std::vector<PlanObservation>& observations)
{
    return !HasWideDistances(PlacesOf(observations));
}

bool CanDetermine(const PlaceCount& count)
{
    return count.places >= 3 || (count.places == 2 && count.measured > 0);
}

std::vector<PlanAdjustment> FindStations(const std::vector<PlanObservation>& observations)
{
    // Of two normally distributed sets of residuals one is the better but for chance in a thousand where their square
    // sums differ by this many variances.
    constexpr double CHANCE = 14.0;
    std::vector<PlanAdjustment> found;
    for (const PlanPosition& start : BestStarts(observations))
    {
        const std::optional<PlanAdjustment> adjusted = AdjustPlan(observations, start);
        const bool isNew = adjusted && std::none_of(found.begin(), found.end(), [&](const PlanAdjustment& other) {
                               return IsSamePlace(other.position, adjusted->position);
                           });
        if (isNew)
        {
            found.push_back(*adjusted);
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const PlanAdjustment& one, const PlanAdjustment& other) {
        return one.squareSum < other.squareSum;
    });
    if (found.size() > 1)
    {
        const double redundancy = std::max(1.0, static_cast<double>(observations.size()) - 3.0);
        const double variance = std::max(WEIGHT_DIRECTION * WEIGHT_DIRECTION, found[0].squareSum / redundancy);
        const double limit = found[0].squareSum + CHANCE * variance;
        found.erase(std::remove_if(found.begin(), found.end(),
                                   [limit](const PlanAdjustment& other) { return other.squareSum > limit; }),
                    found.end());
    }
    return found;
}

} // namespace qstd
