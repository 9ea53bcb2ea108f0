#include "tests/station/reference_solution.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace {

constexpr double EPSILON = 2.220446049250313e-16;
constexpr size_t MOST_PASSES = 5;

using Elements = std::vector<double>;

struct Factors
{
    size_t order;
    Elements elements;
    std::vector<size_t> exchanges;
};

// a[i][j] less the first `terms` products of its row and column.
double Reduced(const Elements& a, size_t order, size_t i, size_t j, size_t terms)
{
    double sum = a[i * order + j];
    for (size_t k = 0; k < terms; ++k)
    {
        sum -= a[i * order + k] * a[k * order + j];
    }
    return sum;
}

Elements ScalesOf(const Elements& a, size_t order)
{
    Elements scales;
    for (size_t i = 0; i < order; ++i)
    {
        double largest = 0.0;
        for (size_t j = 0; j < order; ++j)
        {
            largest = std::max(largest, std::fabs(a[i * order + j]));
        }
        scales.push_back(1.0 / largest);
    }
    return scales;
}

// Crout's factors, column by column; of the scaled magnitudes from the diagonal down the greatest leads, the last of
// equals.
Factors Decompose(size_t order, const Elements& n)
{
    Factors f = {order, n, {}};
    Elements& a = f.elements;
    Elements scales = ScalesOf(n, order);
    for (size_t j = 0; j < order; ++j)
    {
        size_t leading = j;
        double greatest = 0.0;
        for (size_t i = 0; i < order; ++i)
        {
            a[i * order + j] = Reduced(a, order, i, j, std::min(i, j));
            const double magnitude = scales[i] * std::fabs(a[i * order + j]);
            if (i >= j && magnitude >= greatest)
            {
                greatest = magnitude;
                leading = i;
            }
        }
        for (size_t k = 0; k < order && leading != j; ++k)
        {
            std::swap(a[leading * order + k], a[j * order + k]);
        }
        scales[leading] = scales[j];
        f.exchanges.push_back(leading);
        double& pivot = a[j * order + j];
        pivot = pivot == 0.0 ? 1e-20 : pivot;
        for (size_t i = j + 1; i < order; ++i)
        {
            a[i * order + j] = a[i * order + j] / pivot;
        }
    }
    return f;
}

// Solves for one column of b in place; the zeros in front of it are left out of the forward sums.
void Substitute(const Factors& f, Elements& b, size_t columns, size_t column)
{
    const auto at = [&](size_t i) -> double& { return b[i * columns + column]; };
    for (size_t i = 0; i < f.order; ++i)
    {
        std::swap(at(i), at(f.exchanges[i]));
    }
    size_t first = 0;
    while (first < f.order && at(first) == 0.0)
    {
        ++first;
    }
    for (size_t i = first; i < f.order; ++i)
    {
        for (size_t j = first; j < i; ++j)
        {
            at(i) -= f.elements[i * f.order + j] * at(j);
        }
    }
    for (size_t i = f.order; i-- > 0;)
    {
        for (size_t j = i + 1; j < f.order; ++j)
        {
            at(i) -= f.elements[i * f.order + j] * at(j);
        }
        at(i) = at(i) / f.elements[i * f.order + i];
    }
}

void SubstituteAll(const Factors& f, Elements& b, size_t columns)
{
    for (size_t column = 0; column < columns; ++column)
    {
        Substitute(f, b, columns, column);
    }
}

// n x, leaving out the terms with a factor of zero.
Elements Product(size_t order, const Elements& n, size_t columns, const Elements& x)
{
    Elements product(order * columns, 0.0);
    for (size_t i = 0; i < order; ++i)
    {
        for (size_t j = 0; j < columns; ++j)
        {
            for (size_t k = 0; k < order; ++k)
            {
                if (n[i * order + k] != 0.0 && x[k * columns + j] != 0.0)
                {
                    product[i * columns + j] += n[i * order + k] * x[k * columns + j];
                }
            }
        }
    }
    return product;
}

} // namespace

ReferenceSolution SolveByReference(size_t order, const std::vector<double>& n, size_t columns,
                                   const std::vector<double>& b)
{
    const Factors f = Decompose(order, n);
    Elements x = b;
    SubstituteAll(f, x, columns);
    ReferenceSolution solution = {f.elements, {x}};
    bool negligible = false;
    while (!negligible && solution.passes.size() <= MOST_PASSES)
    {
        Elements correction = Product(order, n, columns, x);
        std::transform(correction.begin(), correction.end(), b.begin(), correction.begin(), std::minus<>());
        SubstituteAll(f, correction, columns);
        std::transform(x.begin(), x.end(), correction.begin(), x.begin(), std::minus<>());
        solution.passes.push_back(x);
        negligible = std::all_of(correction.begin(), correction.end(),
                                 [](double element) { return std::fabs(element) <= EPSILON; });
    }
    return solution;
}
