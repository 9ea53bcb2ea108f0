/**
 * @file set_up.h
 * From a set-up of the field book to the observations of the library: what takes part, and why the rest does not.
 */
#ifndef QSTD_SET_UP_H
#define QSTD_SET_UP_H

#include "input/field_book.h"
#include "instrument/simulated_instrument.h"
#include "text/unit.h"

#include <qstdlib.h>

#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** A sight brought to face one and joined with its target. */
struct PreparedSight
{
    const Sight* sight = nullptr;
    const KnownPoint* target = nullptr; /**< null where there are no plan coordinates to go with */
    const KnownPoint* benchmark =
        nullptr;            /**< a point of known height alone that serves the height, and nothing else */
    bool isFaceTwo = false; /**< as read; the angles below are reduced */
    AngleUnit circle = 0;
    std::optional<AngleUnit> zenith;
    std::optional<double> horizontalDistance; /**< measured, or reduced from the slope */
    std::optional<double> verticalDifference; /**< instrument axis to reflector */
    bool isUsed = false;
    std::string remark; /**< why the sight, or a part of it, does not take part */
};

/** What measured distances are reduced with: settings of the instrument, and the unit of the job. */
struct Reduction
{
    SimulatedInstrument instrument;
    LinearUnit unit = LinearUnit::METRE;
};

/** All sights of a set-up, in its order. The set-up and the points must outlive the result. */
std::vector<PreparedSight> PrepareSights(const SetUp& setUp, const PointList& points, const Reduction& reduction = {});

/**
 * Brings the distance of a sight to the horizontal and to the plan: curvature and refraction, sea level and scale by
 * the settings.
 */
void ReduceDistance(PreparedSight& prepared, const Reduction& reduction);

/** True for a zenith angle in face one so near to the vertical that the sight has no direction. */
bool IsVertical(AngleUnit zenith);

/** As above, for a sight; false where its zenith was not read. */
bool IsVertical(const PreparedSight& prepared);

/** A point of the library in metres. */
PointRecord PointInMetres(const PointRecord& point, LinearUnit unit);

/**
 * The record of the library for a sight that is used, in metres.
 *
 * Without a zenith reading the target's height is withheld: a level sight would be an invention.
 *
 * @param unit  of the set-up and its points
 */
ResectObservation ToObservation(const PreparedSight& prepared, LinearUnit unit = LinearUnit::METRE);

} // namespace qstd

#endif
