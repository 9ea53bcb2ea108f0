// Measures the stack that each exported function takes, with all that it calls, on the inputs of the instruction
// budget; and what each routine takes that the library calls of the C library and of the compiler's. A line each: name,
// bytes.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/target/floor.h"
#include "bench/target/trials.h"

extern "C" {
void PaintStack();
void MeasureStack();
uint32_t stackUsed = 0;
}

namespace target {

// The trials call these right before and after the call that counts; both are jumps, so that they leave the stack
// alone.
void floor::Begin()
{
    PaintStack();
}

void floor::End()
{
    MeasureStack();
}

void floor::CountRepetitions(bool wanted)
{
    static_cast<void>(wanted);
}

#define QSTD_PLAIN(name) ::name,
const Functions LIBRARY = {QSTD_FOR_EACH_FUNCTION(QSTD_PLAIN)};
#undef QSTD_PLAIN

} // namespace target

namespace {

constexpr int REPETITIONS = 20;

void MeasureFunctions()
{
    target::Survey survey(1);
    for (size_t i = 0; i < target::TRIAL_COUNT; ++i)
    {
        const target::Trial& trial = target::TRIALS[i];
        uint32_t deepest = 0;
        for (int k = 0; k < REPETITIONS; ++k)
        {
            target::Meter meter;
            trial.run(target::LIBRARY, survey, meter);
            deepest = std::max(deepest, stackUsed);
        }
        std::printf("%s %lu\n", trial.name, static_cast<unsigned long>(deepest));
    }
}

// A routine of one or two numbers, over ordinary numbers, far ones and a subnormal one, which take other ways.
template <typename Routine>
void MeasureRoutine(const char* name, Routine routine)
{
    constexpr double NUMBERS[] = {-1e300, -1e9, -700.0, -3.2, -1e-9, 0.0, 3e-310,
                                  1e-300, 0.3,  0.9,    2.4,  700.0, 1e9, 1e300};
    uint32_t deepest = 0;
    for (const double x : NUMBERS)
    {
        for (const double y : NUMBERS)
        {
            volatile double a = x;
            volatile double b = y;
            target::Meter meter;
            const double first = a;
            const double second = b;
            a = meter.Count([first, second, routine] { return routine(first, second); });
            deepest = std::max(deepest, stackUsed);
        }
    }
    std::printf("%s %lu\n", name, static_cast<unsigned long>(deepest));
}

void MeasureMathematics()
{
    MeasureRoutine("sin", [](double a, double) { return std::sin(a); });
    MeasureRoutine("cos", [](double a, double) { return std::cos(a); });
    MeasureRoutine("tan", [](double a, double) { return std::tan(a); });
    MeasureRoutine("atan2", [](double a, double b) { return std::atan2(a, b); });
    MeasureRoutine("sqrt", [](double a, double) { return std::sqrt(a); });
    MeasureRoutine("hypot", [](double a, double b) { return std::hypot(a, b); });
    MeasureRoutine("__aeabi_dadd", [](double a, double b) { return a + b; });
    MeasureRoutine("__aeabi_dsub", [](double a, double b) { return a - b; });
    MeasureRoutine("__aeabi_dmul", [](double a, double b) { return a * b; });
    MeasureRoutine("__aeabi_ddiv", [](double a, double b) { return a / b; });
    MeasureRoutine("__aeabi_dcmpeq", [](double a, double b) { return a == b; });
    MeasureRoutine("__aeabi_dcmplt", [](double a, double b) { return a < b; });
    MeasureRoutine("__aeabi_dcmple", [](double a, double b) { return a <= b; });
    MeasureRoutine("__aeabi_dcmpgt", [](double a, double b) { return a > b; });
    MeasureRoutine("__aeabi_dcmpge", [](double a, double b) { return a >= b; });
    MeasureRoutine("__aeabi_dcmpun", [](double a, double b) { return std::isunordered(a, b); });
    MeasureRoutine("__aeabi_d2iz", [](double a, double) { return static_cast<int32_t>(a); });
    MeasureRoutine("__aeabi_i2d", [](double a, double) {
        int32_t integer = 0;
        std::memcpy(&integer, &a, sizeof integer);
        return static_cast<double>(integer);
    });
}

void MeasureMemory()
{
    constexpr size_t SIZES[] = {8, 100, 5000, 40000, 300000};
    uint32_t taking = 0;
    uint32_t giving = 0;
    for (const size_t size : SIZES)
    {
        target::Meter meter;
        void* block = meter.Count([size] { return std::malloc(size); });
        asm volatile("" : "+r"(block)); // or the compiler sees that the block is not used, and takes none
        taking = std::max(taking, stackUsed);
        meter.Count([block] {
            std::free(block);
            return 0;
        });
        giving = std::max(giving, stackUsed);
    }
    std::printf("malloc %lu\nfree %lu\n", static_cast<unsigned long>(taking), static_cast<unsigned long>(giving));

    static unsigned char bytes[2][1000];
    volatile size_t size = sizeof bytes[0];
    target::Meter meter;
    meter.Count([&size] { return std::memset(bytes[0], 0, size); });
    std::printf("memset %lu\n", static_cast<unsigned long>(stackUsed));
    meter.Count([&size] { return std::memcpy(bytes[1], bytes[0], size); });
    std::printf("memcpy %lu\n", static_cast<unsigned long>(stackUsed));
}

} // namespace

int main()
{
    MeasureFunctions();
    MeasureMathematics();
    MeasureMemory();
    return 0;
}
