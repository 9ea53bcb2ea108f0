// Marks a function in which unsigned arithmetic wraps around on purpose, for clang's checks of integers.
#ifndef QSTDLIB_CORE_WRAPS_H
#define QSTDLIB_CORE_WRAPS_H

#if defined(__clang__)
#define QSTD_WRAPS __attribute__((no_sanitize("unsigned-integer-overflow", "unsigned-shift-base")))
#else
#define QSTD_WRAPS
#endif

#endif
