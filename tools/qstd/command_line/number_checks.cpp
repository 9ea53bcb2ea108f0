#include "command_line/number_checks.h"

#include "input/row_reader.h"
#include "text/text.h"

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

} // namespace qstd
