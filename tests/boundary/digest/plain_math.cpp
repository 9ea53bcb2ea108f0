#include "plain_math.h"

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

} // namespace digest
