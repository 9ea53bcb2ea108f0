#include "inputs.h"

#include <cstring>
#include <limits>

#include "plain_math.h"

namespace digest {

namespace {

// The instrument that the library is connected to: fixed answers during a call.
struct InstrumentState
{
    int32_t azimuthReference;
    int32_t curvatureRefraction;
    int32_t seaLevel;
    int32_t refractionSelector;
    double scaleFactor;
    double meanElevation;
};

InstrumentState instrument = {};

int32_t AnswerInteger(uint32_t identifier)
{
    switch (identifier)
    {
    case SETTING_AZIMUTH_REFERENCE:
        return instrument.azimuthReference;
    case SETTING_CURVATURE_REFRACTION:
        return instrument.curvatureRefraction;
    case SETTING_SEA_LEVEL:
        return instrument.seaLevel;
    case SETTING_REFRACTION_SELECTOR:
        return instrument.refractionSelector;
    default:
        return 0;
    }
}

double AnswerReal(uint32_t identifier)
{
    return identifier == SETTING_SCALE_FACTOR ? instrument.scaleFactor : 0.0;
}

void AnswerRecord(SettingsRecord* record)
{
    *record = SettingsRecord{};
    record->values[5] = instrument.meanElevation;
}

int32_t faceTwo = 0;

int32_t AnswerFaceTwo()
{
    return faceTwo;
}

// Vanishing differences count as none, as an instrument may tidy them.
double TidyDiscriminant(double value, double* /*other*/)
{
    return value < 1e-6 && value > -1e-6 ? 0.0 : value;
}

constexpr double UNITS_PER_RADIAN = ANGLE_HALF_CIRCLE / PI;

constexpr double SPECIAL_REALS[] = {
    0.0,
    -0.0,
    1.0,
    -1.0,
    0.1,
    1e-16,
    -1e-16,
    2.220446049250313e-16,
    UNDEFINED_REAL,
    MISSING_VALUE,
    NO_STATION_HEIGHT,
    1e9,
    -1e9,
    1e154,
    -1e200,
    std::numeric_limits<double>::min(),
    std::numeric_limits<double>::denorm_min(),
    std::numeric_limits<double>::max(),
    std::numeric_limits<double>::infinity(),
    -std::numeric_limits<double>::infinity(),
    std::numeric_limits<double>::quiet_NaN(),
};

constexpr AngleUnit SPECIAL_ANGLES[] = {
    0,
    1,
    -1,
    ANGLE_QUARTER_CIRCLE - 1,
    ANGLE_QUARTER_CIRCLE,
    ANGLE_QUARTER_CIRCLE + 1,
    ANGLE_HALF_CIRCLE - 1,
    ANGLE_HALF_CIRCLE,
    ANGLE_HALF_CIRCLE + 1,
    -ANGLE_HALF_CIRCLE,
    3 * ANGLE_QUARTER_CIRCLE,
    ANGLE_FULL_CIRCLE - 1,
    ANGLE_FULL_CIRCLE,
    ANGLE_FULL_CIRCLE + 1,
    -ANGLE_FULL_CIRCLE,
    -ANGLE_FULL_CIRCLE - 1,
    2 * ANGLE_FULL_CIRCLE,
    ANGLE_UNDEFINED,
    INT32_MAX - ANGLE_FULL_CIRCLE,
    INT32_MAX - ANGLE_FULL_CIRCLE + 1,
    AZIMUTH_NOT_GIVEN,
    INT32_MIN,
    INT32_MIN + 1,
};

template <typename Value, int COUNT>
Value Pick(RandomBits& random, const Value (&values)[COUNT])
{
    return values[random.Below(COUNT)];
}

double AnyDouble(RandomBits& random)
{
    const uint64_t bits = random.Next();
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// For directions from 0 to a full circle.
AngleUnit NearestUnit(double radians)
{
    const auto halfUnits = static_cast<int32_t>(2.0 * radians * UNITS_PER_RADIAN);
    return (halfUnits + 1) / 2;
}

bool IsInRange(double value)
{
    constexpr double FARTHEST = 1e7;
    return value > -FARTHEST && value < FARTHEST;
}

// Observes from the origin; what is passed through is a height above the target. Out of range it has no observation.
int32_t ObserveFromOrigin(double northing, double easting, double height, double passthrough,
                          ObservationRecord* observation)
{
    *observation = ObservationRecord{};
    if (!IsInRange(northing) || !IsInRange(easting) || !IsInRange(height) || !IsInRange(passthrough))
    {
        return -1;
    }
    const double rise = height + passthrough;
    const double plan = PlainSquareRoot(northing * northing + easting * easting);
    observation->horizontalAngle = NearestUnit(PlainDirection(easting, northing));
    observation->zenithAngle = NearestUnit(PlainDirection(plan, rise));
    observation->distance = PlainSquareRoot(plan * plan + rise * rise);
    observation->northing = northing;
    observation->easting = easting;
    observation->height = rise;
    return 0;
}

} // namespace

void Inputs::BeginCall()
{
    constexpr Kind KINDS[] = {Kind::SURVEY, Kind::SURVEY, Kind::GRID, Kind::SPOILED};
    kind = Pick(random, KINDS);
    largest = 0.0;
    ConnectInstrument();
}

void Inputs::ConnectInstrument()
{
    if (random.OneIn(2))
    {
        ConnectInstrumentSettings(nullptr);
        return;
    }
    constexpr int32_t SWITCH[] = {0, 1, 1, 2};
    constexpr double SCALES[] = {1.0, 0.9996, 1.0002, 0.0};
    instrument.azimuthReference = Pick(random, SWITCH);
    instrument.curvatureRefraction = Pick(random, SWITCH);
    instrument.seaLevel = Pick(random, SWITCH);
    instrument.refractionSelector = random.Below(3);
    instrument.scaleFactor = Spoil(Pick(random, SCALES));
    instrument.meanElevation = Spoil(Millimetres(0, 3000000));
    InstrumentSettings settings{};
    settings.GetIntSetting = AnswerInteger;
    settings.GetRealSetting = AnswerReal;
    settings.GetSettingsRecord = AnswerRecord;
    ConnectInstrumentSettings(&settings);
}

void Inputs::ConnectObservationService()
{
    if (random.OneIn(6))
    {
        return;
    }
    constexpr int32_t FACES[] = {0, 0, 1, 1, 2};
    constexpr int32_t REFERENCES[] = {0, 0, 1};
    faceTwo = Pick(random, FACES);
    instrument.azimuthReference = Pick(random, REFERENCES);
    InstrumentSettings settings{};
    settings.GetIntSetting = AnswerInteger;
    settings.QueryFaceTwo = AnswerFaceTwo;
    settings.CoordToObservation = ObserveFromOrigin;
    settings.AdjustDiscriminant = TidyDiscriminant;
    ConnectInstrumentSettings(&settings);
}

double Inputs::Note(double length)
{
    const double magnitude = length < 0.0 ? -length : length;
    if (IsInRange(magnitude) && magnitude > largest)
    {
        largest = magnitude;
    }
    return length;
}

double Inputs::Spoil(double value)
{
    if (kind != Kind::SPOILED || !random.OneIn(8))
    {
        return value;
    }
    return Note(random.OneIn(3) ? AnyDouble(random) : Pick(random, SPECIAL_REALS));
}

AngleUnit Inputs::Spoil(AngleUnit angle)
{
    if (kind != Kind::SPOILED || !random.OneIn(8))
    {
        return angle;
    }
    return random.OneIn(3) ? static_cast<AngleUnit>(random.Next() >> 32) : Pick(random, SPECIAL_ANGLES);
}

PointRecord Inputs::Spoil(PointRecord point)
{
    point.northing = Spoil(point.northing);
    point.easting = Spoil(point.easting);
    point.height = Spoil(point.height);
    return point;
}

double Inputs::Millimetres(int32_t lowest, int32_t highest)
{
    return Note(random.Between(lowest, highest) / 1000.0);
}

uint16_t Inputs::Flags()
{
    constexpr uint16_t USUAL[] = {3, 3, 3, 3, 3, 1, 1};
    constexpr uint16_t UNUSUAL[] = {0, 1, 2, 3, 0xFFFC, 0xFFFE, 0xFFFF};
    return kind != Kind::SURVEY && random.OneIn(8) ? Pick(random, UNUSUAL) : Pick(random, USUAL);
}

double Inputs::Coordinate()
{
    return kind == Kind::GRID ? Note(random.Between(-2, 2)) : Spoil(Millimetres(-2000000, 2000000));
}

double Inputs::Distance()
{
    return kind == Kind::GRID ? Note(random.Between(-1, 3)) : Spoil(Millimetres(-10000, 500000));
}

AngleUnit Inputs::Angle()
{
    constexpr AngleUnit EIGHTH_CIRCLE = ANGLE_FULL_CIRCLE / 8;
    return kind == Kind::GRID ? random.Between(-9, 17) * EIGHTH_CIRCLE : Spoil(random.Below(ANGLE_FULL_CIRCLE));
}

PointRecord Inputs::Point()
{
    PointRecord point{};
    point.northing = Coordinate();
    point.easting = Coordinate();
    point.height = kind == Kind::GRID ? random.Between(-1, 1) : Spoil(Millimetres(0, 300000));
    point.flags = Flags();
    return point;
}

PointRecord Inputs::FullPoint()
{
    PointRecord point = Point();
    if (!random.OneIn(4))
    {
        point.flags = POINT_HAS_PLAN | POINT_HAS_HEIGHT;
    }
    return point;
}

PointRecord Inputs::PointNear(const PointRecord& point)
{
    PointRecord near = Point();
    near.northing = point.northing + Distance();
    near.easting = point.easting + Distance();
    return near;
}

LineDef Inputs::Line()
{
    constexpr uint16_t MODES[] = {LINE_BY_AZIMUTH, LINE_BY_AZIMUTH, LINE_BY_POINTS, LINE_BY_POINTS, LINE_BY_POINTS, 0};
    LineDef line{};
    line.first = Point();
    line.second = random.OneIn(16) ? line.first : Point();
    line.azimuth = Angle();
    line.mode = Pick(random, MODES);
    return line;
}

// The orientation comes from its half-angle tangent t: cosine (1 - t^2) / (1 + t^2), sine 2 t / (1 + t^2).
SetUp Inputs::NewSetUp()
{
    SetUp setUp{};
    setUp.station.northing = Millimetres(-2000000, 2000000);
    setUp.station.easting = Millimetres(-2000000, 2000000);
    setUp.station.height = Millimetres(0, 300000);
    setUp.station.flags = 3;
    const double t = Millimetres(-5000, 5000);
    setUp.cosine = (1.0 - t * t) / (1.0 + t * t);
    setUp.sine = 2.0 * t / (1.0 + t * t);
    setUp.orientation = NearestUnit(PlainDirection(setUp.sine, setUp.cosine));
    return setUp;
}

Sight Inputs::SurveySight(const SetUp& setUp)
{
    const double dN = Millimetres(-900000, 900000);
    const double dE = Millimetres(-900000, 900000);
    const double dH = Millimetres(-60000, 60000);
    const double plan = PlainSquareRoot(dN * dN + dE * dE);

    Sight sight{};
    sight.reflectorHeight = Millimetres(1200, 2200);
    sight.target = {setUp.station.northing + dN, setUp.station.easting + dE,
                    setUp.station.height + dH - sight.reflectorHeight, Flags()};
    const AngleUnit azimuth = NearestUnit(PlainDirection(dE, dN));
    const AngleUnit noise = random.Between(-40, 40);
    sight.horizontalAngle = (azimuth - setUp.orientation + noise + 2 * ANGLE_FULL_CIRCLE) % ANGLE_FULL_CIRCLE;
    sight.zenithAngle = NearestUnit(PlainDirection(plan, dH)) + random.Between(-40, 40);
    sight.horizontalDistance = plan + Millimetres(-3, 3);
    sight.verticalDifference = dH + Millimetres(-3, 3);
    sight.slopeDistance = PlainSquareRoot(plan * plan + dH * dH) + Millimetres(-3, 3);
    sight.localNorthing = dN * setUp.cosine + dE * setUp.sine + Millimetres(-3, 3);
    sight.localEasting = dE * setUp.cosine - dN * setUp.sine + Millimetres(-3, 3);
    return sight;
}

Sight Inputs::GridSight()
{
    Sight sight{};
    sight.target = Point();
    sight.horizontalAngle = Angle();
    sight.zenithAngle = Angle();
    sight.slopeDistance = Distance();
    sight.horizontalDistance = Distance();
    sight.verticalDifference = Distance();
    sight.reflectorHeight = Distance();
    sight.localNorthing = Coordinate();
    sight.localEasting = Coordinate();
    return sight;
}

Sight Inputs::Spoil(Sight sight)
{
    sight.target = Spoil(sight.target);
    sight.horizontalAngle = Spoil(sight.horizontalAngle);
    sight.zenithAngle = Spoil(sight.zenithAngle);
    sight.slopeDistance = Spoil(sight.slopeDistance);
    sight.horizontalDistance = Spoil(sight.horizontalDistance);
    sight.verticalDifference = Spoil(sight.verticalDifference);
    sight.reflectorHeight = Spoil(sight.reflectorHeight);
    sight.localNorthing = Spoil(sight.localNorthing);
    sight.localEasting = Spoil(sight.localEasting);
    return sight;
}

Sight Inputs::NewSight(const SetUp& setUp)
{
    Sight sight = kind == Kind::GRID ? GridSight() : Spoil(SurveySight(setUp));
    if (random.OneIn(4))
    {
        sight.slopeDistance = 0.0;
        sight.horizontalDistance = 0.0;
    }
    if (random.OneIn(8) && sight.zenithAngle >= 0)
    {
        sight.horizontalAngle = (sight.horizontalAngle % ANGLE_FULL_CIRCLE + ANGLE_HALF_CIRCLE) % ANGLE_FULL_CIRCLE;
        sight.zenithAngle = ANGLE_FULL_CIRCLE - sight.zenithAngle;
    }
    return sight;
}

} // namespace digest
