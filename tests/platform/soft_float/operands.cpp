#include "operands.h"

#include <cstddef>

namespace soft_float {

namespace {

constexpr uint32_t FRACTION_BITS = 52;
constexpr uint64_t FRACTION = (uint64_t{1} << FRACTION_BITS) - 1;
constexpr uint64_t SIGN = uint64_t{1} << 63U;
constexpr int32_t BIAS = 1023;
constexpr int32_t GREATEST_FIELD = 0x7FF;

// xorshift64*; no quality beyond that of hitting everything is asked.
class Random
{
public:
    explicit Random(uint64_t seed) : state(seed * 0x9E3779B97F4A7C15U + 0x2545F4914F6CDD1DU)
    {
        Next();
        Next();
    }

    uint64_t Next()
    {
        state ^= state << 13U;
        state ^= state >> 7U;
        state ^= state << 17U;
        return state * 0x2545F4914F6CDD1DU;
    }

    // From 0 to count - 1.
    uint32_t Below(uint32_t count)
    {
        return static_cast<uint32_t>(((Next() >> 32U) * count) >> 32U);
    }

private:
    uint64_t state;
};

// An exponent field that is out of range becomes the nearest one.
uint64_t Encode(uint64_t sign, int32_t field, uint64_t fraction)
{
    const int32_t kept = field < 0 ? 0 : (field > GREATEST_FIELD ? GREATEST_FIELD : field);
    return sign | static_cast<uint64_t>(static_cast<uint32_t>(kept)) << FRACTION_BITS | (fraction & FRACTION);
}

int32_t FieldOf(uint64_t bits)
{
    return static_cast<int32_t>((bits >> FRACTION_BITS) & 0x7FFU);
}

uint64_t LowBits(uint32_t count)
{
    return (uint64_t{1} << count) - 1;
}

// --- directed pairs

// Zeros, ends of the ranges of subnormal and normal numbers, infinity, NaN; ones, ends of the integers' ranges and of
// single precision; the ends of the range that the quick routines treat.
constexpr uint64_t SPECIAL[] = {
    0x0000000000000000, 0x0000000000000001, 0x0000000000000002, 0x0000000000000003, 0x000FFFFFFFFFFFFF,
    0x000FFFFFFFFFFFFE, 0x0008000000000000, 0x0007FFFFFFFFFFFF, 0x0010000000000000, 0x0010000000000001,
    0x001FFFFFFFFFFFFF, 0x0020000000000000, 0x0340000000000000, 0x0350000000000001, 0x1FF0000000000000,
    0x1FFFFFFFFFFFFFFF, 0x2000000000000000, 0x2000000000000001, 0x369FFFFFFFFFFFFF, 0x36A0000000000000,
    0x36A0000000000001, 0x3690000000000000, 0x3690000000000001, 0x380FFFFFE0000000, 0x380FFFFFF0000000,
    0x3810000000000000, 0x3CA0000000000000, 0x3CA0000000000001, 0x3CB0000000000000, 0x3FE0000000000000,
    0x3FDFFFFFFFFFFFFF, 0x3FEFFFFFFFFFFFFF, 0x3FF0000000000000, 0x3FF0000000000001, 0x3FF8000000000000,
    0x3FFFFFFFFFFFFFFF, 0x4000000000000000, 0x4008000000000000, 0x41DFFFFFFFC00000, 0x41DFFFFFFFFFFFFF,
    0x41E0000000000000, 0x41E0000000000001, 0x41E0000000200000, 0x41EFFFFFFFE00000, 0x41EFFFFFFFFFFFFF,
    0x41F0000000000000, 0x41F0000000000001, 0x4330000000000000, 0x433FFFFFFFFFFFFF, 0x4340000000000000,
    0x43DFFFFFFFFFFFFF, 0x43E0000000000000, 0x43E0000000000001, 0x43EFFFFFFFFFFFFF, 0x43F0000000000000,
    0x43F0000000000001, 0x47EFFFFFE0000000, 0x47EFFFFFEFFFFFFF, 0x47EFFFFFF0000000, 0x47EFFFFFF0000001,
    0x47F0000000000000, 0x5FEFFFFFFFFFFFFF, 0x5FF0000000000000, 0x5FFFFFFFFFFFFFFF, 0x6000000000000000,
    0x7EFFFFFFFFFFFFFF, 0x7F00000000000000, 0x7FDFFFFFFFFFFFFF, 0x7FE0000000000000, 0x7FEFFFFFFFFFFFFE,
    0x7FEFFFFFFFFFFFFF, 0x7FF0000000000000, 0x7FF0000000000001, 0x7FF7FFFFFFFFFFFF, 0x7FF8000000000000,
    0x7FF8000000000001, 0x7FFFFFFFFFFFFFFF, 0x3DE7BFCAE2A51DDD};
constexpr uint32_t SPECIALS = 2 * sizeof SPECIAL / sizeof SPECIAL[0];

uint64_t Special(uint32_t number)
{
    return SPECIAL[number / 2] | ((number & 1U) != 0 ? SIGN : 0);
}

// Fractions whose sums and differences carry, cancel and lie half-way.
constexpr uint64_t EDGE[] = {0x0000000000000, 0x0000000000001, 0x0000000000002, 0x0000000000003, 0x0000080000000,
                             0x0000100000000, 0x00000FFFFFFFF, 0x7FFFFFFFFFFFF, 0x8000000000000, 0x8000000000001,
                             0xFFFFF00000000, 0xFFFFFFFFFFFFE, 0xFFFFFFFFFFFFF};
constexpr uint32_t EDGES = sizeof EDGE / sizeof EDGE[0];
constexpr uint32_t DISTANCES = 71;
constexpr int32_t FIRST_FIELD[] = {BIAS, 1535, 512, 582, 71, 2046};
constexpr uint32_t FIRST_FIELDS = sizeof FIRST_FIELD / sizeof FIRST_FIELD[0];

// At each distance of the exponents, either way round, with both signs.
constexpr uint32_t DISTANT = DISTANCES * EDGES * EDGES * FIRST_FIELDS * 8;

Pair Distant(uint32_t number)
{
    const auto take = [&number](uint32_t count) {
        const uint32_t taken = number % count;
        number /= count;
        return taken;
    };
    const uint32_t signs = take(4);
    const uint32_t exchanged = take(2);
    const uint64_t first = EDGE[take(EDGES)];
    const uint64_t second = EDGE[take(EDGES)];
    const int32_t field = FIRST_FIELD[take(FIRST_FIELDS)];
    const auto distance = static_cast<int32_t>(take(DISTANCES));
    const uint64_t x = Encode((signs & 1U) != 0 ? SIGN : 0, field, first);
    const uint64_t y = Encode((signs & 2U) != 0 ? SIGN : 0, field - distance, second);
    return exchanged != 0 ? Pair{y, x} : Pair{x, y};
}

constexpr uint32_t DIRECTED = SPECIALS * SPECIALS + DISTANT;

// --- random pairs

uint64_t Runs(Random& random)
{
    uint64_t fraction = random.Next() & 1U;
    for (int i = 0; i < 3; ++i)
    {
        fraction ^= LowBits(random.Below(FRACTION_BITS + 1));
    }
    return fraction;
}

// Runs of ones and zeros; those that round at the last bit of single precision; and no pattern at all.
uint64_t Fraction(Random& random)
{
    switch (random.Below(8))
    {
    case 0:
        return 0;
    case 1:
        return FRACTION & ~LowBits(random.Below(FRACTION_BITS));
    case 2:
        return LowBits(random.Below(FRACTION_BITS + 1));
    case 3:
        return uint64_t{1} << random.Below(FRACTION_BITS);
    case 4:
        return Runs(random);
    case 5: {
        const uint64_t rounded = random.Next() >> 12U & ~LowBits(29);
        return rounded + LowBits(28) + random.Below(3);
    }
    default:
        return random.Next() >> 12U;
    }
}

// Few bits, so that a product of two has 54 or a few more or less, and lies half-way often.
uint64_t ShortFraction(Random& random)
{
    const uint32_t bits = 24 + random.Below(6);
    return (random.Next() >> 12U) & ~LowBits(FRACTION_BITS - bits);
}

// A square of an integer of 26 bits, or a double or two beside it.
uint64_t NearSquare(Random& random)
{
    const uint64_t root = LowBits(25) + 1 + (random.Next() >> 39U);
    uint64_t square = root * root;
    int32_t field = BIAS + static_cast<int32_t>(FRACTION_BITS) - 2 * static_cast<int32_t>(random.Below(40));
    for (; square <= FRACTION; --field)
    {
        square <<= 1U;
    }
    return Encode(0, field, square) + random.Below(5) - 2;
}

// With an exponent field from `lowest` on, one of `count`. One draw after the other: the language leaves the order of a
// call's arguments open.
uint64_t Draw(Random& random, int32_t lowest, uint32_t count, uint64_t (*fraction)(Random&) = Fraction)
{
    const uint64_t sign = random.Next() & SIGN;
    const int32_t field = lowest + static_cast<int32_t>(random.Below(count));
    return Encode(sign, field, fraction(random));
}

uint64_t First(Random& random)
{
    switch (random.Below(16))
    {
    case 0:
        return Special(random.Below(SPECIALS));
    case 1:
    case 2:
        return Draw(random, 0, GREATEST_FIELD + 1);
    case 3:
        return Draw(random, 0, 3);
    case 4:
        return Draw(random, BIAS - 160, 300);
    case 5:
        return NearSquare(random);
    case 6:
    case 7:
        return Draw(random, BIAS - 30, 60, ShortFraction);
    default:
        return Draw(random, BIAS - 70, 140);
    }
}

uint64_t Second(Random& random, uint64_t first)
{
    const int32_t field = FieldOf(first);
    switch (random.Below(16))
    {
    case 0:
        return Special(random.Below(SPECIALS));
    case 1:
    case 2: // near in value
        return (Draw(random, field - 1, 3) & ~FRACTION) | ((first + random.Below(9) - 4) & FRACTION);
    case 3: // where a bit of the difference moves out of the second word
        return Draw(random, field - 34, 4);
    case 4: // a product about to become subnormal
        return Draw(random, BIAS - field - 55, 62);
    case 5: // a quotient about to do so
        return Draw(random, BIAS + field - 7, 62);
    case 6: // a product about to overflow
        return Draw(random, 3 * BIAS - field - 2, 5);
    case 7: // a quotient about to do so
        return Draw(random, field - BIAS - 2, 5);
    case 8:
    case 9:
        return Draw(random, BIAS - 30, 60, ShortFraction);
    case 10:
    case 11:
    case 12:
        return Draw(random, field - 70, 141);
    default:
        return Draw(random, BIAS - 30, 60);
    }
}

} // namespace

void MakeBlock(uint32_t number, Pair* pairs)
{
    Random random(number + 1);
    for (uint32_t i = 0; i < BLOCK_SIZE; ++i)
    {
        const uint32_t place = number < DIRECTED / BLOCK_SIZE + 1 ? number * BLOCK_SIZE + i : DIRECTED;
        if (place < SPECIALS * SPECIALS)
        {
            pairs[i] = {Special(place / SPECIALS), Special(place % SPECIALS)};
        }
        else if (place < DIRECTED)
        {
            pairs[i] = Distant(place - SPECIALS * SPECIALS);
        }
        else
        {
            const uint64_t first = First(random);
            const uint64_t second = Second(random, first);
            pairs[i] = (random.Next() >> 63U) != 0 ? Pair{second, first} : Pair{first, second};
        }
    }
}

} // namespace soft_float
