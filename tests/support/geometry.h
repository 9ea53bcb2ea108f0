// Short ways to write lines, and comparisons of the records of geometry, references and offsets to the last bit.
#ifndef QSTDLIB_TESTS_SUPPORT_GEOMETRY_H
#define QSTDLIB_TESTS_SUPPORT_GEOMETRY_H

#include <gtest/gtest.h>

#include "qstdlib.h"
#include "tests/support/record.h"

namespace support {

// Flag words without the plan bit, and without the height bit.
constexpr int WITHOUT_PLAN[] = {0, 2, 0xFFFE};
constexpr int WITHOUT_HEIGHT[] = {0, 1, 0xFFFD};
constexpr int NOT_FULL[] = {0, 1, 2, 0xFFFC, 0xFFFD, 0xFFFE};

// Settings of the azimuth reference; exactly 1 counts azimuths from south.
constexpr int32_t AZIMUTH_REFERENCES[] = {0, 1, 2, -1};

inline LineDef LineByPoints(const PointRecord& first, const PointRecord& second)
{
    return {first, second, ANGLE_UNDEFINED, LINE_BY_POINTS};
}

// A line by azimuth, whose second point holds the pattern.
inline LineDef LineByAzimuth(const PointRecord& first, AngleUnit azimuth)
{
    auto line = Patterned<LineDef>();
    line.first = first;
    line.azimuth = azimuth;
    line.mode = LINE_BY_AZIMUTH;
    return line;
}

// What a failed computation leaves in a point.
inline PointRecord UndefinedPlan()
{
    return PlanPoint(UNDEFINED_REAL, UNDEFINED_REAL, 0.0);
}

inline PointRecord UndefinedPoint()
{
    return FullPoint(UNDEFINED_REAL, UNDEFINED_REAL, UNDEFINED_REAL);
}

inline void ExpectNear(const PointRecord& expected, const PointRecord& actual, double tolerance)
{
    EXPECT_NEAR(expected.northing, actual.northing, tolerance) << "northing";
    EXPECT_NEAR(expected.easting, actual.easting, tolerance) << "easting";
    EXPECT_NEAR(expected.height, actual.height, tolerance) << "height";
    EXPECT_EQ(expected.flags, actual.flags) << "flags";
}

inline void ExpectSameFields(const LineDef& expected, const LineDef& actual)
{
    ExpectSameFields(expected.first, actual.first);
    ExpectSameFields(expected.second, actual.second);
    EXPECT_EQ(expected.azimuth, actual.azimuth) << "azimuth";
    EXPECT_EQ(expected.mode, actual.mode) << "mode";
}

inline void ExpectSameFields(const SightRecord& expected, const SightRecord& actual)
{
    EXPECT_EQ(expected.horizontalAngle, actual.horizontalAngle) << "horizontal angle";
    EXPECT_EQ(expected.zenithAngle, actual.zenithAngle) << "zenith angle";
    EXPECT_TRUE(SameBits(expected.distance, actual.distance)) << "distance";
}

inline void ExpectSameFields(const SlopeCheckResult& expected, const SlopeCheckResult& actual)
{
    EXPECT_TRUE(SameBits(expected.offsetBeyondSlope, actual.offsetBeyondSlope)) << "offset";
    EXPECT_TRUE(SameBits(expected.heightAboveSlope, actual.heightAboveSlope)) << "height";
    EXPECT_TRUE(SameBits(expected.distanceFromBase, actual.distanceFromBase)) << "distance";
}

inline void ExpectSameFields(const ReferenceLineResult& expected, const ReferenceLineResult& actual)
{
    ExpectSameFields(expected.foot, actual.foot);
    EXPECT_TRUE(SameBits(expected.station, actual.station)) << "station";
    EXPECT_TRUE(SameBits(expected.offset, actual.offset)) << "offset";
    EXPECT_TRUE(SameBits(expected.heightDifference, actual.heightDifference)) << "height difference";
}

inline void ExpectSameFields(const ArcParams& expected, const ArcParams& actual)
{
    EXPECT_EQ(expected.startAzimuth, actual.startAzimuth) << "start azimuth";
    EXPECT_EQ(expected.endAzimuth, actual.endAzimuth) << "end azimuth";
    EXPECT_TRUE(SameBits(expected.radius, actual.radius)) << "radius";
    EXPECT_TRUE(SameBits(expected.length, actual.length)) << "length";
    EXPECT_EQ(expected.centralAngle, actual.centralAngle) << "central angle";
}

} // namespace support

#endif
