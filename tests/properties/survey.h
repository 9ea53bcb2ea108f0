// Set-ups for property tests: a true station, targets around it, what an instrument would observe, and how errors of
// the observations reach the station, in the linear approximation and independently of the library.
#ifndef QSTDLIB_TESTS_PROPERTIES_SURVEY_H
#define QSTDLIB_TESTS_PROPERTIES_SURVEY_H

#include <cmath>
#include <cstdint>
#include <vector>

#include "qstdlib.h"
#include "tests/support/angle.h"

namespace survey {

constexpr double RADIANS_PER_UNIT = support::PI / ANGLE_HALF_CIRCLE;
constexpr double HALF_A_UNIT = 0.5 * RADIANS_PER_UNIT; // most that rounding to a unit of angle can do

struct Place
{
    double northing;
    double easting;
};

inline double Distance(const Place& from, const Place& to)
{
    return std::hypot(to.northing - from.northing, to.easting - from.easting);
}

inline double Azimuth(const Place& from, const Place& to)
{
    return std::atan2(to.easting - from.easting, to.northing - from.northing);
}

inline Place Polar(const Place& from, double azimuth, double distance)
{
    return {from.northing + distance * std::cos(azimuth), from.easting + distance * std::sin(azimuth)};
}

inline Place PlaceOf(const PointRecord& point)
{
    return {point.northing, point.easting};
}

inline PointRecord PlanPointAt(const Place& place)
{
    return {place.northing, place.easting, 0.0, POINT_HAS_PLAN};
}

// Circle reading to the nearest unit, within the circle.
inline AngleUnit ReadingOf(double radians)
{
    return support::OnCircle(std::llround(radians / RADIANS_PER_UNIT));
}

// A station whose circle's zero points to `orientation`.
struct SetUp
{
    Place station;
    double orientation; // radians
    std::vector<Place> targets;

    AngleUnit Reading(size_t i) const
    {
        return ReadingOf(Azimuth(station, targets[i]) - orientation);
    }

    double DistanceTo(size_t i) const
    {
        return Distance(station, targets[i]);
    }
};

// One observation equation in northing, easting and orientation, divided by the standard deviation.
struct Equation
{
    double coefficients[3];
    double sigma;
};

inline Equation DirectionEquation(const SetUp& s, size_t i, double sigma)
{
    const double azimuth = Azimuth(s.station, s.targets[i]);
    const double distance = s.DistanceTo(i);
    // The reading, azimuth less orientation, as the station moves.
    return {{std::sin(azimuth) / distance / sigma, -std::cos(azimuth) / distance / sigma, -1.0 / sigma}, sigma};
}

inline Equation DistanceEquation(const SetUp& s, size_t i, double sigma)
{
    const double azimuth = Azimuth(s.station, s.targets[i]);
    return {{-std::cos(azimuth) / sigma, -std::sin(azimuth) / sigma, 0.0}, sigma};
}

// The least-squares estimate as a linear function of the observations: inverse of the normal matrix by cofactors.
class Propagation
{
public:
    explicit Propagation(std::vector<Equation> given) : equations(std::move(given))
    {
        double n[3][3] = {};
        for (const Equation& e : equations)
        {
            for (int i = 0; i < 3; ++i)
            {
                for (int j = 0; j < 3; ++j)
                {
                    n[i][j] += e.coefficients[i] * e.coefficients[j];
                }
            }
        }
        const auto minor = [&n](int i, int j) {
            const int r = (i + 1) % 3, q = (i + 2) % 3, c = (j + 1) % 3, d = (j + 2) % 3;
            return n[r][c] * n[q][d] - n[r][d] * n[q][c];
        };
        const double determinant = n[0][0] * minor(0, 0) + n[0][1] * minor(0, 1) + n[0][2] * minor(0, 2);
        for (int i = 0; i < 3; ++i)
        {
            for (int j = 0; j < 3; ++j)
            {
                inverse[i][j] = minor(j, i) / determinant;
            }
        }
    }

    // Standard deviation of an unknown: 0 northing, 1 easting, 2 orientation.
    double Sigma(int unknown) const
    {
        return std::sqrt(inverse[unknown][unknown]);
    }

    // Most that errors of up to `errors`, one an observation, can move an unknown.
    double Bound(int unknown, const std::vector<double>& errors) const
    {
        double bound = 0.0;
        for (size_t k = 0; k < equations.size(); ++k)
        {
            bound += std::fabs(Influence(unknown, k)) * errors[k];
        }
        return bound;
    }

    // The part of an observation's variance that its residual keeps.
    double Redundancy(size_t k) const
    {
        double leverage = 0.0;
        for (int i = 0; i < 3; ++i)
        {
            leverage += equations[k].coefficients[i] * Influence(i, k) * equations[k].sigma;
        }
        return 1.0 - leverage;
    }

private:
    // Change of an unknown with the observation.
    double Influence(int unknown, size_t k) const
    {
        double sum = 0.0;
        for (int j = 0; j < 3; ++j)
        {
            sum += inverse[unknown][j] * equations[k].coefficients[j];
        }
        return sum / equations[k].sigma;
    }

    std::vector<Equation> equations;
    double inverse[3][3];
};

// The library's a-priori precisions: 2" for a direction, 2 mm + 2 ppm for a distance.
constexpr double DIRECTION_SIGMA = 2.0 / 3600.0 * support::PI / 180.0;

inline double DistanceSigma(double distance)
{
    return std::hypot(0.002, 0.000002 * distance);
}

} // namespace survey

#endif
