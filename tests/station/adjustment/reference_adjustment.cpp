#include "tests/station/adjustment/reference_adjustment.h"

#include <algorithm>
#include <cmath>

namespace {

using Row = std::vector<double>; // coefficients of the unknowns, then the misclosure

constexpr int32_t LIMIT = 10;

// The equations of all records, each of unit weight in terms of a direction.
struct Equations
{
    std::vector<Row> rows;
    size_t unknowns;
};

bool HasDistance(bool spatial, const ResectWorkRecord& r)
{
    const bool all =
        r.zenith < 1e19 && r.slopeDistance < 1e19 && r.horizontalDistance < 1e19 && r.verticalDifference < 1e19;
    return all && (!spatial || r.height < 1e19);
}

double RelativeSigma(const qstdlib::AdjustmentPrecision& p, double distance)
{
    const double direction = p.angleSigma / 3600.0 * 3.14159265358979323846 / 180.0;
    return std::hypot(p.distanceConstant, p.distanceProportional * distance) / direction;
}

Row Combine(double a, const Row& left, double b, const Row& right)
{
    Row row(left.size());
    for (size_t i = 0; i < row.size(); ++i)
    {
        row[i] = a * left[i] + b * right[i];
    }
    return row;
}

// Misclosures are observed less computed; coefficients their derivatives.
Row DirectionRow(const ResectWorkRecord& r, const std::vector<double>& x)
{
    const double dN = r.northing - x[0];
    const double dE = r.easting - x[1];
    const double distance = std::hypot(dN, dE);
    Row row(x.size() + 1, 0.0);
    row[0] = -dE / distance / distance;
    row[1] = dN / distance / distance;
    row[x.size() - 1] = 1.0;
    double misclosure = x[x.size() - 1] + r.direction - std::atan2(dE, dN);
    const double circle = 2.0 * 3.14159265358979323846;
    if (std::fabs(misclosure) > circle / 2.0)
    {
        misclosure -= std::copysign(circle, misclosure);
    }
    row[x.size()] = misclosure;
    return row;
}

Row DistanceRow(const ResectWorkRecord& r, const std::vector<double>& x)
{
    const double azimuth = std::atan2(r.easting - x[1], r.northing - x[0]);
    Row row(x.size() + 1, 0.0);
    row[0] = std::cos(azimuth);
    row[1] = std::sin(azimuth);
    row[x.size()] = r.horizontalDistance - std::hypot(r.northing - x[0], r.easting - x[1]);
    return row;
}

Row RiseRow(const ResectWorkRecord& r, const std::vector<double>& x)
{
    Row row(x.size() + 1, 0.0);
    row[2] = 1.0;
    const double reflector = r.reflectorHeight < 1e19 ? r.reflectorHeight : 0.0;
    row[x.size()] = r.verticalDifference - (r.height + reflector - x[2]);
    return row;
}

Equations Build(bool spatial, const WorkRecords& work, const qstdlib::AdjustmentPrecision& p,
                const std::vector<double>& x)
{
    Equations e = {{}, x.size()};
    for (const ResectWorkRecord& r : work)
    {
        if (r.direction < 1e19)
        {
            e.rows.push_back(DirectionRow(r, x));
        }
        if (!HasDistance(spatial, r))
        {
            continue;
        }
        const Row distance = DistanceRow(r, x);
        if (!spatial)
        {
            e.rows.push_back(Combine(1.0 / RelativeSigma(p, r.horizontalDistance), distance, 0.0, distance));
            continue;
        }
        // d(slope) = sin z dh + cos z dv and slope d(zenith) = cos z dh - sin z dv.
        const Row rise = RiseRow(r, x);
        const double bySlope = 1.0 / RelativeSigma(p, r.slopeDistance);
        e.rows.push_back(Combine(std::sin(r.zenith) * bySlope, distance, std::cos(r.zenith) * bySlope, rise));
        e.rows.push_back(Combine(std::cos(r.zenith) / r.slopeDistance, distance, //
                                 -std::sin(r.zenith) / r.slopeDistance, rise));
    }
    return e;
}

// Gram-Schmidt, twice: the columns become orthonormal, R is upper triangular. The last column, the misclosures, becomes
// what the unknowns cannot explain.
struct Solution
{
    std::vector<double> corrections;
    std::vector<double> cofactors;
    double squareSum;
};

Solution Solve(Equations e)
{
    const size_t u = e.unknowns;
    std::vector<std::vector<double>> r(u + 1, std::vector<double>(u + 1, 0.0));
    for (size_t j = 0; j <= u; ++j)
    {
        for (size_t k = 0; k < 2 * j; ++k)
        {
            const size_t i = k % j;
            double projection = 0.0;
            for (const Row& row : e.rows)
            {
                projection += row[i] * row[j];
            }
            for (Row& row : e.rows)
            {
                row[j] -= projection * row[i];
            }
            r[i][j] += projection;
        }
        double square = 0.0;
        for (const Row& row : e.rows)
        {
            square += row[j] * row[j];
        }
        r[j][j] = std::sqrt(square);
        for (Row& row : e.rows)
        {
            row[j] /= j < u ? r[j][j] : 1.0;
        }
    }
    Solution s = {std::vector<double>(u), std::vector<double>(u, 0.0), r[u][u] * r[u][u]};
    for (size_t i = u; i-- > 0;)
    {
        double sum = -r[i][u];
        for (size_t j = i + 1; j < u; ++j)
        {
            sum -= r[i][j] * s.corrections[j];
        }
        s.corrections[i] = sum / r[i][i];
    }
    // Cofactors: squared rows of the inverse of R, column by column.
    for (size_t c = 0; c < u; ++c)
    {
        std::vector<double> column(u, 0.0);
        for (size_t i = c + 1; i-- > 0;)
        {
            double sum = i == c ? 1.0 : 0.0;
            for (size_t j = i + 1; j <= c; ++j)
            {
                sum -= r[i][j] * column[j];
            }
            column[i] = sum / r[i][i];
            s.cofactors[i] += column[i] * column[i];
        }
    }
    return s;
}

double Apply(const Row& row, const std::vector<double>& corrections)
{
    double residual = row[corrections.size()];
    for (size_t i = 0; i < corrections.size(); ++i)
    {
        residual += row[i] * corrections[i];
    }
    return residual;
}

// Residuals of the equations at `x` after the corrections, turned into adjusted less observed.
WorkRecords Residuals(bool spatial, WorkRecords work, const std::vector<double>& x, const std::vector<double>& dx)
{
    for (ResectWorkRecord& r : work)
    {
        const bool measured = HasDistance(spatial, r);
        r.angleResidual = r.direction < 1e19 ? -Apply(DirectionRow(r, x), dx) : 0.0;
        r.distanceResidual = measured ? -Apply(DistanceRow(r, x), dx) : 0.0;
        r.heightValue = measured && spatial ? -Apply(RiseRow(r, x), dx) : 0.0;
    }
    return work;
}

} // namespace

ReferenceAdjustment AdjustByReference(bool spatial, const WorkRecords& work,
                                      const qstdlib::AdjustmentPrecision& precision, std::vector<double> start)
{
    ReferenceAdjustment a = {};
    a.unknowns = std::move(start);
    a.nearestStop = 1e9;
    double previous = 0.0;
    while (!a.converged && a.iterations < LIMIT)
    {
        ++a.iterations;
        const std::vector<double> before = a.unknowns;
        const Equations equations = Build(spatial, work, precision, before);
        const Solution s = Solve(equations);
        a.redundancy = static_cast<int32_t>(equations.rows.size()) - static_cast<int32_t>(equations.unknowns);
        a.cofactors = s.cofactors;
        a.lastCorrections = s.corrections;
        a.squareSum = s.squareSum;
        a.residuals = Residuals(spatial, work, before, s.corrections);
        for (size_t i = 0; i < before.size(); ++i)
        {
            a.unknowns[i] += s.corrections[i];
        }
        const double change = a.iterations > 1 ? std::fabs(s.squareSum / previous - 1.0) / 0.001 : 1e9;
        a.converged = s.squareSum < 2.220446049250313e-16 || change < 1.0;
        a.nearestStop = std::min({a.nearestStop, std::max(change, 1.0 / change)});
        previous = s.squareSum;
    }
    a.finalCofactors = Solve(Build(spatial, work, precision, a.unknowns)).cofactors;
    return a;
}
