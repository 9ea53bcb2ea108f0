#include "instrument/simulated_instrument.h"

#include <cmath>
#include <cstddef>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;

/** Place of the mean elevation in the settings record. */
constexpr size_t MEAN_ELEVATION = 5;

/** The operations of the library carry no context: this is it. */
const SimulatedInstrument* active = nullptr;

AngleUnit OnCircle(long long angle)
{
    const long long remainder = angle % ANGLE_FULL_CIRCLE;
    return static_cast<AngleUnit>(remainder < 0 ? remainder + ANGLE_FULL_CIRCLE : remainder);
}

long long NearestUnit(double radians)
{
    return std::llround(radians * (ANGLE_HALF_CIRCLE / PI));
}

int32_t GetIntSetting(uint32_t identifier)
{
    switch (identifier)
    {
    case SETTING_AZIMUTH_REFERENCE:
        return active->azimuthReference;
    case SETTING_CURVATURE_REFRACTION:
        return active->curvatureRefraction;
    case SETTING_REFRACTION_SELECTOR:
        return active->refractionSelector;
    case SETTING_SEA_LEVEL:
        return active->seaLevel;
    default:
        return 0;
    }
}

double GetRealSetting(uint32_t identifier)
{
    return identifier == SETTING_SCALE_FACTOR ? active->scaleFactor : 0.0;
}

void GetSettingsRecord(SettingsRecord* record)
{
    *record = {};
    record->values[MEAN_ELEVATION] = active->meanElevation;
}

int32_t QueryFaceTwo()
{
    return active->isFaceTwo ? 1 : 0;
}

int32_t CoordToObservation(double northing, double easting, double height, double targetHeight,
                           ObservationRecord* observation)
{
    const PointRecord target = {northing, easting, height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
    return active->Observe(target, targetHeight, observation) ? QSTD_OK : QSTD_REJECTED;
}

void Connect(const SimulatedInstrument* instrument)
{
    active = instrument;
    const InstrumentSettings operations = {GetIntSetting, GetRealSetting,     GetSettingsRecord,
                                           QueryFaceTwo,  CoordToObservation, nullptr};
    ConnectInstrumentSettings(instrument == nullptr ? nullptr : &operations);
}

} // namespace

bool SimulatedInstrument::Observe(const PointRecord& target, double targetHeight, ObservationRecord* observation) const
{
    *observation = {};
    const double dN = target.northing - station.northing;
    const double dE = target.easting - station.easting;
    const double dH = (target.height + targetHeight) - (station.height + instrumentHeight);
    const double horizontal = std::hypot(dN, dE);
    const double slope = std::hypot(horizontal, dH);
    if (!std::isfinite(slope) || slope == 0.0)
    {
        return false;
    }
    const AngleUnit southTurn = azimuthReference == 1 ? ANGLE_HALF_CIRCLE : 0;
    const long long azimuth = NearestUnit(std::atan2(dE, dN)) + southTurn;

    observation->horizontalAngle = horizontal == 0.0 ? 0 : OnCircle(azimuth - orientation);
    observation->zenithAngle = OnCircle(NearestUnit(std::atan2(horizontal, dH)));
    observation->distance = slope;
    observation->secondDistance = horizontal;
    observation->thirdDistance = dH;
    observation->northing = target.northing;
    observation->easting = target.easting;
    observation->height = target.height;
    return true;
}

SightRecord SimulatedInstrument::Sight(const PointRecord& target, double targetHeight) const
{
    ObservationRecord observed;
    if (!Observe(target, targetHeight, &observed) || !isFaceTwo)
    {
        return {observed.horizontalAngle, observed.zenithAngle, observed.distance};
    }
    return {OnCircle(static_cast<long long>(observed.horizontalAngle) + ANGLE_HALF_CIRCLE),
            OnCircle(static_cast<long long>(ANGLE_FULL_CIRCLE) - observed.zenithAngle), observed.distance};
}

InstrumentConnection::InstrumentConnection(const SimulatedInstrument& connected) : outer(active)
{
    Connect(&connected);
}

InstrumentConnection::~InstrumentConnection()
{
    Connect(outer);
}

} // namespace qstd
