/**
 * @file field_book.h
 * Known points and the sights of a survey, as the two input tables hold them.
 */
#ifndef QSTD_FIELD_BOOK_H
#define QSTD_FIELD_BOOK_H

#include "input/table.h"
#include "text/angle_text.h"
#include "text/message.h"

#include <qstdlib.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qstd {

struct KnownPoint
{
    std::string id;
    size_t line = 0;
    PointRecord point = {}; /**< flags say what is known */
    std::string code;
};

/** The known points by name. */
class PointList
{
public:
    /** False when the name is taken. */
    bool Add(KnownPoint point);

    /** Null for a name that is not in the list. */
    [[nodiscard]] const KnownPoint* Find(const std::string& id) const;

    /**
     * The point whose name is nearest to `id` and has the same digits; empty where none has much in common. Digits
     * number points: names that differ in these are different points, not slips of the pen.
     */
    [[nodiscard]] std::string NearestTo(const std::string& id) const;

    /** All names, sorted. */
    [[nodiscard]] std::vector<std::string> Names() const;

private:
    std::unordered_map<std::string, KnownPoint> points;
    std::unordered_map<std::string, std::vector<std::string>> namesByDigits;
};

/** One line of the field book, as read: nothing reduced. */
struct Sight
{
    size_t line = 0;
    std::string target;
    AngleUnit circle = 0;                /**< horizontal circle reading */
    std::optional<AngleUnit> zenith;     /**< of either face */
    std::optional<double> slopeDistance; /**< at most one of the two distances */
    std::optional<double> horizontalDistance;
    double targetHeight = 0.0; /**< of the reflector above the target */
    bool isWanted = true;      /**< false for use 0 */
};

/** A run of consecutive lines with the same station. */
struct SetUp
{
    std::string station;
    size_t number = 1;   /**< counts the set-ups of this station */
    size_t siblings = 1; /**< how many set-ups this station has in all */
    std::optional<double> instrumentHeight;
    std::vector<Sight> sights;
};

/** Points of a table, row by row: for lists that are not kept. Names may repeat. */
class PointRows
{
public:
    /** @param table  its columns; must outlive the object */
    PointRows(const Table& table, Messages& messages);

    /** False where a column that must be there is missing; the messages then say so. */
    [[nodiscard]] bool HasColumns() const;

    /** The point of a row, or nothing where the messages say what is wrong with it. */
    std::optional<KnownPoint> Read(const TableRow& row, Messages& messages) const;

private:
    const Table& head;
    ColumnPlaces places;
};

/** Points from their table: id n e [h] [code]. Problems go to `messages`. */
PointList ReadPoints(const Table& table, Messages& messages);

/** Set-ups from their table: station target hz [v] [sd | hd] [th] [ih] [use]. Problems go to `messages`. */
std::vector<SetUp> ReadSetUps(const Table& table, std::optional<AngleForm> bareAngles, Messages& messages);

} // namespace qstd

#endif
