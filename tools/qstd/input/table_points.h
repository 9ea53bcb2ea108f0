/**
 * @file table_points.h
 * The points of a table of any length, one after the other.
 */
#ifndef QSTD_TABLE_POINTS_H
#define QSTD_TABLE_POINTS_H

#include "input/field_book.h"
#include "input/inputs.h"

#include <string>

namespace qstd {

/** Keeps no point but the one that it hands out. */
class TablePoints
{
public:
    /** Begins at the first point. Throws as Inputs::Rows does, and Unreadable for a table of other columns. */
    TablePoints(const std::string& path, Inputs& inputsOfVerb);

    /** False at the end. Rows that cannot be used are told in the messages of the run. */
    bool Next(KnownPoint& point);

private:
    Inputs& inputs;
    InputTable& table;
    PointRows rows;
    TableRow row;
};

} // namespace qstd

#endif
