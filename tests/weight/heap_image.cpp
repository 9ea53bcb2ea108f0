// Measures the heap that a multi-point resection takes, and holds it to its formula. The program is linked so that
// malloc and free of the library come by here.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include <qstdlib.h>

extern "C" {
void* __real_malloc(size_t size); // NOLINT: the linker gives the name
void __real_free(void* block);    // NOLINT
void* __wrap_malloc(size_t size); // NOLINT
void __wrap_free(void* block);    // NOLINT
}

namespace {

constexpr int32_t MOST_TARGETS = 100;

struct Heap
{
    size_t now;
    size_t peak;
};

bool watching = false;
Heap heap = {};

} // namespace

extern "C" {
// Each block remembers its size in front of it.
void* __wrap_malloc(size_t size) // NOLINT
{
    constexpr size_t FRONT = 8;
    auto* const block = static_cast<unsigned char*>(__real_malloc(size + FRONT));
    if (block == nullptr)
    {
        return nullptr;
    }
    *reinterpret_cast<size_t*>(block) = watching ? size : 0;
    if (watching)
    {
        heap.now += size;
        heap.peak = std::max(heap.peak, heap.now);
    }
    return block + FRONT;
}

void __wrap_free(void* block) // NOLINT
{
    constexpr size_t FRONT = 8;
    if (block != nullptr)
    {
        unsigned char* const front = static_cast<unsigned char*>(block) - FRONT;
        heap.now -= *reinterpret_cast<size_t*>(front);
        __real_free(front);
    }
}
}

namespace {

// Targets all around the origin, with a direction and a distance each, a millimetre or two off.
ResectObservation SightTo(int32_t number, int32_t count)
{
    const double azimuth = 6.283185307179586 * number / count;
    const double distance = 50.0 + 3.0 * (number % 7);
    ResectObservation sight{};
    sight.target = {distance * std::cos(azimuth), distance * std::sin(azimuth), 10.0, 3};
    sight.horizontalAngle = static_cast<AngleUnit>(azimuth * (ANGLE_FULL_CIRCLE / 6.283185307179586)) + number % 5;
    sight.zenithAngle = ANGLE_FULL_CIRCLE / 4;
    sight.horizontalDistance = distance + 0.001 * (number % 3);
    sight.slopeDistance = sight.horizontalDistance;
    return sight;
}

// With r rows for n targets: 12 n reals of working records; r rows of a flag and four reals, in all five; residuals of
// r reals and a spare one; the three unknowns of the first approximation and a spare one. A real has 8 bytes.
size_t MostBytes(size_t targets, size_t rows)
{
    return 8 * (12 * targets + 5 * rows + (rows + 1) + 4);
}

bool Measure(int32_t targets)
{
    static ResectObservation sights[MOST_TARGETS];
    static ResectResidual residuals[MOST_TARGETS];
    for (int32_t i = 0; i < targets; ++i)
    {
        sights[i] = SightTo(i, targets);
    }
    ResectStation station{};
    heap = {};
    watching = true;
    const int32_t status = QSTNMultiResect(static_cast<int16_t>(targets), sights, &station, residuals);
    watching = false;

    const size_t rows = 2 * static_cast<size_t>(targets);
    const size_t most = MostBytes(static_cast<size_t>(targets), rows);
    std::printf("%7ld %6lu %9lu %9lu\n", static_cast<long>(targets), static_cast<unsigned long>(rows),
                static_cast<unsigned long>(most), static_cast<unsigned long>(heap.peak));
    return status == QSTD_OK && heap.peak == most && heap.now == 0;
}

} // namespace

int main()
{
    std::printf("%7s %6s %9s %9s\n", "targets", "rows", "formula", "peak");
    bool holds = true;
    for (const int32_t targets : {3, 10, 30, 100})
    {
        holds = Measure(targets) && holds;
    }
    if (!holds)
    {
        std::printf("A resection failed, kept blocks or took more or less than the formula says\n");
    }
    return holds ? 0 : 1;
}
