/**
 * @file sink.h
 * Takes the results of a verb and writes them as text, CSV or JSON Lines.
 */
#ifndef QSTD_SINK_H
#define QSTD_SINK_H

#include "output/output_stream.h"
#include "plan/figure.h"
#include "results/output_options.h"
#include "results/result.h"

#include <cstddef>
#include <string>
#include <vector>

namespace qstd {

/**
 * A verb hands over its results twice, in the same order: the first time the sink measures how wide the columns of text
 * are and writes nothing, the second time it writes. So results of any length stream in constant memory, and nothing is
 * written of a run that ends in a message.
 */
class Sink
{
public:
    /** @param verb  named in JSON */
    Sink(OutputOptions options, std::string verb);

    /** Ends the measuring: what comes now is written. @param figure  takes the figure, may be null */
    void StartWriting(OutputStream& stream, FigureWriter* figure);

    /** First line of a text: what was computed. */
    void Title(const std::string& text);

    /** The rows that follow belong to this section. */
    void Begin(const Section& section);

    void Add(const Row& row);

    /** Something to know about the results: in text below them, else on standard error. */
    void Note(const std::string& text);

    /** Where the figure goes; null when none is wanted, and while measuring. */
    [[nodiscard]] FigureWriter* Figure() const;

    /** True when a row was not computed, or misses what was asked for. */
    [[nodiscard]] bool HasFailures() const;

    /** Warnings and notes of a run in CSV or JSON. Beyond a limit warnings are counted. */
    [[nodiscard]] std::string Messages() const;

    [[nodiscard]] const OutputOptions& Options() const;

    /** A length as the results show it, for titles, notes and labels. */
    [[nodiscard]] std::string LengthText(double length) const;

    /** An angle as the results show it. */
    [[nodiscard]] std::string AngleText(AngleUnit units) const;

private:
    /** A section as this run shows it. */
    struct Shown
    {
        std::vector<Column> columns; /**< with status and remark */
        std::vector<size_t> places;  /**< the columns shown, in order */
        std::vector<size_t> widths;  /**< of each shown column, in text; 0 for one that stays empty */
    };

    void Pick(const Section& section, Shown& picked) const;
    [[nodiscard]] std::vector<Value> Complete(const Row& row) const;
    void Measure(const std::vector<Value>& values);
    void WriteText(const Row& row, const std::vector<Value>& values);
    void WriteRecord(const Row& row, const std::vector<Value>& values);
    [[nodiscard]] bool IsRemark(size_t place) const;
    void WriteRemark(const Row& row, const std::string& remark);
    void TellWarnings(const Row& row);
    void WriteTableRow(const std::vector<Value>& values);
    void WriteTitles();
    void WriteCsv(const std::vector<Value>& values);
    void WriteJson(const Row& row, const std::vector<Value>& values);
    void Separate();
    [[nodiscard]] std::string Cell(const Column& column, const Value& value) const;
    [[nodiscard]] std::string_view Unit(const Column& column) const;

    OutputOptions options;
    std::string verb;
    OutputStream* stream = nullptr;
    FigureWriter* figure = nullptr;
    std::vector<Shown> shown; /**< in the order of Begin, the same in both passes */
    size_t begun = 0;
    Section current;
    bool hasFailures = false;
    bool hasWritten = false;
    bool hasNotes = false;
    std::string messages;
    size_t warnings = 0;
};

} // namespace qstd

#endif
