/**
 * @file grade.h
 * The verb grade: a horizontal and a vertical distance as a grade and a ratio.
 */
#ifndef QSTD_GRADE_H
#define QSTD_GRADE_H

#include "input/inputs.h"
#include "results/sink.h"

#include <string>

namespace qstd {

struct GradeOptions
{
    std::string horizontal;
    std::string vertical;
};

void RunGrade(const GradeOptions& options, Inputs& inputs, Sink& sink);

} // namespace qstd

#endif
