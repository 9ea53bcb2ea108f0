// Random figures of every size, anywhere, as arguments of verbs, the same in every run.
#ifndef QSTDLIB_TESTS_TOOLS_VERBS_RANDOM_CALL_H
#define QSTDLIB_TESTS_TOOLS_VERBS_RANDOM_CALL_H

#include "input/inputs.h"
#include "results/sink.h"

#include <fmt/format.h>

#include <cmath>
#include <optional>
#include <random>
#include <string>

namespace random_call {

constexpr double PI = 3.14159265358979323846;

struct Place
{
    double northing = 0.0;
    double easting = 0.0;
    double height = 0.0;
};

class Chance
{
public:
    explicit Chance(uint64_t seed) : generator(seed)
    {
    }

    double Between(double from, double to)
    {
        // Not std::uniform_real_distribution, whose numbers differ between libraries.
        return from + (to - from) * (static_cast<double>(generator() >> 11U) / 9007199254740992.0);
    }

    bool OneIn(uint64_t count)
    {
        return generator() % count == 0;
    }

    /** Of any size between two, each power of ten as likely as another. */
    double Sized(double from, double to)
    {
        return std::pow(10.0, Between(std::log10(from), std::log10(to)));
    }

    /** 1 mm to 100 km. */
    double Length()
    {
        return Sized(1e-3, 1e5);
    }

    /** Radians; every third one a hair off an axis, or on it. */
    double Direction()
    {
        const double axis = PI / 2.0 * static_cast<double>(generator() % 4);
        return !OneIn(3) ? Between(0.0, 2.0 * PI) : (OneIn(4) ? axis : axis + Sized(1e-12, 1e-2) * Sign());
    }

    double Sign()
    {
        return OneIn(2) ? 1.0 : -1.0;
    }

    /** Coordinates up to 10 000 km. */
    Place Anywhere()
    {
        return {Sign() * Sized(1.0, 1e7), Sign() * Sized(1.0, 1e7), Between(-500.0, 5000.0)};
    }

private:
    std::mt19937_64 generator;
};

inline Place Moved(const Place& from, double direction, double distance, double up = 0.0)
{
    return {from.northing + distance * std::cos(direction), from.easting + distance * std::sin(direction),
            from.height + up};
}

inline std::string Number(double value)
{
    return fmt::format("{:.17g}", value);
}

inline std::string InPlan(const Place& place)
{
    return Number(place.northing) + "," + Number(place.easting);
}

inline std::string InSpace(const Place& place)
{
    return InPlan(place) + "," + Number(place.height);
}

/** An angle of the command line, to the library's unit. */
inline std::string Angle(double radians)
{
    const double turn = radians / (2.0 * PI);
    return fmt::format("{:.12f}d", (turn - std::floor(turn)) * 360.0);
}

/** False where a result was not computed or misses what was asked for. */
template <typename Options>
bool EndsWell(void (*run)(const Options&, qstd::Inputs&, qstd::Sink&), const Options& options)
{
    qstd::Messages messages;
    qstd::Inputs inputs("", std::nullopt, messages);
    qstd::Sink sink(qstd::OutputOptions{}, "verb");
    run(options, inputs, sink);
    return !sink.HasFailures();
}

} // namespace random_call

#endif
