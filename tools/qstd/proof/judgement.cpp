#include "proof/judgement.h"

#include "text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

std::string MissText(double miss, const Sink& sink)
{
    constexpr int MOST_DECIMALS = 9;
    if (!std::isfinite(miss))
    {
        return "more than any number";
    }
    // Two figures that count.
    const int needed = miss > 0.0 ? 1 - static_cast<int>(std::floor(std::log10(miss))) : 0;
    const int decimals = std::clamp(needed, sink.Options().decimals, MOST_DECIMALS);
    return fmt::format("{} {}", FormatFixed(miss, decimals), UnitSymbol(sink.Options().unit));
}

void Judge(const Proof& proof, const Sink& sink, Row& row)
{
    if (!proof.Holds())
    {
        row.isProven = false;
        row.warnings.push_back(
            fmt::format("not what was asked for: {} {}", proof.WhatMisses(), MissText(proof.Miss(), sink)));
    }
}

void AddRemark(const std::string& text, Row& row)
{
    row.remark += (row.remark.empty() ? "" : "; ") + text;
}

void RemarkOtherForm(const Proof& asGiven, const std::string& form, const Sink& sink, Row& row)
{
    AddRemark(fmt::format("computed {}; without that the library misses: {} {}", form, asGiven.WhatMisses(),
                          MissText(asGiven.Miss(), sink)),
              row);
}

void QuestionFar(const std::string& what, double away, double extent, const Sink& sink, Row& row)
{
    if (extent > 0.0 && away > FAR * extent)
    {
        row.warnings.push_back(
            fmt::format("{} lies {} {} away, {:.0f} times the extent of what it comes from; check the "
                        "input",
                        what, sink.LengthText(away), UnitSymbol(sink.Options().unit), away / extent));
    }
}

} // namespace qstd
