// Collects what one function returned and wrote, over many calls, into a hash.
#ifndef QSTDLIB_TESTS_BOUNDARY_DIGEST_RESULTS_H
#define QSTDLIB_TESTS_BOUNDARY_DIGEST_RESULTS_H

#include <qstdlib.h>

namespace digest {

class Results
{
public:
    // With `printAll` each call prints a line: name, number of the call, status, then each value: a real number by its
    // bits, an angle behind an "a", other integers as they are. Behind a bar follow the largest length among the
    // inputs, the number of calls of mathematics functions, and the hash of their results.
    Results(const char* function, bool printAll) : name(function), full(printAll)
    {
    }

    void BeginCall(int32_t number);
    void AddStatus(int32_t status);
    // For functions that return a number of solutions: any solution is a success.
    void AddSolutions(int32_t solutions);
    void Add(double value);
    void AddAngle(AngleUnit angle);
    void Add(int32_t value);
    void Add(const PointRecord& point);
    void EndCall(double largestInput) const;
    void PrintTotal(int32_t calls) const;

private:
    void HashBytes(uint64_t value, int bytes);

    const char* name;
    bool full;
    int32_t succeeded = 0;
    uint64_t hash = 0xCBF29CE484222325U;
};

} // namespace digest

#endif
