#include "station/error_ellipse.h"

#include <array>
#include <cmath>

namespace qstd {

namespace {

// The a-priori precisions of the library's adjustment: 2" per direction, 2 mm + 2 ppm per distance.
constexpr double ARC_SECOND = 4.84813681109536e-6;
constexpr double DIRECTION_SIGMA = 2.0 * ARC_SECOND;
constexpr double DISTANCE_CONSTANT = 0.002;
constexpr double DISTANCE_PROPORTION = 0.000002;
constexpr double PI = 3.14159265358979323846;

using Row = std::array<double, 3>;

/** Symmetric 3 x 3 sum of weighted products of rows. */
struct NormalMatrix
{
    std::array<Row, 3> element = {};

    void Add(const Row& row, double weight)
    {
        for (size_t i = 0; i < 3; ++i)
        {
            for (size_t j = 0; j < 3; ++j)
            {
                element[i][j] += row[i] * weight * row[j];
            }
        }
    }
};

/** Inverse by cofactors, after each unknown has been scaled to a unit diagonal. */
std::optional<NormalMatrix> Inverse(const NormalMatrix& normal)
{
    constexpr double SMALLEST_DETERMINANT = 1e-14;
    Row scale = {};
    for (size_t i = 0; i < 3; ++i)
    {
        scale[i] = 1.0 / std::sqrt(normal.element[i][i]);
        if (!std::isfinite(scale[i]))
        {
            return std::nullopt;
        }
    }
    std::array<Row, 3> m = {};
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            m[i][j] = normal.element[i][j] * scale[i] * scale[j];
        }
    }
    NormalMatrix inverse;
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            const size_t i1 = (i + 1) % 3, i2 = (i + 2) % 3, j1 = (j + 1) % 3, j2 = (j + 2) % 3;
            inverse.element[j][i] = m[i1][j1] * m[i2][j2] - m[i1][j2] * m[i2][j1];
        }
    }
    const double determinant =
        m[0][0] * inverse.element[0][0] + m[0][1] * inverse.element[1][0] + m[0][2] * inverse.element[2][0];
    if (!(determinant > SMALLEST_DETERMINANT))
    {
        return std::nullopt;
    }
    for (size_t i = 0; i < 3; ++i)
    {
        for (size_t j = 0; j < 3; ++j)
        {
            inverse.element[i][j] *= scale[i] * scale[j] / determinant;
        }
    }
    return inverse;
}

void AddSight(NormalMatrix& normal, const PreparedSight& sight, const PointRecord& station, LinearUnit unit)
{
    const double dN = sight.target->point.northing - station.northing;
    const double dE = sight.target->point.easting - station.easting;
    const double squared = dN * dN + dE * dE;
    const double distance = std::sqrt(squared);
    normal.Add({-dE / squared, dN / squared, 1.0}, 1.0);
    if (sight.horizontalDistance)
    {
        const double proportional = DISTANCE_PROPORTION * *sight.horizontalDistance;
        const double constant = FromMetres(DISTANCE_CONSTANT, unit);
        const double variance = constant * constant + proportional * proportional;
        normal.Add({dN / distance, dE / distance, 0.0}, DIRECTION_SIGMA * DIRECTION_SIGMA / variance);
    }
}

} // namespace

std::optional<PositionCofactors> FormCofactors(const std::vector<PreparedSight>& sights, const PointRecord& position,
                                               LinearUnit unit)
{
    NormalMatrix normal;
    for (const PreparedSight& sight : sights)
    {
        if (sight.isUsed)
        {
            AddSight(normal, sight, position, unit);
        }
    }
    const std::optional<NormalMatrix> inverse = Inverse(normal);
    if (!inverse)
    {
        return std::nullopt;
    }
    const auto& q = inverse->element;
    const double trace = q[0][0] + q[1][1];
    // Axes of the ellipse: the eigenvalues of the 2 x 2 part, mean +- radius on Mohr's circle.
    const double radius = std::hypot((q[0][0] - q[1][1]) / 2.0, q[0][1]);
    const double azimuth = 0.5 * std::atan2(2.0 * q[0][1], q[0][0] - q[1][1]);
    PositionCofactors cofactors;
    cofactors.major = std::sqrt(trace / 2.0 + radius);
    cofactors.minor = std::sqrt(std::fmax(trace / 2.0 - radius, 0.0));
    cofactors.azimuth = azimuth < 0.0 ? azimuth + PI : azimuth;
    cofactors.northing = std::sqrt(q[0][0]);
    cofactors.easting = std::sqrt(q[1][1]);
    cofactors.orientation = std::sqrt(q[2][2]);
    return cofactors;
}

std::optional<ErrorEllipse> FormErrorEllipse(const std::vector<PreparedSight>& sights, const ResectStation& station,
                                             LinearUnit unit)
{
    const std::optional<PositionCofactors> cofactors = FormCofactors(sights, station.position, unit);
    if (!cofactors)
    {
        return std::nullopt;
    }
    const double unitSigma = std::hypot(station.northingPrecision, station.eastingPrecision) /
                             std::hypot(cofactors->northing, cofactors->easting);
    ErrorEllipse ellipse;
    ellipse.major = unitSigma * cofactors->major;
    ellipse.minor = unitSigma * cofactors->minor;
    ellipse.azimuth = cofactors->azimuth;
    ellipse.orientationSigma = unitSigma * cofactors->orientation;
    ellipse.unitDirectionSigma = unitSigma;
    if (!std::isfinite(ellipse.major) || !std::isfinite(ellipse.minor) || !std::isfinite(ellipse.orientationSigma))
    {
        return std::nullopt;
    }
    return ellipse;
}

} // namespace qstd
