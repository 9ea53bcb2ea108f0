// Inputs for every exported function: surveys as they happen, and what no survey should hand in.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_INPUTS_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_INPUTS_H

#include <qstdlib.h>

#include "random_bits.h"

namespace digest {

// Where an instrument stands and how its circle is turned: the azimuth of the circle's zero, with its cosine and sine.
struct SetUp
{
    PointRecord station;
    AngleUnit orientation;
    double cosine;
    double sine;
};

// All that can be observed of one target from a set-up; each function takes what it needs.
struct Sight
{
    PointRecord target;
    AngleUnit horizontalAngle;
    AngleUnit zenithAngle;
    double slopeDistance;
    double horizontalDistance;
    double verticalDifference;
    double reflectorHeight;
    double localNorthing;
    double localEasting;
};

class Inputs
{
public:
    explicit Inputs(uint64_t seed) : random(seed)
    {
    }

    // Begins the inputs of one call: chooses their kind and connects an instrument.
    void BeginCall();

    // Connects, to most calls, an observation service, a telescope in either face and a rule for discriminants as well.
    void ConnectObservationService();

    RandomBits& Random()
    {
        return random;
    }

    // The largest length that went into the call; what is too large for one, or no number, does not count.
    double LargestLength() const
    {
        return largest;
    }

    double Coordinate();
    double Distance();
    AngleUnit Angle();
    PointRecord Point();
    // Most of its points have a height.
    PointRecord FullPoint();
    // Some distances away from a point, so that circles and lines around both meet.
    PointRecord PointNear(const PointRecord& point);
    LineDef Line();
    SetUp NewSetUp();
    Sight NewSight(const SetUp& setUp);

private:
    enum class Kind
    {
        SURVEY,  // consistent geometry, rounded readings, some noise, some parts not measured
        GRID,    // a few small integers and simple fractions of the circle: coincidences and right angles abound
        SPOILED, // a survey in which single values are replaced by special ones or by any bits
    };

    void ConnectInstrument();
    double Note(double length);
    double Spoil(double value);
    AngleUnit Spoil(AngleUnit angle);
    PointRecord Spoil(PointRecord point);
    uint16_t Flags();
    double Millimetres(int32_t lowest, int32_t highest);
    Sight SurveySight(const SetUp& setUp);
    Sight GridSight();
    Sight Spoil(Sight sight);

    RandomBits random;
    Kind kind = Kind::SURVEY;
    double largest = 0.0;
};

} // namespace digest

#endif
