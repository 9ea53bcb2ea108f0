// Records in tests: a recognisable byte pattern for outputs that must stay untouched, comparisons to the last bit, and
// short ways to write points.
#ifndef QSTDLIB_TESTS_SUPPORT_RECORD_H
#define QSTDLIB_TESTS_SUPPORT_RECORD_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

#include "qstdlib.h"

namespace support {

// Byte of the pattern at an offset: never 0 and different from its neighbours. A double made of it is a tiny negative
// number, a flag word of it is neither 1 nor 3.
constexpr unsigned char PatternByte(size_t offset)
{
    return static_cast<unsigned char>(0xA5U - offset % 13U);
}

// Fills a record with the pattern, padding included.
template <typename Record>
void FillWithPattern(Record& record)
{
    static_assert(std::is_trivially_copyable<Record>::value, "only plain data can be filled with bytes");
    auto* bytes = reinterpret_cast<unsigned char*>(&record);
    for (size_t offset = 0; offset < sizeof record; ++offset)
    {
        bytes[offset] = PatternByte(offset);
    }
}

template <typename Record>
Record Patterned()
{
    Record record;
    FillWithPattern(record);
    return record;
}

// Every byte of the two records is equal.
template <typename Record>
::testing::AssertionResult SameBytes(const Record& first, const Record& second)
{
    static_assert(std::is_trivially_copyable<Record>::value, "only plain data can be compared as bytes");
    const auto* firstBytes = reinterpret_cast<const unsigned char*>(&first);
    const auto* secondBytes = reinterpret_cast<const unsigned char*>(&second);
    for (size_t offset = 0; offset < sizeof(Record); ++offset)
    {
        if (firstBytes[offset] != secondBytes[offset])
        {
            return ::testing::AssertionFailure() << "the records differ from byte " << offset << " on";
        }
    }
    return ::testing::AssertionSuccess();
}

// Every byte of a record filled with the pattern is still there.
template <typename Record>
::testing::AssertionResult Untouched(const Record& record)
{
    return SameBytes(record, Patterned<Record>());
}

inline uint64_t BitsOf(double value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// The same double to the last bit: tells -0.0 from 0.0, and a NaN equals only itself.
inline ::testing::AssertionResult SameBits(double expected, double actual)
{
    if (BitsOf(expected) == BitsOf(actual))
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << std::hexfloat << "expected " << expected << ", got " << actual
                                         << std::defaultfloat << " (difference " << actual - expected << ")";
}

inline PointRecord FullPoint(double northing, double easting, double height)
{
    return {northing, easting, height, POINT_HAS_PLAN | POINT_HAS_HEIGHT};
}

// A point without valid height, whose height field holds what is given here.
inline PointRecord PlanPoint(double northing, double easting, double invalidHeight = 0.0)
{
    return {northing, easting, invalidHeight, POINT_HAS_PLAN};
}

inline PointRecord WithFlags(PointRecord point, int flags)
{
    point.flags = static_cast<uint16_t>(flags);
    return point;
}

// Field by field to the last bit; padding does not count.
inline void ExpectSameFields(const PointRecord& expected, const PointRecord& actual)
{
    EXPECT_TRUE(SameBits(expected.northing, actual.northing)) << "northing";
    EXPECT_TRUE(SameBits(expected.easting, actual.easting)) << "easting";
    EXPECT_TRUE(SameBits(expected.height, actual.height)) << "height";
    EXPECT_EQ(expected.flags, actual.flags) << "flags";
}

inline void ExpectSameFields(const AngDistRecord& expected, const AngDistRecord& actual)
{
    EXPECT_EQ(expected.azimuth, actual.azimuth) << "azimuth";
    EXPECT_EQ(expected.zenith, actual.zenith) << "zenith";
    EXPECT_TRUE(SameBits(expected.slopeDistance, actual.slopeDistance)) << "slope distance";
    EXPECT_TRUE(SameBits(expected.horizontalDistance, actual.horizontalDistance)) << "horizontal distance";
    EXPECT_TRUE(SameBits(expected.heightDifference, actual.heightDifference)) << "height difference";
}

inline void ExpectSameFields(const RemoteDistanceResult& expected, const RemoteDistanceResult& actual)
{
    EXPECT_TRUE(SameBits(expected.slopeDistance, actual.slopeDistance)) << "slope distance";
    EXPECT_TRUE(SameBits(expected.horizontalDistance, actual.horizontalDistance)) << "horizontal distance";
    EXPECT_TRUE(SameBits(expected.heightDifference, actual.heightDifference)) << "height difference";
    EXPECT_EQ(expected.azimuth, actual.azimuth) << "azimuth";
}

inline void ExpectSameFields(const TwoPointStation& expected, const TwoPointStation& actual)
{
    ExpectSameFields(expected.station, actual.station);
    EXPECT_EQ(expected.orientation, actual.orientation) << "orientation";
    EXPECT_TRUE(SameBits(expected.baselineCheck, actual.baselineCheck)) << "baseline check";
    EXPECT_TRUE(SameBits(expected.firstDistanceResidual, actual.firstDistanceResidual)) << "first residual";
    EXPECT_TRUE(SameBits(expected.secondDistanceResidual, actual.secondDistanceResidual)) << "second residual";
    EXPECT_TRUE(SameBits(expected.heightDifference, actual.heightDifference)) << "height difference";
}

inline void ExpectSameFields(const ResectStation& expected, const ResectStation& actual)
{
    ExpectSameFields(expected.position, actual.position);
    EXPECT_EQ(expected.orientation, actual.orientation) << "orientation";
    EXPECT_TRUE(SameBits(expected.northingPrecision, actual.northingPrecision)) << "northing precision";
    EXPECT_TRUE(SameBits(expected.eastingPrecision, actual.eastingPrecision)) << "easting precision";
    EXPECT_TRUE(SameBits(expected.heightSpread, actual.heightSpread)) << "height spread";
}

inline void ExpectSameFields(const ResectResidual& expected, const ResectResidual& actual)
{
    EXPECT_EQ(expected.angleResidual, actual.angleResidual) << "angle residual";
    EXPECT_TRUE(SameBits(expected.distanceResidual, actual.distanceResidual)) << "distance residual";
    EXPECT_TRUE(SameBits(expected.heightResidual, actual.heightResidual)) << "height residual";
}

} // namespace support

#endif
