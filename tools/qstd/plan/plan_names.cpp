#include "plan/plan_names.h"

#include "text/text.h"

#include <fmt/format.h>

#include <set>

namespace qstd {

namespace {

constexpr size_t LONGEST_NAME = 40;

/** Letters, digits, a few signs and all beyond ASCII stay; the rest means something to a shell or file system. */
std::string SafeName(const std::string& station)
{
    std::string safe;
    for (size_t at = 0, taken = 0; at < station.size() && taken < LONGEST_NAME; ++taken)
    {
        const size_t length = std::max<size_t>(Utf8Length(std::string_view(station).substr(at)), 1);
        const char letter = station[at];
        const bool isKept = length > 1 || (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
                            (letter >= 'a' && letter <= 'z') || letter == '-' || letter == '_' || letter == '.';
        safe += isKept ? station.substr(at, length) : "_";
        at += length;
    }
    return safe;
}

/** Where the extension begins: at the last point of the file name, unless that is its first character. */
size_t ExtensionStart(const std::string& path)
{
    const size_t slash = path.find_last_of('/');
    const size_t name = slash == std::string::npos ? 0 : slash + 1;
    const size_t point = path.find_last_of('.');
    return point == std::string::npos || point <= name ? path.size() : point;
}

} // namespace

std::vector<std::string> PlanNames(const std::string& path, const std::vector<const SetUp*>& setUps)
{
    if (setUps.size() == 1)
    {
        return {path};
    }
    const size_t extension = ExtensionStart(path);
    std::vector<std::string> names;
    std::set<std::string> taken;
    for (const SetUp* setUp : setUps)
    {
        std::string stem = path.substr(0, extension) + "-" + SafeName(setUp->station);
        stem += setUp->siblings > 1 ? fmt::format("-{}", setUp->number) : "";
        std::string name = stem + path.substr(extension);
        for (int copy = 2; !taken.insert(LowerCase(name)).second; ++copy)
        {
            name = fmt::format("{}_{}{}", stem, copy, path.substr(extension));
        }
        names.push_back(name);
    }
    return names;
}

} // namespace qstd
