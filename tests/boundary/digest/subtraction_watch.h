// Counts the sums that the compiler's run-time support for processors without a floating-point unit rounds the wrong
// way. GCC's for ARM loses a bit where it subtracts a number whose exponent is 33 smaller and the difference falls
// below the larger one's leading bit, as in 1 - 1.5e-10: the result may be the second nearest double. The linker leads
// the calls of addition and subtraction here, --wrap=__aeabi_dadd and so on. Elsewhere nothing is watched, and nothing
// counted.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_SUBTRACTION_WATCH_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_SUBTRACTION_WATCH_H

#include <cstdint>

namespace digest {

void ForgetWrongSums();
uint32_t WrongSums();

} // namespace digest

#endif
