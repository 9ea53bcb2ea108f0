/**
 * @file result.h
 * What a verb computes, before it is text: sections of named columns, rows of values with their status.
 */
#ifndef QSTD_RESULT_H
#define QSTD_RESULT_H

#include <qstdlib.h>

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace qstd {

/** What a column holds; decides decimals, unit and JSON keys. */
enum class Quantity
{
    TEXT,
    COUNT,
    LENGTH, /**< coordinates, heights, distances, offsets */
    ANGLE,  /**< in JSON twice: NAME_degrees, NAME_units */
    AREA,
    NUMBER,  /**< a ratio or factor */
    PERCENT, /**< a grade */
    MILLI    /**< a length of which people want thousandths: value in the unit, printed times 1000 with one decimal */
};

struct Column
{
    std::string name;  /**< of the CSV column and the JSON key, such as horizontal_distance */
    std::string title; /**< in text, such as horizontal distance; empty: not shown there, the title line says it */
    Quantity quantity = Quantity::TEXT;
    std::string note; /**< said behind the value of a record in text, such as: to the right; may be empty */
};

/** An AngleUnit that does not pass for a count. */
struct AngleValue
{
    AngleUnit units = 0;
};

/** Nothing stands for what is not determined. */
using Value = std::variant<std::monostate, std::string, int64_t, double, AngleValue>;

/** A length or number of the library: nothing where it is UNDEFINED_REAL or not finite. */
Value RealValue(double value);

/** An angle of the library: nothing where it is ANGLE_UNDEFINED. */
Value AngleOf(AngleUnit units);

/** The height of a point: nothing where its flag is clear. */
Value HeightOf(const PointRecord& point);

struct Row
{
    std::vector<Value> values; /**< one a column of the section */
    int32_t status = QSTD_OK;
    bool isComputed = true; /**< false: the values that depend on the computation are nothing */
    std::string remark;     /**< why not, or what to know; from the status where empty and something is wrong */
    std::vector<std::string> warnings = {}; /**< what makes the values doubtful */
    bool isProven = true;                   /**< false: the values miss what was asked for, as a warning says */
};

enum class Layout
{
    RECORD, /**< in text: a line for each column */
    TABLE   /**< in text: a line for each row */
};

struct Section
{
    std::string kind; /**< of the JSON objects, such as point or arc */
    Layout layout = Layout::RECORD;
    bool isMain = true; /**< printed as CSV, and what --columns picks from; a verb has one main section */
    std::vector<Column> columns;
};

} // namespace qstd

#endif
