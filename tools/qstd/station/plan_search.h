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
};

PlaceCount CountPlaces(const std::vector<PlanObservation>& observations);

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
