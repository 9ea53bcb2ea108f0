// A matrix of the toolkit that a test fills from a list and that releases itself.
#ifndef QSTDLIB_TESTS_STATION_ADJUSTMENT_TEST_MATRIX_H
#define QSTDLIB_TESTS_STATION_ADJUSTMENT_TEST_MATRIX_H

#include <cstdint>
#include <initializer_list>
#include <vector>

#include "station/adjustment/matrix.h"

class TestMatrix
{
public:
    // Elements in row order; all NaN-free fill values are the caller's.
    TestMatrix(int32_t rows, int32_t columns, std::initializer_list<double> elements)
        : TestMatrix(rows, columns, std::vector<double>(elements))
    {
    }

    TestMatrix(int32_t rows, int32_t columns, const std::vector<double>& elements)
        : rowCount(rows), columnCount(columns), matrix(qstdlib::AllocMatrix(1, rows, 1, columns))
    {
        auto element = elements.begin();
        for (int32_t i = 1; i <= rows; ++i)
        {
            for (int32_t j = 1; j <= columns; ++j)
            {
                matrix[i][j] = *element++;
            }
        }
    }

    TestMatrix(int32_t rows, int32_t columns, double element)
        : TestMatrix(rows, columns,
                     std::vector<double>(static_cast<size_t>(rows) * static_cast<size_t>(columns), element))
    {
    }

    ~TestMatrix()
    {
        qstdlib::FreeMatrix(matrix, 1, 1);
    }

    TestMatrix(const TestMatrix&) = delete;
    TestMatrix& operator=(const TestMatrix&) = delete;

    operator qstdlib::Matrix() // NOLINT(google-explicit-constructor): stands for the matrix in every call
    {
        return matrix;
    }

    // In row order.
    std::vector<double> Elements() const
    {
        std::vector<double> elements;
        for (int32_t i = 1; i <= rowCount; ++i)
        {
            elements.insert(elements.end(), matrix[i] + 1, matrix[i] + 1 + columnCount);
        }
        return elements;
    }

private:
    int32_t rowCount;
    int32_t columnCount;
    qstdlib::Matrix matrix;
};

#endif
