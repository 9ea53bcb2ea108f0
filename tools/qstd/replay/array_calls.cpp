#include "replay/array_calls.h"

#include "input/line_source.h"
#include "replay/call.h"
#include "replay/records.h"

#include <qstdlib.h>

#include <fmt/format.h>

#include <limits>
#include <memory>
#include <vector>

namespace qstd {

namespace {

/** No line holds as many points. */
constexpr size_t MOST_POINTS = LONGEST_LINE;

/** An array and the number of its elements that is handed in. */
template <typename Element>
class GivenArray
{
public:
    void Read(ObjectReader& reader, const char* arrayName, const char* countName, size_t most)
    {
        reader.ReadArray(arrayName, most, elements);
        count = static_cast<int32_t>(elements.size());
        int32_t given = 0;
        if (!reader.Read(countName, given, Presence::OPTIONAL))
        {
            return;
        }
        constexpr int32_t LOWEST = std::numeric_limits<int16_t>::min();
        if (given > count || given < LOWEST)
        {
            reader.Refuse(countName, fmt::format("expected at least {} and at most the length of \"{}\", {}, got {}",
                                                 LOWEST, arrayName, count, given));
        }
        count = given;
    }

    std::vector<Element> elements;
    int32_t count = 0;
};

class Area final : public PreparedCall
{
public:
    explicit Area(ObjectReader& reader)
    {
        points.Read(reader, "points", "n", MOST_POINTS);
    }

    CallOutcome Make() override
    {
        const PointRecord none = {};
        CallOutcome outcome;
        outcome.value = QCogoCalcArea(points.elements.empty() ? &none : points.elements.data(), points.count);
        return outcome;
    }

private:
    GivenArray<PointRecord> points;
};

class MultiResection final : public PreparedCall
{
public:
    explicit MultiResection(ObjectReader& reader)
    {
        observations.Read(reader, "observations", "count", MOST_OBSERVATIONS);
    }

    CallOutcome Make() override
    {
        ResectStation station;
        MarkUntouched(station);
        // One more than is handed in: no pointer of the call may be null, and the library has nothing to write there.
        std::vector<ResectObservation> given = observations.elements;
        given.emplace_back();
        std::vector<ResectResidual> residuals(given.size());
        for (ResectResidual& residual : residuals)
        {
            MarkUntouched(residual);
        }
        CallOutcome outcome;
        outcome.status =
            QSTNMultiResect(static_cast<int16_t>(observations.count), given.data(), &station, residuals.data());
        residuals.pop_back();
        outcome.results["station"] = Shown(station);
        outcome.results["residuals"] = Shown(residuals);
        return outcome;
    }

private:
    GivenArray<ResectObservation> observations;
};

} // namespace

Preparation PrepareArea()
{
    return [](ObjectReader& reader) -> std::unique_ptr<PreparedCall> { return std::make_unique<Area>(reader); };
}

Preparation PrepareMultiResection()
{
    return
        [](ObjectReader& reader) -> std::unique_ptr<PreparedCall> { return std::make_unique<MultiResection>(reader); };
}

} // namespace qstd
