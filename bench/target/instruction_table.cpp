// Instructions per call of every exported function on the target, beside what its arithmetic costs, and of a resection
// by Eigen, on the same arithmetic and on the compiler's. One line a trial: name, number of inputs, minimum, median and
// maximum of the instructions, median of the maths functions, divisions and conversions among them, median of the
// floor, median of the ratio to the floor.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "eigen_station.h"
#include "platform/versatile/leave.h"
#include "trials.h"

namespace {

using target::Functions;
using target::Meter;
using target::Survey;

constexpr int INPUTS = 64;
constexpr uint32_t SEED = 20000;

// Answers at once, so that the share of the instrument in the count is next to nothing.
int32_t ObserveTarget(double northing, double easting, double height, double /*passthrough*/,
                      ObservationRecord* observation)
{
    *observation = {0, ANGLE_QUARTER_CIRCLE, 100.0, 100.0, 0.0, northing, easting, height};
    return 0;
}

void Connect(const Functions& library)
{
    InstrumentSettings instrument{};
    instrument.CoordToObservation = ObserveTarget;
    library.ConnectInstrumentSettings(&instrument);
}

template <typename Value>
Value Median(std::vector<Value> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Counts
{
    std::vector<uint32_t> instructions;
    std::vector<uint32_t> functions;
    std::vector<uint32_t> floor;
    std::vector<double> ratios;
};

void Print(const char* name, const Counts& counts)
{
    const auto [least, greatest] = std::minmax_element(counts.instructions.begin(), counts.instructions.end());
    std::printf("%-26s %3u %8lu %8lu %8lu", name, static_cast<unsigned>(counts.instructions.size()),
                static_cast<unsigned long>(*least), static_cast<unsigned long>(Median(counts.instructions)),
                static_cast<unsigned long>(*greatest));
    if (!counts.floor.empty())
    {
        std::printf(" %8lu %8lu", static_cast<unsigned long>(Median(counts.functions)),
                    static_cast<unsigned long>(Median(counts.floor)));
        if (Median(counts.floor) != 0)
        {
            std::printf(" %7.3f", Median(counts.ratios));
        }
    }
    std::printf("\n");
}

// True when every call did what it is there for.
bool Measure(const target::Trial& trial)
{
    // More than three targets make too many operations to compare each with all others.
    target::floor::CountRepetitions(std::strstr(trial.name, "QSTNMultiResect") == nullptr ||
                                    std::strcmp(trial.name, "QSTNMultiResect/3") == 0);
    Counts counts;
    Meter meter;
    Survey survey(SEED);
    Survey sameSurvey(SEED);
    for (int i = 0; i < INPUTS; ++i)
    {
        trial.run(target::LIBRARY, survey, meter);
        const uint32_t instructions = meter.Instructions();
        trial.run(target::TRACED_LIBRARY, sameSurvey, meter);
        const target::floor::Cost cost = target::floor::Latest();
        counts.instructions.push_back(instructions);
        counts.functions.push_back(cost.functions);
        counts.floor.push_back(cost.functions + cost.arithmetic);
        counts.ratios.push_back(static_cast<double>(instructions) / counts.floor.back());
    }
    Print(trial.name, counts);
    return meter.Failures() == 0;
}

// On the same sights as the trial of QSTNMultiResect with so many targets; its results must be the same but for
// rounding.
bool MeasureEigen(const char* name, int16_t targets, decltype(target::AdjustByEigen)* adjust)
{
    Counts counts;
    Meter meter;
    Survey survey(SEED);
    for (int i = 0; i < INPUTS; ++i)
    {
        const std::vector<ResectObservation> sights = target::Sights(survey, targets);
        ResectStation station{};
        ResectStation expected{};
        std::vector<ResectResidual> residuals(sights.size());
        meter.Require(meter.Count([&] { return adjust(sights, &station, &residuals); }));
        counts.instructions.push_back(meter.Instructions());
        target::LIBRARY.QSTNMultiResect(targets, sights.data(), &expected, residuals.data());
        meter.Require(std::fabs(station.position.northing - expected.position.northing) < 1e-6 &&
                      std::fabs(station.position.easting - expected.position.easting) < 1e-6 &&
                      std::fabs(station.northingPrecision - expected.northingPrecision) < 1e-6 &&
                      std::fabs(station.position.height - expected.position.height) < 1e-6);
    }
    Print(name, counts);
    return meter.Failures() == 0;
}

} // namespace

int main()
{
    Connect(target::LIBRARY);
    Connect(target::TRACED_LIBRARY);
    bool succeeded = true;
    for (size_t i = 0; i < target::TRIAL_COUNT; ++i)
    {
        succeeded = Measure(target::TRIALS[i]) && succeeded;
    }
    succeeded = MeasureEigen("Eigen/3", 3, target::AdjustByEigen) && succeeded;
    succeeded = MeasureEigen("Eigen/10", 10, target::AdjustByEigen) && succeeded;
    succeeded = MeasureEigen("Eigen/30", 30, target::AdjustByEigen) && succeeded;
    succeeded = MeasureEigen("Eigen/100", 100, target::AdjustByEigen) && succeeded;
    succeeded = MeasureEigen("Eigen/3/compiler", 3, target::AdjustByEigenAsCompiled) && succeeded;
    succeeded = MeasureEigen("Eigen/10/compiler", 10, target::AdjustByEigenAsCompiled) && succeeded;
    succeeded = MeasureEigen("Eigen/30/compiler", 30, target::AdjustByEigenAsCompiled) && succeeded;
    succeeded = MeasureEigen("Eigen/100/compiler", 100, target::AdjustByEigenAsCompiled) && succeeded;
    if (!succeeded)
    {
        std::printf("a call failed: it measures nothing\n");
    }
    std::fflush(stdout);
    Leave(succeeded ? 0 : 1);
}
