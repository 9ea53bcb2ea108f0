#include "replay/comparison.h"

#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace qstd {

namespace {

constexpr const char* NOTHING = "nothing";

/** The place of a double in the order of all, from -inf to inf; the negative zero comes before the other. */
uint64_t PlaceInOrder(double value)
{
    constexpr uint64_t SIGN = uint64_t{1} << 63U;
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return (bits & SIGN) != 0 ? ~bits : bits | SIGN;
}

class Comparison
{
public:
    explicit Comparison(uint64_t tolerated) : tolerance(tolerated)
    {
    }

    void CompareValues(const std::string& path, const Json& expected, const Json& got)
    {
        if (expected.is_object() && got.is_object())
        {
            CompareObjects(path, expected, got);
        }
        else if (expected.is_array() && got.is_array())
        {
            CompareArrays(path, expected, got);
        }
        else if (got.is_number_float() && expected.is_number())
        {
            CompareReals(path, expected, got);
        }
        else if (expected.is_number_float() != got.is_number_float() || expected != got)
        {
            differences.push_back({path, ShortText(expected), ShortText(got), {}});
        }
    }

    std::vector<Difference> differences;

private:
    void CompareObjects(const std::string& path, const Json& expected, const Json& got)
    {
        const std::string before = path.empty() ? "" : path + ".";
        for (const auto& [key, value] : expected.items())
        {
            const auto counterpart = got.find(key);
            const std::string inside = before + key;
            if (counterpart == got.end())
            {
                differences.push_back({inside, ShortText(value), NOTHING, {}});
            }
            else
            {
                CompareValues(inside, value, *counterpart);
            }
        }
        for (const auto& [key, value] : got.items())
        {
            if (!expected.contains(key))
            {
                differences.push_back({before + key, NOTHING, ShortText(value), {}});
            }
        }
    }

    void CompareArrays(const std::string& path, const Json& expected, const Json& got)
    {
        for (size_t i = 0; i < std::max(expected.size(), got.size()); ++i)
        {
            const std::string inside = fmt::format("{}[{}]", path, i);
            if (i < expected.size() && i < got.size())
            {
                CompareValues(inside, expected[i], got[i]);
                continue;
            }
            const bool isMissing = i < expected.size();
            differences.push_back(
                {inside, isMissing ? ShortText(expected[i]) : NOTHING, isMissing ? NOTHING : ShortText(got[i]), {}});
        }
    }

    void CompareReals(const std::string& path, const Json& expected, const Json& got)
    {
        const uint64_t apart = UnitsApart(*RealOf(expected), *RealOf(got));
        if (apart > tolerance)
        {
            differences.push_back({path, ShortText(expected), ShortText(got), apart});
        }
    }

    uint64_t tolerance;
};

} // namespace

uint64_t UnitsApart(double first, double second)
{
    const uint64_t one = PlaceInOrder(first);
    const uint64_t other = PlaceInOrder(second);
    return std::max(one, other) - std::min(one, other);
}

std::vector<Difference> Compare(const Json& expected, const Json& got, uint64_t units)
{
    Comparison comparison(units);
    comparison.CompareValues("", expected, got);
    return std::move(comparison.differences);
}

std::string Describe(const Difference& difference)
{
    const std::string where = difference.path.empty() ? "" : difference.path + ": ";
    std::string what = fmt::format("{}expected {}, got {}", where, difference.expected, difference.got);
    if (!difference.units)
    {
        return what;
    }
    return fmt::format("{}, {} in the last place apart", what, Counted(*difference.units, "unit", "units"));
}

} // namespace qstd
