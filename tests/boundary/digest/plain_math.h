// Square root and angle functions from the four operations of arithmetic alone: unlike those of a mathematics library,
// they give the same bits on every platform, so that all platforms compute from the same inputs.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_PLAIN_MATH_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_PLAIN_MATH_H

namespace digest {

constexpr double PI = 3.141592653589793;

// For values from 0 to 1e15, to about the last bit.
double PlainSquareRoot(double value);

// The direction of (x, y), 0 to 2 pi, to about 1e-15; 0 for (0, 0).
double PlainDirection(double y, double x);

// The same, -pi to pi.
double PlainArcTangent(double y, double x);

// For angles below 1e6 in magnitude, to about the last bit; larger ones count as 0.
double PlainSine(double angle);
double PlainCosine(double angle);

// The square root of x * x + y * y.
double PlainHypotenuse(double x, double y);

} // namespace digest

#endif
