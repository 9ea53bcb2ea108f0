#include "plain_math.h"

#include <cstdint>

namespace digest {

namespace {

double Magnitude(double value)
{
    return value < 0.0 ? -value : value;
}

// For 0 <= t <= 1: the angle is halved three times, then the series t - t^3/3 + t^5/5 - ... converges quickly.
double ArcTangentOfFraction(double t)
{
    constexpr int HALVINGS = 3;
    constexpr int LAST_POWER = 19;
    for (int i = 0; i < HALVINGS; ++i)
    {
        t = t / (1.0 + PlainSquareRoot(1.0 + t * t));
    }
    double sum = 0.0;
    for (int power = LAST_POWER; power >= 1; power -= 2)
    {
        sum = 1.0 / power - t * t * sum;
    }
    return 8.0 * t * sum;
}

// An angle as whole quarter circles and the rest, -pi/4 to pi/4.
struct Reduced
{
    int32_t quarters;
    double rest;
};

Reduced Reduce(double angle)
{
    // A quarter circle in two parts: the first has so few bits that its product with a number of quarters is exact.
    constexpr double QUARTER_HIGH = 1.57079632673412561417;
    constexpr double QUARTER_LOW = 6.07710050650619224932e-11;
    constexpr double FARTHEST = 1e6;
    if (!(Magnitude(angle) < FARTHEST))
    {
        angle = angle - angle;
        return {0, angle};
    }
    const double turns = angle * (2.0 / PI);
    const auto quarters = static_cast<int32_t>(turns < 0.0 ? turns - 0.5 : turns + 0.5);
    return {quarters, angle - quarters * QUARTER_HIGH - quarters * QUARTER_LOW};
}

// x^first/first! - x^(first + 2)/(first + 2)! + ... over its first term; at x = pi/4 the term left out is below 1e-19.
double AlternatingSeries(double x, int first)
{
    constexpr int TERMS = 10;
    double sum = 1.0;
    for (int power = first + 2 * TERMS; power > first; power -= 2)
    {
        sum = 1.0 - x * x / (power * (power - 1)) * sum;
    }
    return sum;
}

double SineAfter(const Reduced& angle, int32_t quarters)
{
    const int32_t quarter = (angle.quarters + quarters) & 3;
    const double value =
        (quarter & 1) != 0 ? AlternatingSeries(angle.rest, 0) : angle.rest * AlternatingSeries(angle.rest, 1);
    return (quarter & 2) != 0 ? -value : value;
}

} // namespace

double PlainSquareRoot(double value)
{
    if (!(value > 0.0))
    {
        return 0.0;
    }
    // Newton's steps: the error halves until the root is near, some 25 times at most, then it is squared.
    constexpr int STEPS = 34;
    double root = value > 1.0 ? value : 1.0;
    for (int i = 0; i < STEPS; ++i)
    {
        root = 0.5 * (root + value / root);
    }
    return root;
}

double PlainDirection(double y, double x)
{
    const double across = Magnitude(y);
    const double along = Magnitude(x);
    if (across == 0.0 && along == 0.0)
    {
        return 0.0;
    }
    double angle =
        across <= along ? ArcTangentOfFraction(across / along) : 0.5 * PI - ArcTangentOfFraction(along / across);
    if (x < 0.0)
    {
        angle = PI - angle;
    }
    return y < 0.0 ? 2.0 * PI - angle : angle;
}

double PlainArcTangent(double y, double x)
{
    const double direction = PlainDirection(y, x);
    return direction > PI ? direction - 2.0 * PI : direction;
}

double PlainSine(double angle)
{
    return SineAfter(Reduce(angle), 0);
}

double PlainCosine(double angle)
{
    return SineAfter(Reduce(angle), 1);
}

double PlainHypotenuse(double x, double y)
{
    const double larger = Magnitude(x) > Magnitude(y) ? Magnitude(x) : Magnitude(y);
    const double smaller = Magnitude(x) > Magnitude(y) ? Magnitude(y) : Magnitude(x);
    const double ratio = larger == 0.0 ? 0.0 : smaller / larger;
    return larger * PlainSquareRoot(1.0 + ratio * ratio);
}

} // namespace digest
