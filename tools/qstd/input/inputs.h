/**
 * @file inputs.h
 * What a verb works on: points and angles given on the command line, tables from files.
 */
#ifndef QSTD_INPUTS_H
#define QSTD_INPUTS_H

#include "input/field_book.h"
#include "input/line_source.h"
#include "input/table_stream.h"
#include "output/progress.h"
#include "text/message.h"

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace qstd {

/** A table that is read row by row, telling how far it has come. */
class InputTable
{
public:
    InputTable(const std::string& path, Messages& messages);

    /** Name and columns. */
    [[nodiscard]] const Table& Head() const;

    /** To the first row. Throws Unreadable where the table has no header. */
    void Rewind();

    /** Tells how far it has come, from now on; not where that would stand between the lines of the results. */
    void ShowProgress(bool isShown);

    /** False at the end. Rows that cannot be used, and that there are none, are told in the messages of the run. */
    bool Next(TableRow& row);

private:
    Messages& messages;
    LineSource source;
    std::optional<TableStream> stream;
    std::optional<Progress> progress;
    bool showsProgress = true;
    bool hasRows = false;
};

/** Reads each input once, however often a verb asks for it. */
class Inputs
{
public:
    /**
     * @param pointsTable  the table of points, empty for none
     * @param bare         form of angles that do not say theirs
     * @param messages     problems of the tables
     */
    Inputs(std::string pointsTable, std::optional<AngleForm> bare, Messages& messages);

    /**
     * The point of a name in the table of points, or given as N,E or N,E,H. Throws WrongUse where it is neither.
     *
     * Where bare numbers could be taken for something else, id=NAME and N=..,E=..,H=.. say what they are.
     */
    KnownPoint Point(const std::string& text);

    /** As Point, or nothing where the text is neither. Throws only for a text that begins like coordinates. */
    std::optional<KnownPoint> FindPoint(const std::string& text);

    /** An angle in any form. Throws WrongUse. @param what  for the message, such as azimuth */
    [[nodiscard]] AngleUnit Angle(const std::string& text, const std::string& what) const;

    /** All points of the table. Throws Unreadable. */
    const PointList& Points();

    /** A table, at its first row. Throws Unreadable, and WrongUse where standard input would be read twice. */
    InputTable& Rows(const std::string& path);

    /** Whether tables tell how far they have come. */
    void ShowProgress(bool isShown);

    /** The set-ups of a field book. Throws as Rows does. */
    const std::vector<SetUp>& SetUps(const std::string& path);

    [[nodiscard]] Messages& Problems() const;

    [[nodiscard]] std::optional<AngleForm> BareAngles() const;

private:
    Table ReadTable(const std::string& path);
    void Claim(const std::string& path);

    std::string pointsPath;
    std::optional<AngleForm> bareAngles;
    Messages& problems;
    std::optional<PointList> pointList;
    std::unordered_map<std::string, std::unique_ptr<InputTable>> tables;
    std::unordered_map<std::string, std::vector<SetUp>> fieldBooks;
    bool isStandardInputTaken = false;
    bool showsProgress = true;
};

} // namespace qstd

#endif
