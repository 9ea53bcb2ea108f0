#include "station/adjustment/general.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "station/adjustment/approximation.h"
#include "station/adjustment/observations.h"
#include "tests/station/adjustment/reference_adjustment.h"
#include "tests/station/adjustment/sights.h"
#include "tests/station/adjustment/test_matrix.h"
#include "tests/station/adjustment/work_record.h"
#include "tests/station/allocation_watch.h"
#include "tests/support/record.h"

using namespace qstdlib;
using support::SameBits;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double UNWRITTEN = -4711.0;

// L, X, l, dx and v are blocks of one, P, A and Q of two. The inversion has P A, N, factors, solution and residual of
// two, index and scales of one; the corrections have two products.
constexpr size_t SET_UP_BLOCKS = 5 + 6;
constexpr size_t INVERSION_BLOCKS = 10 + 2;
constexpr size_t ITERATION_BLOCKS = INVERSION_BLOCKS + 4;

const double NOT_A_NUMBER = std::nan("");

// (2")^2 in radians, from its definition.
const double DIRECTION_VARIANCE = std::pow(2.0 / 3600.0 * DEGREE, 2.0);

struct Counts
{
    int32_t mode;
    int32_t directions;
    int32_t heights;
    int32_t distances;
    int32_t withHeight;
};

// What BuildObservationVector makes of the records; the blocks are released, all of them.
struct ObservationVector
{
    int32_t result;
    int32_t mode;
    int32_t distances;
    std::vector<double> observations;
    std::vector<std::vector<double>> weights;
};

ObservationVector BuildVector(int32_t mode, const WorkRecords& work,
                              const AdjustmentPrecision& precision = DEFAULT_PRECISION)
{
    const AllocationWatch watch;
    ObservationVector v = {-1, mode, -1, {}, {}};
    double* observations = nullptr;
    Matrix weights = nullptr;
    int32_t rows = 0;
    v.result = BuildObservationVector(&v.mode, CountOf(work), work.data(), precision, &observations, &weights, &rows,
                                      &v.distances);
    if (v.result == 0)
    {
        v.observations.assign(observations + 1, observations + 1 + rows);
        for (int32_t i = 1; i <= rows; ++i)
        {
            v.weights.emplace_back(weights[i] + 1, weights[i] + 1 + rows);
        }
        std::free(observations);
        FreeMatrix(weights, 1, 1);
    }
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
    return v;
}

struct Equations
{
    std::vector<double> design; // in row order
    std::vector<double> misclosures;
};

Equations BuildEquations(int32_t mode, const WorkRecords& work, const std::vector<double>& unknowns,
                         const std::vector<double>& observations)
{
    const auto rows = static_cast<int32_t>(observations.size());
    const auto columns = static_cast<int32_t>(unknowns.size());
    std::vector<double> x = {NOT_A_NUMBER};
    x.insert(x.end(), unknowns.begin(), unknowns.end());
    std::vector<double> l = {NOT_A_NUMBER};
    l.insert(l.end(), observations.begin(), observations.end());
    TestMatrix design(rows, columns, NOT_A_NUMBER);
    std::vector<double> misclosures(observations.size() + 1, UNWRITTEN);
    BuildObservationEquations(mode, CountOf(work), work.data(), x.data(), l.data(), design, misclosures.data());
    EXPECT_EQ(UNWRITTEN, misclosures[0]);
    misclosures.erase(misclosures.begin());
    return {design.Elements(), misclosures};
}

struct Adjusted
{
    int32_t result;
    double northing, easting, height, orientation;
    double northingSigma, eastingSigma, heightSigma, orientationSigma, unitWeightSigma;
};

Adjusted Adjust(int32_t mode, WorkRecords& work, const AdjustmentPrecision& precision = DEFAULT_PRECISION)
{
    Adjusted a = {-1,        UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN,
                  UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN, UNWRITTEN};
    a.result =
        AdjustResection(mode, CountOf(work), work.data(), precision, &a.northing, &a.easting, &a.height, &a.orientation,
                        &a.northingSigma, &a.eastingSigma, &a.heightSigma, &a.orientationSigma, &a.unitWeightSigma);
    return a;
}

void ExpectNothingWritten(const Adjusted& a, const WorkRecords& work, const WorkRecords& before)
{
    for (const double output : {a.northing, a.easting, a.height, a.orientation, a.northingSigma, a.eastingSigma,
                                a.heightSigma, a.orientationSigma, a.unitWeightSigma})
    {
        EXPECT_EQ(UNWRITTEN, output);
    }
    for (size_t i = 0; i < work.size(); ++i)
    {
        EXPECT_TRUE(support::SameBytes(before[i], work[i]));
    }
}

// The closed-form start that the adjustment takes.
std::vector<double> StartingValues(int32_t mode, const WorkRecords& work, int32_t distances)
{
    double* unknowns = nullptr;
    int32_t count = 0;
    int32_t limit = 0;
    if (ApproximateStation(mode, CountOf(work), work.data(), distances, &unknowns, &count, 0, &limit) != 0)
    {
        return {};
    }
    std::vector<double> start(unknowns + 1, unknowns + 1 + count);
    std::free(unknowns);
    return start;
}

ReferenceAdjustment ReferenceFor(int32_t mode, const WorkRecords& work,
                                 const AdjustmentPrecision& precision = DEFAULT_PRECISION)
{
    Counts c = {mode, 0, 0, 0, 0};
    CountObservations(&c.mode, CountOf(work), work.data(), &c.directions, &c.heights, &c.distances, &c.withHeight);
    return AdjustByReference(c.mode == ADJUST_MODE_SPATIAL, work, precision, StartingValues(c.mode, work, c.distances));
}

void ExpectRelative(double expected, double actual, double tolerance, const char* what)
{
    EXPECT_NEAR(expected, actual, tolerance * (1.0 + std::fabs(expected))) << what;
}

// Every output of the adjustment against the reference; `tolerance` relative to the size, from 1 up.
void ExpectAgreement(const ReferenceAdjustment& expected, const Adjusted& actual, const WorkRecords& work,
                     double tolerance = 1e-9)
{
    EXPECT_EQ(expected.converged ? 0 : 1, actual.result);
    const bool spatial = expected.unknowns.size() == 4;
    const size_t last = expected.unknowns.size() - 1;
    double orientation = expected.unknowns[last];
    orientation += orientation < 0.0 ? CIRCLE_FULL : 0.0;
    orientation -= orientation > CIRCLE_FULL ? CIRCLE_FULL : 0.0;
    const double variance = expected.redundancy > 0 ? expected.squareSum / expected.redundancy : expected.squareSum;
    const auto sigma = [&](size_t i) { return std::sqrt(expected.cofactors[i] * variance); };

    ExpectRelative(expected.unknowns[0], actual.northing, tolerance, "northing");
    ExpectRelative(expected.unknowns[1], actual.easting, tolerance, "easting");
    ExpectRelative(orientation, actual.orientation, tolerance, "orientation");
    ExpectRelative(sigma(0), actual.northingSigma, tolerance, "northing sigma");
    ExpectRelative(sigma(1), actual.eastingSigma, tolerance, "easting sigma");
    ExpectRelative(sigma(last), actual.orientationSigma, tolerance, "orientation sigma");
    ExpectRelative(std::sqrt(variance), actual.unitWeightSigma, tolerance, "unit weight sigma");
    ExpectRelative(spatial ? expected.unknowns[2] : MISSING_VALUE, actual.height, tolerance, "height");
    ExpectRelative(spatial ? sigma(2) : MISSING_VALUE, actual.heightSigma, tolerance, "height sigma");
    for (size_t i = 0; i < work.size(); ++i)
    {
        ExpectRelative(expected.residuals[i].angleResidual, work[i].angleResidual, tolerance, "angle residual");
        ExpectRelative(expected.residuals[i].distanceResidual, work[i].distanceResidual, tolerance,
                       "distance residual");
        ExpectRelative(expected.residuals[i].heightValue, work[i].heightValue, tolerance, "height residual");
    }
}

} // namespace

// Per record the direction first. Directions have the weight 1; 10 m: (2")^2 / ((2 mm)^2 + (0.02 mm)^2).
TEST(BuildObservationVector, WeighsPlanDistancesAgainstDirections)
{
    WorkRecords work = {Measured(1, 1, 0.1, 10.0), Sighted(2, 2, 0.2), Measured(3, 3, MISSING_VALUE, 2000.0)};
    work[0].slopeDistance = 5000.0; // the horizontal distance counts
    const ObservationVector v = BuildVector(ADJUST_MODE_PLAN, work);
    ASSERT_EQ(0, v.result);
    EXPECT_EQ(2, v.distances);
    EXPECT_THAT(v.observations, ElementsAre(0.1, 10.0, 0.2, 2000.0));
    const double diagonal[] = {1.0, DIRECTION_VARIANCE / (4e-6 + 4e-10), 1.0, DIRECTION_VARIANCE / (4e-6 + 16e-6)};
    for (size_t i = 0; i < 4; ++i)
    {
        for (size_t j = 0; j < 4; ++j)
        {
            const double expected = i == j ? diagonal[i] : 0.0;
            EXPECT_NEAR(expected, v.weights[i][j], 1e-14 * expected) << i << ' ' << j;
        }
    }
    EXPECT_EQ(1.0, v.weights[0][0]);
}

TEST(BuildObservationVector, TakesThePrecisionFromTheRecord)
{
    const ObservationVector v =
        BuildVector(ADJUST_MODE_PLAN, {Measured(1, 1, MISSING_VALUE, 300.0)}, {6.0, 0.3, 0.002});
    const double expected = 9.0 * DIRECTION_VARIANCE / (0.09 + 0.36);
    EXPECT_NEAR(expected, v.weights[0][0], 1e-14 * expected);
}

// The weights of the spatial pair times its covariance, propagated from slope distance and zenith angle, is (2")^2:
// h = S sin z, v = S cos z.
TEST(BuildObservationVector, WeighsTheSpatialPairByItsPropagatedCovariance)
{
    for (const double zenith : {0.2, 1.0, 1.5707963267948966, 2.5})
    {
        const double slope = 400.0;
        WorkRecords work = {Sighted(1, 1, 0.1), WithHeight(Measured(2, 2, 0.2, 123.0), 7.0)};
        work[1].zenith = zenith;
        work[1].slopeDistance = slope;
        work[1].verticalDifference = 45.0;
        const ObservationVector v = BuildVector(ADJUST_MODE_SPATIAL, work);
        ASSERT_EQ(0, v.result);
        EXPECT_EQ(ADJUST_MODE_SPATIAL, v.mode);
        EXPECT_EQ(1, v.distances);
        EXPECT_THAT(v.observations, ElementsAre(0.1, 0.2, 123.0, 45.0));
        const double byS = 4e-6 + std::pow(2e-6 * slope, 2.0);
        const double byZ = DIRECTION_VARIANCE * slope * slope;
        const double s = std::sin(zenith);
        const double c = std::cos(zenith);
        const double covariance[2][2] = {{s * s * byS + c * c * byZ, s * c * (byS - byZ)},
                                         {s * c * (byS - byZ), c * c * byS + s * s * byZ}};
        for (size_t i = 0; i < 2; ++i)
        {
            for (size_t j = 0; j < 2; ++j)
            {
                const double product = v.weights[2 + i][2] * covariance[0][j] + v.weights[2 + i][3] * covariance[1][j];
                EXPECT_NEAR(i == j ? 1.0 : 0.0, product / DIRECTION_VARIANCE, 1e-9) << zenith;
            }
        }
        EXPECT_EQ(v.weights[2][3], v.weights[3][2]);
        EXPECT_EQ(0.0, v.weights[1][2]);
        EXPECT_EQ(0.0, v.weights[2][1]);
        EXPECT_EQ(1.0, v.weights[1][1]);
    }
}

TEST(BuildObservationVector, GivesNoSpatialRowToADistanceWithoutHeight)
{
    const ObservationVector v =
        BuildVector(ADJUST_MODE_SPATIAL, {Measured(1, 1, 0.1, 10.0), WithHeight(Measured(2, 2, 0.2, 20.0), 7.0)});
    ASSERT_EQ(0, v.result);
    EXPECT_EQ(1, v.distances);
    EXPECT_THAT(v.observations, ElementsAre(0.1, 0.2, 20.0, 0.0));
}

TEST(BuildObservationVector, LowersTheCallersMode)
{
    const ObservationVector v = BuildVector(ADJUST_MODE_SPATIAL, {Measured(1, 1, 0.1, 10.0)});
    EXPECT_EQ(ADJUST_MODE_PLAN, v.mode);
    EXPECT_THAT(v.observations, ElementsAre(0.1, 10.0));
}

// The square of the slope distance, 1.96e-16 and 2.25e-16, is compared with 2.22e-16.
TEST(BuildObservationVector, ReportsASlopeDistanceThatVanishesInSpace)
{
    WorkRecords work = {WithHeight(Measured(1, 1, 0.1, 10.0), 7.0)};
    for (const double slope : {0.0, 1.4e-8, -1.4e-8})
    {
        work[0].slopeDistance = slope;
        EXPECT_EQ(3, BuildVector(ADJUST_MODE_SPATIAL, work).result) << slope;
        EXPECT_EQ(0, BuildVector(ADJUST_MODE_PLAN, work).result) << slope;
    }
    work[0].slopeDistance = 1.5e-8;
    EXPECT_EQ(0, BuildVector(ADJUST_MODE_SPATIAL, work).result);
}

// L, then the table and the data of P.
TEST(BuildObservationVector, AnswersTwoWhereverMemoryFails)
{
    const WorkRecords work = {Measured(1, 1, 0.1, 10.0)};
    for (size_t failing = 1; failing <= 3; ++failing)
    {
        const AllocationWatch watch(failing);
        int32_t mode = ADJUST_MODE_PLAN;
        double* observations = nullptr;
        Matrix weights = nullptr;
        int32_t rows = 0;
        int32_t distances = 0;
        EXPECT_EQ(2, BuildObservationVector(&mode, 1, work.data(), DEFAULT_PRECISION, &observations, &weights, &rows,
                                            &distances));
        EXPECT_EQ(failing == 3 ? 1U : 0U, watch.Outstanding().size());
        const std::vector<size_t> sizes = {3 * sizeof(double), 3 * sizeof(double*), 5 * sizeof(double)};
        EXPECT_EQ(std::vector<size_t>(sizes.begin(), sizes.begin() + static_cast<ptrdiff_t>(failing)), watch.Sizes());
    }
}

// dN = 3, dE = 4: s2 = 25. Direction (-4/25, 3/25, 1), misclosure 0.5 + 0.7 - atan2(4, 3); distance (3/5, 4/5, 0),
// misclosure 5.25 - 5.
TEST(BuildObservationEquations, FormsDirectionAndDistanceRowsInPlan)
{
    const Equations e =
        BuildEquations(ADJUST_MODE_PLAN, {Measured(13.0, 24.0, 0.7, 5.25)}, {10.0, 20.0, 0.5}, {0.7, 5.25});
    EXPECT_THAT(e.design, ElementsAre(-4.0 / 25.0, 3.0 / 25.0, 1.0, 3.0 / 5.0, 4.0 / 5.0, 0.0));
    EXPECT_DOUBLE_EQ(1.2 - std::atan2(4.0, 3.0), e.misclosures[0]);
    EXPECT_EQ(0.25, e.misclosures[1]);
}

// Height 50 and reflector 1.5 seen 6 m up from 45: 6 - (51.5 - 45) = -0.5.
TEST(BuildObservationEquations, FormsThreeRowsInSpace)
{
    const WorkRecords work = {WithReflector(WithHeight(Measured(13.0, 24.0, 0.7, 5.25), 50.0), 1.5)};
    const Equations e = BuildEquations(ADJUST_MODE_SPATIAL, work, {10.0, 20.0, 45.0, 0.5}, {0.7, 5.25, 6.0});
    EXPECT_THAT(e.design, ElementsAre(-4.0 / 25.0, 3.0 / 25.0, 0.0, 1.0, //
                                      3.0 / 5.0, 4.0 / 5.0, 0.0, 0.0,    //
                                      0.0, 0.0, 1.0, 0.0));
    EXPECT_DOUBLE_EQ(1.2 - std::atan2(4.0, 3.0), e.misclosures[0]);
    EXPECT_EQ(0.25, e.misclosures[1]);
    EXPECT_EQ(-0.5, e.misclosures[2]);
}

TEST(BuildObservationEquations, AddsAReflectorHeightOnlyWhenThereIsOne)
{
    const WorkRecords work = {WithHeight(Measured(13.0, 24.0, MISSING_VALUE, 5.25), 50.0)};
    const Equations e = BuildEquations(ADJUST_MODE_SPATIAL, work, {10.0, 20.0, 45.0, 0.5}, {5.25, 6.0});
    EXPECT_EQ(1.0, e.misclosures[1]);
}

TEST(BuildObservationEquations, TakesTheRowsInTheOrderOfTheRecords)
{
    const WorkRecords work = {Measured(13.0, 24.0, MISSING_VALUE, 5.0), Sighted(10.0, 21.0, 0.1), Known(1.0, 1.0),
                              Measured(14.0, 23.0, 0.2, 6.0)};
    const Equations e = BuildEquations(ADJUST_MODE_PLAN, work, {10.0, 20.0, 0.0}, {5.0, 0.1, 0.2, 6.0});
    EXPECT_THAT(e.design, ElementsAre(3.0 / 5.0, 4.0 / 5.0, 0.0,    //
                                      -1.0, 0.0, 1.0,               //
                                      -3.0 / 25.0, 4.0 / 25.0, 1.0, //
                                      4.0 / 5.0, 3.0 / 5.0, 0.0));
    EXPECT_EQ(0.0, e.misclosures[0]);
    EXPECT_EQ(1.0, e.misclosures[3]);
}

// The target lies due north, azimuth 0; the misclosure is orientation + direction. Exactly pi of either sign stays,
// anything beyond is turned by one circle, once.
TEST(BuildObservationEquations, WrapsADirectionMisclosureOnce)
{
    const auto misclosure = [](double direction) {
        return BuildEquations(ADJUST_MODE_PLAN, {Sighted(10.0, 0.0, direction)}, {0.0, 0.0, 0.0}, {direction})
            .misclosures[0];
    };
    const double above = std::nextafter(CIRCLE_HALF, 4.0);
    EXPECT_EQ(CIRCLE_HALF, misclosure(CIRCLE_HALF));
    EXPECT_EQ(-CIRCLE_HALF, misclosure(-CIRCLE_HALF));
    EXPECT_EQ(above - CIRCLE_FULL, misclosure(above));
    EXPECT_EQ(CIRCLE_FULL - above, misclosure(-above));
    EXPECT_EQ(10.0 - CIRCLE_FULL, misclosure(10.0));
    EXPECT_EQ(CIRCLE_FULL - 10.0, misclosure(-10.0));
    EXPECT_EQ(3.0, misclosure(3.0));
}

// Orientation and observation first: 1 + 2^53 rounds to 2^53, less atan2(1, 0) and one circle. The other order differs.
TEST(BuildObservationEquations, AddsTheObservationToTheOrientationFirst)
{
    const double big = 9007199254740992.0;
    const Equations e = BuildEquations(ADJUST_MODE_PLAN, {Sighted(0.0, -10.0, 0.0)}, {0.0, 0.0, 1.0}, {big});
    EXPECT_EQ(big - std::atan2(-10.0, 0.0) - CIRCLE_FULL, e.misclosures[0]);
}

TEST(AdjustResection, AgreesWithTheReferenceInPlan)
{
    std::mt19937 random(20260101);
    int32_t most = 0;
    for (int32_t run = 0; run < 200; ++run)
    {
        WorkRecords work = RoughSights(random);
        const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
        if (expected.nearestStop < 1.01)
        {
            continue; // rounding decides whether it stops
        }
        most = std::max(most, expected.iterations);
        ExpectAgreement(expected, Adjust(ADJUST_MODE_PLAN, work), work);
    }
    EXPECT_GT(most, 2);
}

TEST(AdjustResection, AgreesWithTheReferenceInSpace)
{
    std::mt19937 random(20260102);
    for (int32_t run = 0; run < 200; ++run)
    {
        WorkRecords work = RoughSights(random);
        const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_SPATIAL, work);
        EXPECT_EQ(4U, expected.unknowns.size());
        if (expected.nearestStop < 1.01)
        {
            continue;
        }
        ExpectAgreement(expected, Adjust(ADJUST_MODE_SPATIAL, work), work);
    }
}

TEST(AdjustResection, AgreesWithTheReferenceForAnotherPrecision)
{
    std::mt19937 random(20260103);
    const AdjustmentPrecision precision = {30.0, 0.05, 0.0003};
    for (const int32_t mode : {ADJUST_MODE_PLAN, ADJUST_MODE_SPATIAL})
    {
        WorkRecords work = RoughSights(random);
        const ReferenceAdjustment expected = ReferenceFor(mode, work, precision);
        ExpectAgreement(expected, Adjust(mode, work, precision), work);
    }
}

// Five directions only: redundancy 2.
TEST(AdjustResection, AdjustsDirectionsAlone)
{
    WorkRecords work;
    for (const double degrees : {10.0, 80.0, 150.0, 220.0, 300.0})
    {
        work.push_back(Sighted(100.0 * std::cos(degrees * DEGREE), 100.0 * std::sin(degrees * DEGREE),
                               (degrees - 30.0 + 0.01 * std::sin(7.0 * degrees)) * DEGREE));
    }
    // Two of five sights moved, so that they do not lie on one circle.
    work[1].northing *= 2.0;
    work[1].easting *= 2.0;
    work[3].northing *= 1.5;
    work[3].easting *= 1.5;
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(2, expected.redundancy);
    ExpectAgreement(expected, Adjust(ADJUST_MODE_PLAN, work), work);
    EXPECT_NEAR(30.0 * DEGREE, ReferenceFor(ADJUST_MODE_PLAN, work).unknowns[2], 0.01);
}

// Three directions, three unknowns: no redundancy, so that the variance is the square sum itself, next to nothing.
TEST(AdjustResection, TakesTheSquareSumForTheVarianceWithoutRedundancy)
{
    WorkRecords work = {Sighted(100.0, 0.0, 0.5), Sighted(60.0, 55.0, 1.2), Sighted(0.0, 200.0, 2.1)};
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(0, expected.redundancy);
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    ExpectAgreement(expected, a, work);
    EXPECT_LT(a.unitWeightSigma, 1e-8);
}

// Two distances and two directions for three unknowns, with 0.3 m of contradiction.
TEST(AdjustResection, DividesTheSquareSumByTheRedundancy)
{
    WorkRecords work = {Measured(100.0, 0.0, 0.5, 100.3), Measured(0.0, 80.0, 0.5 + CIRCLE_HALF / 2.0, 80.0)};
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(1, expected.redundancy);
    ExpectAgreement(expected, Adjust(ADJUST_MODE_PLAN, work), work);
}

// Adjusted less observed, taken from the outputs themselves. The linear model leaves less than a hundredth of the
// centimetres and tenths of milliradians that stand here.
TEST(AdjustResection, ReportsAdjustedLessObserved)
{
    WorkRecords work = FourSights();
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    ASSERT_EQ(0, a.result);
    double greatest = 0.0;
    for (const ResectWorkRecord& r : work)
    {
        const double dN = r.northing - a.northing;
        const double dE = r.easting - a.easting;
        const double adjusted = std::atan2(dE, dN) - a.orientation;
        EXPECT_NEAR(0.0, std::remainder(adjusted - r.direction - r.angleResidual, CIRCLE_FULL), 1e-6);
        if (r.horizontalDistance < 1e19)
        {
            EXPECT_NEAR(std::hypot(dN, dE) - r.horizontalDistance, r.distanceResidual, 1e-5);
            greatest = std::max(greatest, std::fabs(r.distanceResidual));
        }
    }
    EXPECT_GT(greatest, 1e-3);
    EXPECT_NEAR(0.25, a.orientation, 0.01);
}

// Metres of contradiction: the cofactors before and after the last correction differ visibly, and the residuals are
// those of the linear model before it.
TEST(AdjustResection, ReportsCofactorsAndResidualsFromBeforeTheLastCorrection)
{
    WorkRecords work = Contradiction(
        {{100.0, 0.0, 20.0, 130.0}, {0.0, 120.0, 70.0, 90.0}, {-80.0, 10.0, 190.0, 60.0}, {30.0, -90.0, 270.0, 150.0}});
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    ASSERT_TRUE(expected.converged);
    EXPECT_GT(std::fabs(expected.finalCofactors[0] / expected.cofactors[0] - 1.0), 1e-6);
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    ExpectAgreement(expected, a, work);
    const double variance = a.unitWeightSigma * a.unitWeightSigma;
    EXPECT_NEAR(expected.cofactors[0], a.northingSigma * a.northingSigma / variance, 1e-9 * expected.cofactors[0]);
    EXPECT_NEAR(expected.cofactors[1], a.eastingSigma * a.eastingSigma / variance, 1e-9 * expected.cofactors[1]);
    EXPECT_NEAR(expected.cofactors[2], a.orientationSigma * a.orientationSigma / variance,
                1e-9 * expected.cofactors[2]);
}

// Perfect data: the square sum is below the machine epsilon at once.
TEST(AdjustResection, StopsAtOnceOnPerfectData)
{
    WorkRecords work = {Measured(128.0, 0.0, 0.5, 128.0), Measured(0.0, 96.0, 0.5 + CIRCLE_HALF / 2.0, 96.0),
                        Sighted(-50.0, 0.0, 0.5 + CIRCLE_HALF)};
    const AllocationWatch watch;
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(0, a.result);
    EXPECT_NEAR(0.0, a.northing, 1e-12);
    EXPECT_NEAR(0.0, a.easting, 1e-12);
    EXPECT_NEAR(CIRCLE_FULL - 0.5, a.orientation, 1e-12);
    EXPECT_EQ(SET_UP_BLOCKS + ITERATION_BLOCKS, watch.Sizes().size());
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

// An infinite distance weighs nothing, and its misclosure of infinity makes every correction NaN: zero times infinity.
// The equations of the second iteration are NaN, so that the decomposition finds a row without any magnitude and leaves
// its scales.
TEST(AdjustResection, ReportsAnInfiniteDistance)
{
    WorkRecords work = FourSights();
    work[2].horizontalDistance = std::numeric_limits<double>::infinity();
    const WorkRecords before = work;
    const AllocationWatch watch;
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(3, a.result);
    ExpectNothingWritten(a, work, before);
    EXPECT_EQ(SET_UP_BLOCKS + ITERATION_BLOCKS + INVERSION_BLOCKS, watch.Sizes().size());
    EXPECT_THAT(watch.Outstanding(), ElementsAre(4 * sizeof(double)));
}

// The square of 2e-6 times 1e200 is infinite: a weight of zero, and a misclosure that is finite. The rest is what it is
// without the distance, to the last bit; the redundancy counts it.
TEST(AdjustResection, LeavesADistanceWithoutWeightOut)
{
    WorkRecords without = FourSights();
    const Adjusted expected = Adjust(ADJUST_MODE_PLAN, without);
    WorkRecords work = FourSights();
    work[3] = Measured(work[3].northing, work[3].easting, work[3].direction, 1e200);
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(0, a.result);
    EXPECT_TRUE(SameBits(expected.northing, a.northing));
    EXPECT_TRUE(SameBits(expected.easting, a.easting));
    EXPECT_TRUE(SameBits(expected.orientation, a.orientation));
    // Seven observations and eight for three unknowns.
    EXPECT_NEAR(expected.unitWeightSigma * std::sqrt(4.0 / 5.0), a.unitWeightSigma, 1e-12);
    EXPECT_EQ(-1e200, work[3].distanceResidual);
    EXPECT_TRUE(SameBits(without[3].angleResidual, work[3].angleResidual));
}

// Directions 2e-7 off leave a square sum of about 1e-13, which is not below the epsilon: a second iteration is made.
// 1e-9 off leave one of 1e-18: no second one.
TEST(AdjustResection, StopsAtOnceOnlyBelowTheMachineEpsilon)
{
    for (const double error : {1e-9, 2e-7})
    {
        WorkRecords work = {Measured(128.0, 0.0, 0.5 + error, 128.0),
                            Measured(0.0, 96.0, 0.5 + CIRCLE_HALF / 2.0 - error, 96.0),
                            Sighted(-50.0, 0.0, 0.5 + CIRCLE_HALF + error)};
        const AllocationWatch watch;
        EXPECT_EQ(0, Adjust(ADJUST_MODE_PLAN, work).result);
        const size_t iterations = error < 1e-8 ? 1 : 2;
        EXPECT_EQ(SET_UP_BLOCKS + iterations * ITERATION_BLOCKS, watch.Sizes().size()) << error;
    }
}

// Contradictions found by search, as far from the stopping limit as could be had: the tenth iteration changes the
// square sum by 7e-6 of itself, the ones before by more than a tenth.
TEST(AdjustResection, ConvergesInTheTenthIteration)
{
    WorkRecords work = Contradiction({{90, 10, 311, 140}, {-100, -100, 344, 110}, {30, -90, 275, 120}, {0, 60, 7, 80}});
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(10, expected.iterations);
    EXPECT_TRUE(expected.converged);
    ExpectAgreement(expected, Adjust(ADJUST_MODE_PLAN, work), work, 1e-6);
}

// This one would need the eleventh. The outputs are written as they stand after the tenth.
TEST(AdjustResection, AnswersOneAfterTheTenthIteration)
{
    WorkRecords work = Contradiction({{-30, 90, 291, 20}, {50, -60, 250, 80}, {40, -20, 2, 60}, {-50, -100, 284, 100}});
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(10, expected.iterations);
    EXPECT_FALSE(expected.converged);
    const AllocationWatch watch;
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(1, a.result);
    ExpectAgreement(expected, a, work, 1e-6);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AdjustResection, AnswersOneWhenTheIterationSwings)
{
    WorkRecords work = Contradiction({{60, 100, 27, 80}, {50, -100, 81, 120}, {90, -70, 72, 20}, {-40, -30, 343, 140}});
    EXPECT_EQ(1, Adjust(ADJUST_MODE_PLAN, work).result);
}

// One circle is added to an orientation below 0, one taken from one above; no more than that. The first direction d to
// a target due north makes the orientation -d.
TEST(AdjustResection, TurnsTheOrientationByOneCircleAtMost)
{
    const auto orientation = [](double direction) {
        WorkRecords work = {Measured(128.0, 0.0, direction, 128.0),
                            Measured(0.0, 96.0, direction + CIRCLE_HALF / 2.0, 96.0)};
        const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
        EXPECT_EQ(0, a.result);
        return a.orientation;
    };
    EXPECT_NEAR(1.0, orientation(-1.0), 1e-12);
    EXPECT_NEAR(CIRCLE_FULL - 1.0, orientation(1.0), 1e-12);
    EXPECT_NEAR(CIRCLE_FULL - 10.0, orientation(10.0), 1e-12);
    EXPECT_NEAR(10.0 - CIRCLE_FULL, orientation(-10.0), 1e-12);
    EXPECT_NEAR(20.0 - CIRCLE_FULL, orientation(-20.0), 1e-12);
    EXPECT_NEAR(CIRCLE_FULL - 20.0, orientation(20.0), 1e-12);
}

// Two targets due north but for 1e-14 m to the west: the orientation is -1e-16, which one circle turns into a whole
// circle, and that is not above a whole circle.
TEST(AdjustResection, LeavesAnOrientationOfAWholeCircle)
{
    WorkRecords work = {Measured(100.0, -1e-14, 0.0, 100.0), Measured(200.0, -2e-14, 0.0, 200.0)};
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(0, a.result);
    EXPECT_TRUE(SameBits(CIRCLE_FULL, a.orientation));
}

// The last direction, 4.78, is one circle off as it is, and wrapped; so is the same without that circle. A second
// circle leaves a misclosure of 2 pi.
TEST(AdjustResection, WrapsAMisclosureOnce)
{
    WorkRecords work = FourSights();
    const Adjusted plain = Adjust(ADJUST_MODE_PLAN, work);
    work = FourSights();
    work[3].direction -= CIRCLE_FULL;
    const Adjusted unwrapped = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_NEAR(plain.northing, unwrapped.northing, 1e-9);
    EXPECT_NEAR(plain.easting, unwrapped.easting, 1e-9);
    work = FourSights();
    work[3].direction += CIRCLE_FULL;
    const ReferenceAdjustment expected = ReferenceFor(ADJUST_MODE_PLAN, work);
    const Adjusted twice = Adjust(ADJUST_MODE_PLAN, work);
    ExpectAgreement(expected, twice, work, 1e-6);
    EXPECT_GT(std::hypot(twice.northing - plain.northing, twice.easting - plain.easting), 1.0);
}

TEST(AdjustResection, CarriesOutASpatialAdjustmentInPlanWithoutHeights)
{
    WorkRecords plan = FourSights();
    const Adjusted expected = Adjust(ADJUST_MODE_PLAN, plan);
    WorkRecords work = FourSights();
    const Adjusted a = Adjust(ADJUST_MODE_SPATIAL, work);
    EXPECT_EQ(0, a.result);
    EXPECT_TRUE(SameBits(expected.northing, a.northing));
    EXPECT_TRUE(SameBits(expected.orientation, a.orientation));
    EXPECT_TRUE(SameBits(expected.northingSigma, a.northingSigma));
    EXPECT_EQ(MISSING_VALUE, a.height);
    EXPECT_EQ(MISSING_VALUE, a.heightSigma);
    EXPECT_EQ(0.0, work[0].heightValue);
}

TEST(AdjustResection, CarriesOutASpatialAdjustmentInPlanWithoutDistances)
{
    WorkRecords work = {WithHeight(Sighted(100.0, 0.0, 0.5), 10.0), Sighted(60.0, 55.0, 1.2), Sighted(0.0, 200.0, 2.1)};
    const Adjusted a = Adjust(ADJUST_MODE_SPATIAL, work);
    EXPECT_EQ(0, a.result);
    EXPECT_EQ(MISSING_VALUE, a.height);
}

// The height alone: two targets of 50 m and 51 m whose reflectors of 1.5 m are seen 2 m up and 2.5 m up: 49.5 and 50.
// At one distance level sights weigh alike: 49.75, residuals computed less observed rise, (51.5 - 49.75) - 2 = -0.25.
TEST(AdjustResection, AdjustsTheHeightInSpace)
{
    WorkRecords work = {WithReflector(WithHeight(Measured(100.0, 0.0, 0.0, 100.0), 50.0), 1.5),
                        WithReflector(WithHeight(Measured(0.0, 100.0, CIRCLE_HALF / 2.0, 100.0), 51.0), 1.5)};
    work[0].verticalDifference = 2.0;
    work[1].verticalDifference = 2.5;
    const Adjusted a = Adjust(ADJUST_MODE_SPATIAL, work);
    ASSERT_EQ(0, a.result);
    EXPECT_NEAR(49.75, a.height, 1e-9);
    EXPECT_NEAR(-0.25, work[0].heightValue, 1e-9);
    EXPECT_NEAR(0.25, work[1].heightValue, 1e-9);
    EXPECT_NEAR(0.0, work[0].distanceResidual, 1e-9);
    EXPECT_GT(a.heightSigma, 0.1);
    EXPECT_LT(a.heightSigma, 1.0);
}

TEST(AdjustResection, ReportsHeightsAndDistancesThatNeverMeet)
{
    WorkRecords work = {WithHeight(Sighted(100.0, 0.0, 0.5), 10.0), Measured(60.0, 55.0, 1.2, 80.0),
                        Sighted(0.0, 200.0, 2.1)};
    const WorkRecords before = work;
    const AllocationWatch watch;
    const Adjusted a = Adjust(ADJUST_MODE_SPATIAL, work);
    EXPECT_EQ(3, a.result);
    ExpectNothingWritten(a, work, before);
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
}

TEST(AdjustResection, ReportsAVanishingSlopeDistanceInSpaceOnly)
{
    WorkRecords work = FourSights();
    for (ResectWorkRecord& record : work)
    {
        record.height = 10.0;
    }
    work[2].slopeDistance = 0.0;
    const WorkRecords before = work;
    const Adjusted a = Adjust(ADJUST_MODE_SPATIAL, work);
    EXPECT_EQ(3, a.result);
    ExpectNothingWritten(a, work, before);
    EXPECT_EQ(0, Adjust(ADJUST_MODE_PLAN, work).result);
}

TEST(AdjustResection, ReportsDataWithoutAFirstApproximation)
{
    for (const WorkRecords& set :
         {WorkRecords{}, WorkRecords{Sighted(1, 1, 0.1), Sighted(2, 3, 0.2)},
          WorkRecords{Measured(1, 1, 0.1, 5.0), Measured(1, 1, 0.2, 6.0)}, WorkRecords{Known(1, 1)}})
    {
        WorkRecords work = set;
        const AllocationWatch watch;
        const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
        EXPECT_EQ(3, a.result);
        ExpectNothingWritten(a, work, set);
        EXPECT_THAT(watch.Outstanding(), IsEmpty());
    }
}

// Two distances without any direction leave the orientation undetermined: its row of the normal matrix is zero. The
// scales of the decomposition, three elements and a spare one, stay allocated.
TEST(AdjustResection, ReportsASingularNormalMatrix)
{
    WorkRecords work = {Measured(100.0, 0.0, MISSING_VALUE, 90.0), Measured(0.0, 100.0, MISSING_VALUE, 80.0)};
    const WorkRecords before = work;
    const AllocationWatch watch;
    const Adjusted a = Adjust(ADJUST_MODE_PLAN, work);
    EXPECT_EQ(3, a.result);
    ExpectNothingWritten(a, work, before);
    EXPECT_THAT(watch.Outstanding(), ElementsAre(4 * sizeof(double)));
}
