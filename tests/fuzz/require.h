/**
 * @file require.h
 * What must hold for every input of a fuzz target.
 */
#ifndef QSTDLIB_TESTS_FUZZ_REQUIRE_H
#define QSTDLIB_TESTS_FUZZ_REQUIRE_H

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

/** Ends the program, so that the fuzzer keeps the input, where a property is broken. */
inline void Require(bool holds, const char* property)
{
    if (!holds)
    {
        std::fprintf(stderr, "broken: %s\n", property);
        std::abort();
    }
}

inline std::string_view TextOf(const uint8_t* data, size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

#endif
