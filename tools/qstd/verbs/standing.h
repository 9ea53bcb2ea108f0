/**
 * @file standing.h
 * The instrument of a verb as it stands on a station: measured points from sights, sights that it would read.
 */
#ifndef QSTD_STANDING_H
#define QSTD_STANDING_H

#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "plan/figure.h"
#include "proof/space_proof.h"
#include "results/result.h"
#include "results/sink.h"
#include "verbs/sight_list.h"

#include <string>
#include <vector>

namespace qstd {

struct Standing
{
    SimulatedInstrument instrument;
    std::string name;        /**< of the station */
    bool hasStation = false; /**< without one the instrument stands at zero */
    bool hasHeight = false;
};

/** The instrument on its station, oriented. Throws WrongUse. */
Standing StandingFrom(const InstrumentOptions& options, Inputs& inputs, LinearUnit unit);

/** Throws WrongUse where no station is given. @param why  such as: the sight comes from there */
void RequireStation(const Standing& standing, const std::string& why);

/** Throws WrongUse where a table has sights, but from other stations alone. */
void RequireOwnSights(const SightList& sights, const std::string& station);

/** The azimuth, in the instrument's reference, of a circle reading. */
AngleUnit AzimuthOfReading(const Standing& standing, AngleUnit circle);

/** The same from north whatever the reference is, radians. */
double DirectionOfReading(const Standing& standing, AngleUnit circle);

/** True where the point lies behind an instrument that looks along the direction, radians from north. */
bool IsBehind(const PointRecord& station, double direction, const PointRecord& point);

/**
 * A point given by name, by coordinates, or as the sight HZ,V,SD from the station to a reflector above it.
 *
 * Three plain numbers are coordinates: the angles of a sight say their form. With --angle and a station they might be a
 * sight and are refused. A point that is sighted has a height where the station has one. Throws WrongUse.
 */
KnownPoint MeasuredPoint(const std::string& text, const Standing& standing, double targetHeight, Inputs& inputs);

bool HasPlan(const KnownPoint& point);
bool HasHeight(const KnownPoint& point);

/** A sight from the axis as the proofs take it, of either face. */
SpaceSight ProvenSight(const Standing& standing, AngleUnit circle, AngleUnit zenith);

/** The sight that the instrument is expected to read leads to the point; nothing is required without a station. */
void RequireExpected(const Standing& standing, const SightRecord& sight, const PointRecord& target, double targetHeight,
                     Proof& proof);

/** The largest distance between two of the points, the station among them where there is one. */
double ExtentOf(const std::vector<PointRecord>& points, const Standing& standing);

/** Columns for the sight that the instrument is expected to read. */
std::vector<Column> ExpectedColumns(const Standing& standing);

/** Their values: nothing without a station, or without a sight; without a height the circle reading alone. */
std::vector<Value> ExpectedValues(const Standing& standing, const SightRecord& sight);

/** Says that without a station there is no expected sight, or without its height no zenith angle. */
void NoteMissingStation(const Standing& standing, const std::string& what, Sink& sink);

/** "to the right" for what is printed above zero, "to the left" below, and so on; empty for zero. */
std::string SideOf(const Sink& sink, double value, const std::string& above, const std::string& below);

/** What a point is called in a figure: its name, or `letter` for one given by coordinates or a sight. */
std::string FigureName(const KnownPoint& point, const std::string& letter);

/** The station and a line of sight to each place; nothing without a station. */
void DrawSights(FigureWriter& figure, const Standing& standing, const std::vector<FigurePlace>& targets);

} // namespace qstd

#endif
