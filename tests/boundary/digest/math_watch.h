// Stands between the library and the mathematics functions that no standard fixes to the last bit: sine, cosine,
// tangent, arc tangent and hypotenuse. (The square root and the four operations of arithmetic are exact everywhere.)
// The linker leads their calls here, --wrap=sin and so on; they are counted, and can be given other results.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_MATH_WATCH_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_MATH_WATCH_H

#include <cstdint>

namespace digest {

enum class Math
{
    PLATFORM, // the platform's own mathematics library
    PLAIN,    // plain_math, the same on every platform
};

// With a seed other than 0, each result is moved by one unit in the last place, up, down or not at all: the seed
// decides, and the same arguments always give the same result.
void ChooseMath(Math math, uint32_t seed);

// What was asked of the functions since ForgetMathUse().
struct MathUse
{
    uint32_t calls;
    uint32_t hash; // of all arguments and results, in whatever order: compilers differ in that
};

void ForgetMathUse();
MathUse CurrentMathUse();

} // namespace digest

#endif
