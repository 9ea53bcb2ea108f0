/**
 * @file sight_list.h
 * Sights from one station: of a table of any length and typed on the command line.
 */
#ifndef QSTD_SIGHT_LIST_H
#define QSTD_SIGHT_LIST_H

#include "input/inputs.h"

#include <qstdlib.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace qstd {

/** A sight with both angles, as read. */
struct AngleSight
{
    std::string target;
    AngleUnit circle = 0;
    AngleUnit zenith = 0; /**< of either face */
    std::optional<double> slopeDistance;
};

/**
 * One sight after the other: those of a table target hz v [sd] [station], then those typed. None is kept.
 *
 * Of a table that names stations the rows of another station are left out.
 */
class SightList
{
public:
    /**
     * Begins at the first sight. Throws as Inputs::Rows does, and Unreadable for a table of other columns.
     *
     * @param table    empty for none
     * @param typed    must outlive the object
     * @param station  as the command line names it
     */
    SightList(const std::string& table, const std::vector<std::string>& typed, const std::string& station,
              Inputs& inputs);

    /** False at the end. Rows that cannot be used are told in the messages of the run. */
    bool Next(AngleSight& sight);

    /** True where the table has rows, but none of this station. */
    [[nodiscard]] bool IsOfOtherStations() const;

private:
    bool NextOfTable(AngleSight& sight);
    bool Read(AngleSight& sight);

    const std::vector<std::string>& typed;
    std::string station;
    Inputs& inputs;
    InputTable* table = nullptr;
    ColumnPlaces places;
    TableRow row;
    size_t taken = 0; /**< of the typed ones */
    bool hasOwn = false;
    bool hasOthers = false;
};

} // namespace qstd

#endif
