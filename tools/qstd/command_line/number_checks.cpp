#include "command_line/number_checks.h"

#include "input/row_reader.h"
#include "instrument/earth.h"
#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

// Without descriptions: those are shown in the help as values that are allowed.

CLI::Validator LengthCheck()
{
    const auto check = [](const std::string& text) -> std::string {
        const std::optional<double> value = ParseReal(text);
        if (!value || !std::isfinite(*value))
        {
            return "not a length; write a number such as 1.55";
        }
        return std::fabs(*value) > LONGEST_LENGTH ? "beyond 100 000 km; no length on the earth is longer" : "";
    };
    return {check, ""};
}

CLI::Validator FactorCheck()
{
    const auto check = [](const std::string& text) -> std::string {
        const std::optional<double> value = ParseReal(text);
        const bool isFactor = value && *value >= 1.0 / LONGEST_LENGTH && *value <= LONGEST_LENGTH;
        return isFactor ? "" : "not a scale factor; write a number above 0 such as 0.9996";
    };
    return {check, ""};
}

CLI::Validator SigmaCheck()
{
    const auto check = [](const std::string& text) -> std::string {
        const std::optional<double> value = ParseReal(text);
        const bool isSigma = value && *value >= 1.0 / LONGEST_LENGTH && *value <= LONGEST_LENGTH;
        return isSigma ? "" : "not a standard deviation; write a number above 0";
    };
    return {check, ""};
}

CLI::Validator PpmCheck()
{
    const auto check = [](const std::string& text) -> std::string {
        const std::optional<double> value = ParseReal(text);
        const bool isPpm = value && *value >= 0.0 && *value <= LONGEST_LENGTH;
        return isPpm ? "" : "not a part of the distance; write a number such as 2, or 0";
    };
    return {check, ""};
}

CLI::Validator RefractionCheck()
{
    const auto check = [](const std::string& text) -> std::string {
        if (text == "off" || RefractionSelector(text))
        {
            return "";
        }
        const std::optional<double> value = ParseReal(text);
        const bool isIndex = value && *value >= 0.0 && *value < static_cast<double>(REFRACTION_COEFFICIENTS.size()) &&
                             *value == std::floor(*value);
        const std::string meant = isIndex ? fmt::format("; for coefficient {} write {}", text,
                                                        REFRACTION_COEFFICIENTS.at(static_cast<size_t>(*value)))
                                          : "";
        return "takes a coefficient, 0.132, 0.133 or 0.20, or off" + meant;
    };
    return {check, ""};
}

std::optional<int> RefractionSelector(const std::string& text)
{
    const std::optional<double> value = ParseReal(text);
    const auto* const found = value ? std::find(REFRACTION_COEFFICIENTS.begin(), REFRACTION_COEFFICIENTS.end(), *value)
                                    : REFRACTION_COEFFICIENTS.end();
    if (found == REFRACTION_COEFFICIENTS.end())
    {
        return std::nullopt;
    }
    return static_cast<int>(found - REFRACTION_COEFFICIENTS.begin());
}

} // namespace qstd
