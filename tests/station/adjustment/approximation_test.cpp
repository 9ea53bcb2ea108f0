#include "station/adjustment/approximation.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/station/adjustment/work_record.h"
#include "tests/station/allocation_watch.h"

using namespace qstdlib;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr double EPSILON = 2.220446049250313e-16;
constexpr double DEGREE = 3.141592653589793 / 180.0;
constexpr double CIRCLE_HALF = 3.141592653589793;

// Positions of the chosen records; empty when there were none.
std::vector<ptrdiff_t> Select(int32_t mode, int32_t how, const WorkRecords& work)
{
    const ResectWorkRecord* chosen[3] = {nullptr, nullptr, nullptr};
    const int32_t result = SelectTargets(mode, how, CountOf(work), work.data(), chosen);
    std::vector<ptrdiff_t> positions;
    if (result == 0)
    {
        for (int32_t i = 0; i < how; ++i)
        {
            positions.push_back(chosen[i] - work.data());
        }
    }
    else
    {
        EXPECT_EQ(ADJUST_DEGENERATE, result);
    }
    return positions;
}

// Directions of the records; NaN for a record without one.
std::vector<ptrdiff_t> SelectThree(const std::vector<double>& directions)
{
    WorkRecords work;
    for (const double direction : directions)
    {
        work.push_back(std::isnan(direction) ? Known(0.0, 0.0) : Sighted(0.0, 0.0, direction));
    }
    return Select(ADJUST_MODE_PLAN, 3, work);
}

struct Approximated
{
    int32_t result;
    std::vector<double> unknowns;
    int32_t unknownCount;
    int32_t iterationLimit;
};

Approximated Approximate(int32_t mode, const WorkRecords& work, int32_t distances)
{
    const AllocationWatch watch;
    double* unknowns = nullptr;
    Approximated a = {-1, {}, -1, -1};
    a.result = ApproximateStation(mode, CountOf(work), work.data(), distances, &unknowns, &a.unknownCount, 99,
                                  &a.iterationLimit);
    if (unknowns != nullptr)
    {
        a.unknowns.assign(unknowns + 1, unknowns + 1 + a.unknownCount);
        std::free(unknowns);
    }
    EXPECT_THAT(watch.Outstanding(), IsEmpty());
    return a;
}

void ExpectUnknowns(const std::vector<double>& expected, const Approximated& actual)
{
    EXPECT_EQ(0, actual.result);
    EXPECT_EQ(10, actual.iterationLimit);
    ASSERT_EQ(expected.size(), actual.unknowns.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(expected[i], actual.unknowns[i], 1e-9) << i;
    }
}

void ExpectDegenerate(const Approximated& actual)
{
    EXPECT_EQ(3, actual.result);
    EXPECT_EQ(10, actual.iterationLimit) << "set before anything else";
    EXPECT_THAT(actual.unknowns, IsEmpty());
}

// Station at the origin, circle zero at azimuth -0.5: targets at azimuths 0, 45 and 90 degrees.
WorkRecords OctantSights()
{
    return {Sighted(100.0, 0.0, 0.5), Sighted(50.0, 50.0, 45.0 * DEGREE + 0.5),
            Sighted(0.0, 200.0, 90.0 * DEGREE + 0.5)};
}

// Station at the origin, circle zero at azimuth -0.5: targets 128 m north and 96 m east.
WorkRecords TwoDistances()
{
    return {Measured(128.0, 0.0, 0.5, 128.0), Measured(0.0, 96.0, 90.0 * DEGREE + 0.5, 96.0)};
}

} // namespace

TEST(SelectTargets, FindsTheFirstTargetWithADistance)
{
    const WorkRecords work = {Sighted(1, 1, 0.1), Measured(2, 2, 0.2, 10), Measured(3, 3, 0.3, 10)};
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 1, work), ElementsAre(1));
}

TEST(SelectTargets, AsksForZenithAndAllThreeDistances)
{
    double ResectWorkRecord::*const components[] = {&ResectWorkRecord::zenith, &ResectWorkRecord::slopeDistance,
                                                    &ResectWorkRecord::horizontalDistance,
                                                    &ResectWorkRecord::verticalDifference};
    for (const auto component : components)
    {
        WorkRecords work = {Measured(2, 2, 0.2, 10)};
        work[0].*component = MISSING_VALUE;
        EXPECT_THAT(Select(ADJUST_MODE_PLAN, 1, work), IsEmpty());
    }
    // Neither direction nor, in plan, heights matter.
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 1, {Measured(2, 2, MISSING_VALUE, 10)}), ElementsAre(0));
}

TEST(SelectTargets, AsksForTheHeightOfADistanceTargetInSpaceOnly)
{
    const WorkRecords work = {Measured(1, 1, 0.1, 10), WithHeight(Measured(2, 2, 0.2, 10), 5)};
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 1, work), ElementsAre(0));
    EXPECT_THAT(Select(ADJUST_MODE_SPATIAL, 1, work), ElementsAre(1));
}

TEST(SelectTargets, PairsTheFirstTargetWithTheNextInAnotherPlace)
{
    const WorkRecords work = {Sighted(0, 0, 0.1), Measured(2, 2, 0.2, 10), Measured(2, 2, 0.3, 11),
                              Measured(2, 3, 0.4, 12), Measured(4, 4, 0.5, 13)};
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, work), ElementsAre(1, 3));
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(2, 2, 0.2, 10), Measured(3, 2, 0.3, 11)}), ElementsAre(0, 1));
}

TEST(SelectTargets, NeverPairsTargetsInOnePlace)
{
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(2, 2, 0.2, 10), Measured(2, 2, 0.3, 11)}), IsEmpty());
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(2, 2, 0.2, 10), Sighted(3, 3, 0.3)}), IsEmpty());
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(2, 2, 0.2, 10)}), IsEmpty());
}

// A difference of exactly the machine epsilon counts, the double below it does not.
TEST(SelectTargets, ComparesPlacesWithTheMachineEpsilon)
{
    const double below = std::nextafter(EPSILON, 0.0);
    for (const double sign : {1.0, -1.0})
    {
        EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(0, 0, 0.2, 10), Measured(sign * EPSILON, 0, 0.3, 11)}),
                    ElementsAre(0, 1));
        EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(0, 0, 0.2, 10), Measured(0, sign * EPSILON, 0.3, 11)}),
                    ElementsAre(0, 1));
        EXPECT_THAT(
            Select(ADJUST_MODE_PLAN, 2, {Measured(0, 0, 0.2, 10), Measured(sign * below, sign * below, 0.3, 11)}),
            IsEmpty());
    }
}

// The first lies within the epsilon of both others, which differ from each other.
TEST(SelectTargets, GoesOnToTheNextTargetWhenTheFirstHasNoPartner)
{
    const double step = 0.75 * EPSILON;
    const WorkRecords work = {Measured(0, 0, 0.2, 10), Measured(-step, 0, 0.3, 11), Measured(step, 0, 0.4, 12)};
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, work), ElementsAre(1, 2));
}

TEST(SelectTargets, PairsInSpaceOnlyTargetsWithHeights)
{
    const WorkRecords work = {WithHeight(Measured(1, 1, 0.1, 10), 5), Measured(2, 2, 0.2, 10),
                              WithHeight(Measured(3, 3, 0.3, 10), 6)};
    EXPECT_THAT(Select(ADJUST_MODE_SPATIAL, 2, work), ElementsAre(0, 2));
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, work), ElementsAre(0, 1));
}

TEST(SelectTargets, TakesTheFirstThreeDirectionsThatDiffer)
{
    EXPECT_THAT(SelectThree({0.1, 0.2, 0.3, 0.4}), ElementsAre(0, 1, 2));
}

TEST(SelectTargets, NeedsThreeDirections)
{
    EXPECT_THAT(SelectThree({}), IsEmpty());
    EXPECT_THAT(SelectThree({0.1, 0.2}), IsEmpty());
    EXPECT_THAT(SelectThree({0.1, std::nan(""), 0.3}), IsEmpty());
    EXPECT_THAT(SelectThree({0.1, std::nan(""), 0.3, std::nan(""), 0.7}), ElementsAre(0, 2, 4));
}

// With i and j in one direction, k must differ from i; the order is then i, k, j.
TEST(SelectTargets, SetsATargetInTheSameDirectionLast)
{
    EXPECT_THAT(SelectThree({0.5, 0.5, 0.7}), ElementsAre(0, 2, 1));
    EXPECT_THAT(SelectThree({0.5, 0.5 + CIRCLE_HALF, 0.7}), ElementsAre(0, 2, 1));
    EXPECT_THAT(SelectThree({0.5 + CIRCLE_HALF, 0.5, 0.7}), ElementsAre(0, 2, 1));
    EXPECT_THAT(SelectThree({0.5, 0.5, 0.5, 0.7}), ElementsAre(0, 3, 1)) << "k = 2 differs from neither";
}

// With j and k in one direction: j, i, k.
TEST(SelectTargets, SetsTheOddTargetBetweenTwoInOneDirection)
{
    EXPECT_THAT(SelectThree({0.7, 0.5, 0.5}), ElementsAre(1, 0, 2));
    EXPECT_THAT(SelectThree({0.7, 0.5, 0.5 + CIRCLE_HALF}), ElementsAre(1, 0, 2));
}

TEST(SelectTargets, SkipsTriplesThatAllCoincideOrOppose)
{
    EXPECT_THAT(SelectThree({0.0, CIRCLE_HALF, 0.0}), IsEmpty());
    EXPECT_THAT(SelectThree({0.0, CIRCLE_HALF, CIRCLE_HALF, 0.0}), IsEmpty());
    EXPECT_THAT(SelectThree({0.0, CIRCLE_HALF, 0.0, 0.25}), ElementsAre(0, 3, 1));
    EXPECT_THAT(SelectThree({0.5, 0.5, 0.5}), IsEmpty());
}

// Exactly distinct and yet not usable: 1e-16 is above 0 and below the epsilon. The epsilon itself is usable.
TEST(SelectTargets, OrdersWithAToleranceWhatItChoseWithoutOne)
{
    EXPECT_THAT(SelectThree({0.0, 1e-16, 0.7}), ElementsAre(0, 2, 1));
    EXPECT_THAT(SelectThree({0.0, 1e-16, 0.0}), ElementsAre(0, 2, 1));
    EXPECT_THAT(SelectThree({0.0, EPSILON, 0.7}), ElementsAre(0, 1, 2));
    EXPECT_THAT(SelectThree({0.7, 0.0, 1e-16}), ElementsAre(1, 0, 2));
    EXPECT_THAT(SelectThree({0.7, 0.0, EPSILON}), ElementsAre(0, 1, 2));
}

// A direction that is no number is neither distinct nor usable; a place that is none is not below the epsilon away.
TEST(SelectTargets, ComparesWhatIsNoNumberAsWritten)
{
    const double nan = std::nan("");
    const auto select = [](double i, double j, double k) {
        return Select(ADJUST_MODE_PLAN, 3, {Sighted(0, 0, i), Sighted(0, 0, j), Sighted(0, 0, k)});
    };
    EXPECT_THAT(select(0.5, nan, 0.7), ElementsAre(0, 2, 1));
    EXPECT_THAT(select(0.5, 0.7, nan), ElementsAre(1, 0, 2));
    EXPECT_THAT(select(nan, 0.5, 0.7), IsEmpty());
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 2, {Measured(2, 2, 0.2, 10), Measured(nan, 2, 0.3, 11)}), ElementsAre(0, 1));
}

// The places are not looked at: the geometry reports such targets later.
TEST(SelectTargets, AcceptsThreeDirectionsToOnePlace)
{
    EXPECT_THAT(Select(ADJUST_MODE_PLAN, 3, {Sighted(5, 5, 0.1), Sighted(5, 5, 0.2), Sighted(5, 5, 0.3)}),
                ElementsAre(0, 1, 2));
}

// The centres are (50, 0) and (-50, 100); the station mirrors (50, 50) in their line. Orientation: azimuth 0 to the
// first target less 0.5.
TEST(ApproximateStation, SolvesThreeDirectionsByTwoCircles)
{
    for (const int32_t distances : {0, 1})
    {
        const Approximated a = Approximate(ADJUST_MODE_PLAN, OctantSights(), distances);
        ExpectUnknowns({0.0, 0.0, -0.5}, a);
        EXPECT_EQ(3, a.unknownCount);
    }
}

TEST(ApproximateStation, SolvesThreeDirectionsOnEverySide)
{
    const double places[][2] = {{1000.0, 2010.0}, {1200.0, 2150.0}, {1010.0, 2200.0}, {800.0, 2050.0}};
    for (const auto& place : places)
    {
        WorkRecords work = {Known(1100.0, 2000.0), Known(1000.0, 2080.0), Known(930.0, 1960.0)};
        for (ResectWorkRecord& record : work)
        {
            record.direction = std::atan2(record.easting - place[1], record.northing - place[0]) + 2.0;
        }
        ExpectUnknowns({place[0], place[1], -2.0}, Approximate(ADJUST_MODE_PLAN, work, 0));
    }
}

// The orientation is an azimuth of at most a half circle less the direction as it stands.
TEST(ApproximateStation, DoesNotReduceTheOrientation)
{
    WorkRecords work = OctantSights();
    for (ResectWorkRecord& record : work)
    {
        record.direction += 100.0;
    }
    ExpectUnknowns({0.0, 0.0, -100.5}, Approximate(ADJUST_MODE_PLAN, work, 0));
    work = TwoDistances();
    work[0].direction += 100.0;
    work[1].direction += 100.0;
    ExpectUnknowns({0.0, 0.0, -100.5}, Approximate(ADJUST_MODE_PLAN, work, 2));
}

TEST(ApproximateStation, NeedsThreeDirectionsWithoutTwoDistances)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN, TwoDistances(), 1));
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN, {}, 0));
}

// sin/cos of 1e-16 is below the epsilon; of the epsilon's double, above. The double nearest to 5 pi misses it by less.
TEST(ApproximateStation, ReportsTargetsInOneDirection)
{
    ExpectDegenerate(
        Approximate(ADJUST_MODE_PLAN, {Sighted(0, 0, 0.0), Sighted(0, 100, 1e-16), Sighted(100, 0, 0.0)}, 0));

    // Multiples of pi whose nearest double misses them by less than the epsilon look distinct and are not.
    int32_t tried = 0;
    for (int32_t multiple = 2; multiple < 40; ++multiple)
    {
        const double turn = multiple * CIRCLE_HALF;
        if (std::fabs(std::sin(turn) / std::cos(turn)) >= EPSILON)
        {
            continue;
        }
        ++tried;
        ExpectDegenerate(
            Approximate(ADJUST_MODE_PLAN, {Sighted(0, 50, 0.0), Sighted(0, 100, turn), Sighted(100, 0, 1.0)}, 0));
        ExpectDegenerate(
            Approximate(ADJUST_MODE_PLAN, {Sighted(0, 50, 1.0), Sighted(0, 100, 0.0), Sighted(100, 0, turn)}, 0));
    }
    EXPECT_GT(tried, 0);
}

// One circle through all: a square's corners seen from the fourth. The centres agree up to rounding, and the squared
// distance between them is below the epsilon.
TEST(ApproximateStation, ReportsTheDangerCircle)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN,
                                 {Sighted(1, 0, 0.0), Sighted(0, 1, 45 * DEGREE), Sighted(-1, 0, 90 * DEGREE)}, 0));
}

// The squared distance of the centres, not the distance, is compared: 1e-9 (square 1e-18) is too near, 1e-7 is not.
TEST(ApproximateStation, ComparesTheSquaredDistanceOfTheCentres)
{
    for (const double size : {1e-9, 1e-7})
    {
        WorkRecords work = OctantSights();
        for (ResectWorkRecord& record : work)
        {
            record.northing *= size / std::hypot(100.0, 100.0); // the centres lie 141 m apart
            record.easting *= size / std::hypot(100.0, 100.0);
        }
        EXPECT_EQ(size == 1e-9 ? 3 : 0, Approximate(ADJUST_MODE_PLAN, work, 0).result) << size;
    }
}

// Two circles that touch in the second target: diameters from (0, -2) and (0, 4) to the origin, each seen under a right
// angle. The mirror image is the second target itself.
TEST(ApproximateStation, ReportsAStationOnTheSecondTarget)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN,
                                 {Sighted(0, -2, 0.0), Sighted(0, 0, 90 * DEGREE), Sighted(0, 4, 180 * DEGREE)}, 0));
}

// A right angle: k = 6e-17, the centre at the midpoint of the chord. Azimuths 315, 45 and 135 degrees from (-10, 0).
TEST(ApproximateStation, SolvesRightAngles)
{
    ExpectUnknowns({-10.0, 0.0, -45 * DEGREE},
                   Approximate(ADJUST_MODE_PLAN,
                               {Sighted(0, -10, 0.0), Sighted(0, 10, 90 * DEGREE), Sighted(-20, 10, 180 * DEGREE)}, 0));
}

TEST(ApproximateStation, TakesTheHeightFromTheFirstDistanceInSpace)
{
    WorkRecords work = OctantSights();
    work[1] = MeasuredInSpace(50.0, 50.0, work[1].direction, 50.0 * std::sqrt(2.0), 3.0); // no height: no distance
    work[2] = WithHeight(MeasuredInSpace(0.0, 200.0, work[2].direction, 200.0, 7.0), 60.0);
    const Approximated a = Approximate(ADJUST_MODE_SPATIAL, work, 1);
    ExpectUnknowns({0.0, 0.0, 53.0, -0.5}, a);
    EXPECT_EQ(4, a.unknownCount);
    work[2].reflectorHeight = 1.5;
    ExpectUnknowns({0.0, 0.0, 54.5, -0.5}, Approximate(ADJUST_MODE_SPATIAL, work, 1));
}

TEST(ApproximateStation, NeedsADistanceInSpace)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_SPATIAL, OctantSights(), 0));
}

// x = 128 (cos, sin) of 0.5 and 96 (cos, sin) of 90 degrees + 0.5: the frame turned by -0.5 and not scaled.
TEST(ApproximateStation, SolvesTwoDistancesBySimilarity)
{
    const Approximated a = Approximate(ADJUST_MODE_PLAN, TwoDistances(), 2);
    ExpectUnknowns({0.0, 0.0, -0.5}, a);
    EXPECT_EQ(3, a.unknownCount);
    ExpectUnknowns({0.0, 0.0, -0.5}, Approximate(ADJUST_MODE_PLAN, TwoDistances(), 7));
}

// Distances at half their length: the similarity scales them, the station stays.
TEST(ApproximateStation, LeavesTheScaleOfTwoDistancesFree)
{
    WorkRecords work = TwoDistances();
    work[0].horizontalDistance = 64.0;
    work[1].horizontalDistance = 48.0;
    ExpectUnknowns({0.0, 0.0, -0.5}, Approximate(ADJUST_MODE_PLAN, work, 2));
}

TEST(ApproximateStation, UsesTheHorizontalDistances)
{
    WorkRecords work = TwoDistances();
    work[0].slopeDistance = 300.0;
    work[1].slopeDistance = 700.0;
    ExpectUnknowns({0.0, 0.0, -0.5}, Approximate(ADJUST_MODE_PLAN, work, 2));
}

TEST(ApproximateStation, SolvesTwoDistancesOnEverySide)
{
    const double places[][2] = {{1000.0, 2010.0}, {1200.0, 2150.0}, {1010.0, 1900.0}, {800.0, 2050.0}};
    for (const auto& place : places)
    {
        WorkRecords work = {Known(1100.0, 2000.0), Known(1000.0, 2080.0)};
        for (ResectWorkRecord& record : work)
        {
            const double dN = record.northing - place[0];
            const double dE = record.easting - place[1];
            record = Measured(record.northing, record.easting, std::atan2(dE, dN) + 2.0, std::hypot(dN, dE));
        }
        ExpectUnknowns({place[0], place[1], -2.0}, Approximate(ADJUST_MODE_PLAN, work, 2));
    }
}

TEST(ApproximateStation, ReportsDistancesToOnePlaceOnly)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN, {Measured(5, 5, 0.1, 10), Measured(5, 5, 0.2, 11)}, 2));
}

// Two different targets seen in one direction at one distance: the local points coincide. q = 1e-16 is too small, too.
TEST(ApproximateStation, ReportsLocalPointsThatCoincide)
{
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN, {Measured(5, 5, 0.0, 10), Measured(6, 5, 0.0, 10)}, 2));
    ExpectDegenerate(Approximate(ADJUST_MODE_PLAN, {Measured(5, 5, 0.0, 2e-8), Measured(6, 5, 0.0, 1e-8)}, 2));
    EXPECT_EQ(0, Approximate(ADJUST_MODE_PLAN, {Measured(5, 5, 0.0, 4e-8), Measured(6, 5, 0.0, 2e-8)}, 2).result);
}

// (60 - 4 + 2) and (50 + 10): the mean is 59.
TEST(ApproximateStation, AveragesTwoHeightsInSpace)
{
    WorkRecords work = TwoDistances();
    work[0] = WithReflector(WithHeight(MeasuredInSpace(128.0, 0.0, 0.5, 128.0, 4.0), 60.0), 2.0);
    work[1] = WithHeight(MeasuredInSpace(0.0, 96.0, 90.0 * DEGREE + 0.5, 96.0, -10.0), 50.0);
    const Approximated a = Approximate(ADJUST_MODE_SPATIAL, work, 2);
    ExpectUnknowns({0.0, 0.0, 59.0, -0.5}, a);
    EXPECT_EQ(4, a.unknownCount);
}

TEST(ApproximateStation, AllocatesNothingInAnotherMode)
{
    for (const int32_t mode : {1, 0, 4})
    {
        const AllocationWatch watch;
        double* unknowns = nullptr;
        int32_t unknownCount = -1;
        int32_t limit = -1;
        const WorkRecords work = TwoDistances();
        EXPECT_EQ(0, ApproximateStation(mode, 2, work.data(), 2, &unknowns, &unknownCount, 4, &limit));
        EXPECT_EQ(nullptr, unknowns);
        EXPECT_EQ(10, limit);
        EXPECT_THAT(watch.Sizes(), IsEmpty());
    }
}

TEST(ApproximateStation, AnswersTwoWithoutMemory)
{
    for (const int32_t mode : {ADJUST_MODE_PLAN, ADJUST_MODE_SPATIAL})
    {
        WorkRecords work = TwoDistances();
        work[0].height = 1.0;
        work[1].height = 2.0;
        const AllocationWatch watch(1);
        double* unknowns = nullptr;
        int32_t unknownCount = -1;
        int32_t limit = -1;
        EXPECT_EQ(2, ApproximateStation(mode, 2, work.data(), 2, &unknowns, &unknownCount, 4, &limit));
        EXPECT_EQ(nullptr, unknowns);
        EXPECT_EQ(10, limit);
        const size_t elements = mode == ADJUST_MODE_PLAN ? 4 : 5;
        EXPECT_THAT(watch.Sizes(), ElementsAre(elements * sizeof(double)));
    }
}
