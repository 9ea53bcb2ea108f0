// Sound input of any size, anywhere: no verb says that its result misses, whatever form of the call it has to take.
#include "verbs/random_call.h"

#include "verbs/arc.h"
#include "verbs/area.h"
#include "verbs/benchmark.h"
#include "verbs/column.h"
#include "verbs/corner.h"
#include "verbs/edge.h"
#include "verbs/foot.h"
#include "verbs/forward.h"
#include "verbs/grade.h"
#include "verbs/intersect.h"
#include "verbs/inverse.h"
#include "verbs/line.h"
#include "verbs/offset.h"
#include "verbs/plane.h"
#include "verbs/remote_distance.h"
#include "verbs/remote_elevation.h"
#include "verbs/rod.h"
#include "verbs/slope.h"
#include "verbs/transfer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace qstd;
using namespace random_call;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__clang__)
constexpr int CALLS = 4000; // the sanitizers' compiler, which takes its time
#else
constexpr int CALLS = 20000;
#endif

/** A slope of at most 1 in 2. */
double Rise(Chance& chance, double distance)
{
    return chance.Between(-0.5, 0.5) * distance;
}

/** Two points so far apart that coordinates tell them apart, in any direction. */
std::pair<Place, Place> Ends(Chance& chance)
{
    const Place first = chance.Anywhere();
    const double length = chance.Length();
    return {first, Moved(first, chance.Direction(), length, Rise(chance, length))};
}

/** In any order of size, but not so much larger that nobody would ask for it. */
double Beside(Chance& chance, double length)
{
    return chance.Sign() * length * chance.Sized(1e-3, 1e2);
}

} // namespace

TEST(ProvenVerbs, InverseAndDistanceOfAnyTwoPoints)
{
    Chance chance(11);
    for (int i = 0; i < CALLS; ++i)
    {
        const auto [first, second] = Ends(chance);
        ASSERT_TRUE(EndsWell(RunInverse, {InSpace(first), InSpace(second), {}}))
            << InSpace(first) << ' ' << InSpace(second);
        RemoteDistanceOptions distance;
        distance.points = {InSpace(first), InSpace(second)};
        ASSERT_TRUE(EndsWell(RunRemoteDistance, distance)) << InSpace(first) << ' ' << InSpace(second);
    }
}

TEST(ProvenVerbs, ForwardInAnyDirection)
{
    Chance chance(12);
    for (int i = 0; i < CALLS; ++i)
    {
        const double distance = chance.Sign() * chance.Length();
        ForwardOptions options = {InSpace(chance.Anywhere()),
                                  Angle(chance.Direction()),
                                  Number(distance),
                                  Number(Rise(chance, distance)),
                                  {}};
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        ASSERT_TRUE(EndsWell(RunForward, options)) << options.from << ' ' << options.azimuth << ' ' << options.distance;
    }
}

TEST(ProvenVerbs, OffsetAlongAnyLine)
{
    Chance chance(13);
    for (int i = 0; i < CALLS; ++i)
    {
        const auto [first, second] = Ends(chance);
        const double length = std::hypot(second.northing - first.northing, second.easting - first.easting);
        const OffsetOptions options = {InSpace(first), InSpace(second), Number(Beside(chance, length)),
                                       Number(Beside(chance, length))};
        ASSERT_TRUE(EndsWell(RunOffset, options))
            << options.start << ' ' << options.end << ' ' << options.chainage << ' ' << options.offset;
    }
}

TEST(ProvenVerbs, GradeOfAnyDistances)
{
    Chance chance(14);
    for (int i = 0; i < CALLS; ++i)
    {
        const GradeOptions options = {Number(chance.Sign() * chance.Length()), Number(chance.Sign() * chance.Length())};
        ASSERT_TRUE(EndsWell(RunGrade, options)) << options.horizontal << ' ' << options.vertical;
    }
}

TEST(ProvenVerbs, AreaOfAnyStar)
{
    Chance chance(15);
    for (int i = 0; i < CALLS / 4; ++i)
    {
        const Place centre = chance.Anywhere();
        const double size = chance.Length();
        const int count = 3 + static_cast<int>(chance.Between(0.0, 20.0));
        AreaOptions options;
        // Clockwise around the centre no two sides cross.
        for (int corner = 0; corner < count; ++corner)
        {
            const double direction = 2.0 * PI * (corner + chance.Between(0.0, 0.4)) / count;
            options.corners.push_back(InPlan(Moved(centre, direction, size * chance.Between(0.2, 1.0))));
        }
        // A figure of millimetres far away is only what its coordinates leave of it.
        if (size > 0.1)
        {
            ASSERT_TRUE(EndsWell(RunArea, options)) << options.corners.front() << ' ' << size << ' ' << count;
        }
    }
}

TEST(ProvenVerbs, IntersectionOfAnyTwoLines)
{
    Chance chance(16);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place meeting = chance.Anywhere();
        const double one = chance.Direction();
        const double other = one + chance.Sign() * chance.Sized(1e-3, PI / 2.0);
        const Place first = Moved(meeting, one, chance.Sign() * chance.Length());
        const Place second = Moved(meeting, other, chance.Sign() * chance.Length());
        // Where coordinates leave the direction of a short line open, it may as well be parallel.
        const std::string firstEnd =
            chance.OneIn(2) ? Angle(one) : InPlan(Moved(first, one, std::max(0.1, chance.Length())));
        const std::string secondEnd =
            chance.OneIn(2) ? Angle(other) : InPlan(Moved(second, other, std::max(0.1, chance.Length())));
        IntersectOptions options;
        options.lines = {{InPlan(first), firstEnd}, {InPlan(second), secondEnd}};
        ASSERT_TRUE(EndsWell(RunIntersect, options))
            << InPlan(first) << ' ' << firstEnd << ' ' << InPlan(second) << ' ' << secondEnd;
    }
}

TEST(ProvenVerbs, IntersectionOfAnyLineAndCircle)
{
    Chance chance(17);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place centre = chance.Anywhere();
        const double radius = std::max(0.01, chance.Length());
        const double direction = chance.Direction();
        const Place within = Moved(centre, chance.Direction(), radius * chance.Between(0.0, 0.9));
        const Place first = Moved(within, direction, chance.Sign() * radius * chance.Sized(1e-2, 1e2));
        const std::string end = chance.OneIn(2)
                                    ? Angle(direction)
                                    : InPlan(Moved(first, direction, std::max(1.0, radius) * chance.Between(0.5, 2.0)));
        IntersectOptions options;
        options.lines = {{InPlan(first), end}};
        options.circles = {{InPlan(centre), Number(radius)}};
        ASSERT_TRUE(EndsWell(RunIntersect, options))
            << InPlan(first) << ' ' << end << " circle " << InPlan(centre) << ' ' << radius;
    }
}

TEST(ProvenVerbs, IntersectionOfAnyTwoCircles)
{
    Chance chance(18);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place first = chance.Anywhere();
        const double apart = std::max(0.1, chance.Length());
        const Place second = Moved(first, chance.Direction(), apart);
        const double radius = apart * chance.Sized(0.51, 1e3);
        const double other = radius + apart * chance.Between(-0.9, 0.9);
        IntersectOptions options;
        options.circles = {{InPlan(first), Number(radius)},
                           {InPlan(second), Number(std::max(other, 1.01 * apart - radius))}};
        ASSERT_TRUE(EndsWell(RunIntersect, options))
            << InPlan(first) << ' ' << Number(radius) << ' ' << InPlan(second) << ' ' << options.circles[1].second;
    }
}

TEST(ProvenVerbs, FootOnAnyLine)
{
    Chance chance(19);
    for (int i = 0; i < CALLS; ++i)
    {
        const auto [first, second] = Ends(chance);
        const std::string end = chance.OneIn(3) ? Angle(chance.Direction()) : InSpace(second);
        FootOptions options = {InSpace(Moved(first, chance.Direction(), chance.Length())), {InSpace(first), end}, {}};
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        ASSERT_TRUE(EndsWell(RunFoot, options)) << options.point << ' ' << InSpace(first) << ' ' << end;
    }
}

TEST(ProvenVerbs, TransferOfAnyLine)
{
    Chance chance(20);
    for (int i = 0; i < CALLS; ++i)
    {
        const auto [first, second] = Ends(chance);
        const std::string end = chance.OneIn(2) ? Angle(chance.Direction()) : InSpace(second);
        TransferOptions options = {{InSpace(first), end},
                                   (chance.OneIn(2) ? "-" : "") + Angle(chance.Direction()),
                                   Number(chance.Sign() * chance.Length()),
                                   {}};
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        ASSERT_TRUE(EndsWell(RunTransfer, options))
            << InSpace(first) << ' ' << end << ' ' << options.rotation << ' ' << options.offset;
    }
}

TEST(ProvenVerbs, StakeOutAlongAnyLine)
{
    Chance chance(21);
    for (int i = 0; i < CALLS; ++i)
    {
        const auto [first, second] = Ends(chance);
        LineOptions options;
        options.first = InSpace(first);
        options.second = InSpace(second);
        options.stakes.points = {InSpace(Moved(first, chance.Direction(), chance.Length()))};
        ASSERT_TRUE(EndsWell(RunLine, options))
            << options.first << ' ' << options.second << ' ' << options.stakes.points[0];
    }
}

TEST(ProvenVerbs, StakeOutAlongAnyArc)
{
    Chance chance(22);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place from = chance.Anywhere();
        const double radius = chance.Sign() * chance.Sized(0.1, 1e5);
        ArcOptions options;
        options.from = InSpace(from);
        options.tangent = Angle(chance.Direction());
        options.radius = Number(radius);
        options.length = chance.OneIn(2) ? Number(std::fabs(radius) * chance.Between(0.001, 6.28)) : "";
        options.deflection = options.length.empty() ? Angle(chance.Between(0.001, 6.28)) : "";
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        const double away = std::fabs(radius) * chance.Sized(1e-3, 1e2);
        options.stakes.points = {InSpace(Moved(from, chance.Between(0.0, 2.0 * PI), away))};
        ASSERT_TRUE(EndsWell(RunArc, options))
            << options.from << " tangent " << options.tangent << " radius " << options.radius << " length "
            << options.length << " deflection " << options.deflection << " point " << options.stakes.points[0]
            << (options.instrument.isSouthAzimuth ? " south" : "");
    }
}

TEST(ProvenVerbs, ArcOverAnyMeetingOfTangents)
{
    Chance chance(23);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place via = chance.Anywhere();
        const double tangent = std::max(0.1, chance.Sized(1e-1, 1e4));
        const double direction = chance.Direction();
        // Of flatter tangents the angle unit moves the end by centimetres, which is told.
        const double turn = chance.Sign() * chance.Between(0.3, 3.0);
        ArcOptions options;
        options.from = InSpace(Moved(via, direction, -tangent));
        options.via = InSpace(via);
        options.to = InSpace(Moved(via, direction + turn, tangent, Rise(chance, tangent)));
        options.stakes.points = {InSpace(Moved(via, chance.Between(0.0, 2.0 * PI), tangent))};
        ASSERT_TRUE(EndsWell(RunArc, options))
            << options.from << " via " << options.via << " to " << options.to << " point " << options.stakes.points[0];
    }
}

TEST(ProvenVerbs, SightsOntoAnyPlane)
{
    Chance chance(24);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place first = chance.Anywhere();
        const double size = chance.Sized(0.1, 1e4);
        const double direction = chance.Direction();
        const double aside = chance.Sign() * PI / 2.0;
        const Place station = Moved(first, direction + aside, size * chance.Between(1.0, 20.0), Rise(chance, size));
        const Place second = Moved(first, direction, size * chance.Between(0.5, 1.5), Rise(chance, size));
        const Place third =
            Moved(first, direction + chance.Between(-1.0, 1.0), size * 0.1, size * chance.Between(0.8, 2.0));
        PlaneOptions options;
        options.first = InSpace(first);
        options.second = InSpace(second);
        options.third = chance.OneIn(2) ? InSpace(third) : "";
        options.isInclined = options.third.empty() && chance.OneIn(2);
        options.instrument.station = InSpace(station);
        options.instrument.instrumentHeight = chance.Between(1.0, 2.0);
        // Towards the plane; up to 60 degrees aside, 30 up or down. A plane that leans away is not met by all.
        const double towards = direction + aside + PI + chance.Between(-0.5, 0.5);
        options.sights = {Angle(towards) + "," + Angle(PI / 2.0 + chance.Between(-0.2, 0.2))};
        Messages messages;
        Inputs inputs("", std::nullopt, messages);
        ASSERT_TRUE(EndsWell(RunPlane, options))
            << options.first << ' ' << options.second << ' ' << options.third << " station "
            << options.instrument.station << ' ' << options.sights[0] << (options.isInclined ? " inclined" : "");
    }
}

TEST(ProvenVerbs, RodInAnyPosition)
{
    Chance chance(25);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place far = chance.Anywhere();
        const double spacing = chance.Sized(0.1, 3.0);
        const Place near = Moved(far, chance.Direction(), spacing * chance.Between(0.0, 0.9), -0.5 * spacing);
        RodOptions options;
        options.far = InSpace(far);
        options.near = InSpace(near);
        options.extension = Number(chance.Sized(1e-3, 1e2));
        options.spacing = chance.OneIn(2) ? "0" : Number(spacing);
        ASSERT_TRUE(EndsWell(RunRod, options)) << options.far << ' ' << options.near << ' ' << options.extension;
    }
}

TEST(ProvenVerbs, AnySlope)
{
    Chance chance(26);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place base = chance.Anywhere();
        const double side = chance.Sign();
        const double start = chance.Sized(1e-2, 1e3);
        const double run = chance.Sized(1e-2, 1e3);
        SlopeOptions options;
        options.base = InSpace(base);
        options.design = {Number(side * start) + "," + Number(base.height),
                          Number(side * (start + run)) + "," +
                              Number(base.height + chance.Sign() * chance.Sized(1e-2, 1e2))};
        options.points = {
            InSpace(Moved(base, chance.Direction(), chance.Sized(1e-2, 1e4), chance.Between(-10.0, 10.0)))};
        ASSERT_TRUE(EndsWell(RunSlope, options))
            << options.base << " design " << options.design[0] << ' ' << options.design[1] << ' ' << options.points[0];
    }
}

TEST(ProvenVerbs, CornerOfAnyWalls)
{
    Chance chance(27);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place corner = chance.Anywhere();
        const double size = chance.Sized(0.1, 1e4);
        const double wall = chance.Direction();
        const double other = wall + chance.Sign() * chance.Between(0.01, PI / 2.0);
        CornerOptions options;
        options.points = {InSpace(Moved(corner, wall, size * chance.Between(0.5, 1.0))),
                          InSpace(Moved(corner, wall, size * chance.Between(1.5, 2.0))),
                          InSpace(Moved(corner, other, size * chance.Between(0.5, 1.0)))};
        if (chance.OneIn(2))
        {
            options.points.push_back(InSpace(Moved(corner, other, size * chance.Between(1.5, 2.0))));
        }
        options.instrument.station = InSpace(Moved(corner, chance.Direction(), size * chance.Between(3.0, 30.0), 2.0));
        options.instrument.isFaceTwo = chance.OneIn(2);
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        ASSERT_TRUE(EndsWell(RunCorner, options)) << options.points[0] << ' ' << options.points[1] << ' '
                                                  << options.points[2] << ' ' << options.instrument.station;
    }
}

TEST(ProvenVerbs, AnyEdge)
{
    Chance chance(28);
    for (int i = 0; i < CALLS; ++i)
    {
        const Place first = chance.Anywhere();
        const double size = chance.Sized(0.1, 1e4);
        const double edge = chance.Direction();
        const double aside = chance.Sign() * PI / 2.0;
        EdgeOptions options;
        options.first = InSpace(first);
        options.second = InSpace(Moved(first, edge, size, Rise(chance, size)));
        options.instrument.station = InSpace(Moved(Moved(first, edge, size / 2.0), edge + aside, size * 2.0, -1.0));
        options.instrument.isSouthAzimuth = chance.OneIn(4);
        const double south = options.instrument.isSouthAzimuth ? PI : 0.0;
        options.sights = {Angle(edge + aside + PI + south + chance.Between(-1.2, 1.2)) + ",80d"};
        ASSERT_TRUE(EndsWell(RunEdge, options)) << options.first << ' ' << options.second << " station "
                                                << options.instrument.station << ' ' << options.sights[0];
    }
}

TEST(ProvenVerbs, AnyColumn)
{
    Chance chance(29);
    for (int i = 0; i < CALLS; ++i)
    {
        const double distance = chance.Sized(1.0, 1e4);
        const double radius = distance * chance.Sized(1e-3, 0.9);
        const double centre = chance.Direction();
        // The face is met at the middle but for a quarter of the opening.
        const double half = std::asin(radius / distance);
        const double aside = half * chance.Between(-0.5, 0.5);
        const double face =
            distance * std::cos(aside) - std::sqrt(radius * radius - std::pow(distance * std::sin(aside), 2.0));
        ColumnOptions options;
        options.face = Angle(centre + aside) + ",90d," + Number(face);
        options.leftEdge = Angle(centre - half);
        options.rightEdge = Angle(centre + half);
        options.instrument.station = InSpace(chance.Anywhere());
        ASSERT_TRUE(EndsWell(RunColumn, options))
            << options.face << ' ' << options.leftEdge << ' ' << options.rightEdge << ' ' << options.instrument.station;
    }
}

TEST(ProvenVerbs, AnyRemoteElevation)
{
    Chance chance(30);
    for (int i = 0; i < CALLS; ++i)
    {
        const double circle = chance.Direction();
        RemoteElevationOptions options;
        options.base = Angle(circle) + "," + Angle(chance.Between(0.3, 2.8)) + "," + Number(chance.Sized(1.0, 1e4));
        options.sights = {Angle(circle + chance.Between(-1.4, 1.4)) + "," + Angle(chance.Between(0.1, 3.0))};
        ASSERT_TRUE(EndsWell(RunRemoteElevation, options)) << options.base << ' ' << options.sights[0];
    }
}

TEST(ProvenVerbs, AnyBenchmark)
{
    Chance chance(31);
    for (int i = 0; i < CALLS / 4; ++i)
    {
        const Place station = chance.Anywhere();
        BenchmarkOptions options;
        options.benchmark = InSpace(Moved(station, chance.Direction(), std::max(0.1, chance.Length())));
        options.zenith = Angle(chance.Between(0.3, 2.8));
        options.targetHeight = chance.Between(0.0, 5.0);
        options.distance = chance.OneIn(2) ? Number(chance.Length()) : "";
        options.isHorizontal = chance.OneIn(2);
        options.instrument.station = InPlan(station);
        if (options.distance.empty() && chance.OneIn(2))
        {
            options.instrument.scale = chance.Between(0.999, 1.001);
            options.instrument.seaLevel = chance.Between(0.0, 3000.0);
        }
        ASSERT_TRUE(EndsWell(RunBenchmark, options)) << options.benchmark << ' ' << options.zenith << " station "
                                                     << options.instrument.station << ' ' << options.distance;
    }
}
