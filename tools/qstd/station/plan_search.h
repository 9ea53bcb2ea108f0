/**
 * @file plan_search.h
 * A station from any observations that determine one, without a first approximation from outside.
 */
#ifndef QSTD_PLAN_SEARCH_H
#define QSTD_PLAN_SEARCH_H

#include "station/plan_adjustment.h"

#include <vector>

namespace qstd {

/** How many different places the observations go to, and to how many of them a distance was measured. */
struct PlaceCount
{
    size_t places = 0;
    size_t measured = 0;

    /** What is left where repeated readings count once; 0 also where there is less than a station needs. */
    [[nodiscard]] size_t Redundancy() const
    {
        return places + measured < 3 ? 0 : places + measured - 3;
    }
};

PlaceCount CountPlaces(const std::vector<PlanObservation>& observations);

/** True where no two distances go to places apart from each other: such observations may allow two stations. */
bool AreDistancesScarce(const std::vector<PlanObservation>& observations);

/** True where the observations can determine a station: three places, or two and a distance to one of them. */
bool CanDetermine(const PlaceCount& count);

/**
 * The stations that the observations allow, best first: closed solutions from pairs and triples of places, each
 * adjusted with all observations. A second one is kept only where it fits as well as the first but for chance. Empty
 * where there is none.
 */
std::vector<PlanAdjustment> FindStations(const std::vector<PlanObservation>& observations);

} // namespace qstd

#endif
