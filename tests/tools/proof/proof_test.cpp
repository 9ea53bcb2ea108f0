#include "proof/proof.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace qstd;

TEST(Proof, HoldsUntilAClaimIsMissed)
{
    Proof proof;
    EXPECT_TRUE(proof.Holds());
    proof.Require("one by", -0.25, 0.25);
    EXPECT_TRUE(proof.Holds());
    EXPECT_EQ(proof.Miss(), 0.0);
    EXPECT_EQ(proof.WhatMisses(), nullptr);
    proof.Require("other by", -0.26, 0.25);
    EXPECT_FALSE(proof.Holds());
    EXPECT_EQ(proof.Miss(), 0.26);
}

TEST(Proof, KeepsTheClaimThatIsMissedMost)
{
    Proof proof;
    proof.Require("small by", 0.5, 0.1);
    proof.Require("large by", -3.0, 0.1);
    proof.Require("middle by", 2.0, 0.1);
    EXPECT_EQ(std::string(proof.WhatMisses()), "large by");
    EXPECT_EQ(proof.Miss(), 3.0);
}

TEST(Proof, IsMissedByWhatIsNoNumber)
{
    for (const double none : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
    {
        Proof proof;
        proof.Require("none by", none, 1.0);
        EXPECT_FALSE(proof.Holds());
        EXPECT_EQ(proof.Miss(), std::numeric_limits<double>::infinity());
    }
    Proof proof;
    proof.Require("bound by", 0.0, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(proof.Holds());
}

TEST(Rounding, GrowsWithTheSizeOfNumbers)
{
    // A micrometre, and 32 times 2.2204e-16 of 8 000 000: 5.68e-8.
    EXPECT_NEAR(RoundingOf(8.0e6), 1e-6 + 5.68e-8, 1e-10);
    EXPECT_EQ(RoundingOf(-8.0e6), RoundingOf(8.0e6));
    // 1/16 of a second over 10 km: 10000 * 4.8481e-6 / 16 = 3.030 mm.
    EXPECT_NEAR(UnitsOver(10000.0), 3.030e-3, 1e-6);
    EXPECT_NEAR(UnitsOver(-10000.0, 3.0), 9.090e-3, 1e-6);
}
