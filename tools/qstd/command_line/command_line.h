/**
 * @file command_line.h
 * The command line of qstd: its verbs, their options, help, and the run of the one that was named.
 */
#ifndef QSTD_COMMAND_LINE_H
#define QSTD_COMMAND_LINE_H

#include "command_line/verb_text.h"
#include "input/inputs.h"
#include "instrument/instrument_options.h"
#include "results/output_options.h"
#include "results/sink.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace qstd {

/** Options that verbs share. */
struct CommonOptions
{
    std::string points; /**< table of points; empty: none */
    OutputOptions output;
    InstrumentOptions instrument;
};

/** A verb under construction. */
struct Verb
{
    VerbText text;
    CLI::App* app = nullptr;
    std::shared_ptr<CommonOptions> common;
    std::function<int()> run;
};

class CommandLine
{
public:
    /** A command line with all verbs. */
    CommandLine();
    CommandLine(const CommandLine&) = delete;
    CommandLine& operator=(const CommandLine&) = delete;
    ~CommandLine();

    /** Adds a verb with the options of its output. The reference stays valid. */
    Verb& AddVerb(VerbText text);

    /** Adds a verb without options. */
    Verb& AddBareVerb(VerbText text);

    /** Null where no verb has that name. */
    [[nodiscard]] Verb* FindVerb(const std::string& name) const;

    /** Runs the command. @return the exit code of the program */
    int Run(int count, const char* const* arguments);

    [[nodiscard]] CLI::App& App() const;
    [[nodiscard]] const std::vector<std::unique_ptr<Verb>>& Verbs() const;

private:
    [[nodiscard]] int Help(int count, const char* const* arguments) const;
    int RunVerb(int count, const char* const* arguments);

    std::unique_ptr<CLI::App> app;
    std::vector<std::unique_ptr<Verb>> verbs;
};

/** --points, the table that names stand for. */
void AddPointsOption(Verb& verb);

/** --output, the file that results go to. */
void AddOutputOption(Verb& verb);

/** --svg, --dxf, --geojson. */
void AddFigureOptions(Verb& verb);

/** --south-azimuth. */
void AddAzimuthOption(Verb& verb);

/** --scale, --sea-level, --refraction. */
void AddCorrectionOptions(Verb& verb);

/** --station, --orientation, --instrument-height: an instrument that stands somewhere. */
void AddStandingOptions(Verb& verb);

/** --face-two. */
void AddFaceOption(Verb& verb);

/** Makes a computation what the verb runs. It is called twice, see Sink, and a third time where figures are wanted. */
void SetComputation(Verb& verb, std::function<void(Inputs&, Sink&)> compute);

/** The same of a verb whose options hold an instrument. */
template <typename Options>
void SetComputation(Verb& verb, const std::shared_ptr<Options>& options, void (*run)(const Options&, Inputs&, Sink&))
{
    SetComputation(verb, [options, common = verb.common, run](Inputs& inputs, Sink& sink) {
        options->instrument = common->instrument;
        run(*options, inputs, sink);
    });
}

/**
 * What is wrong with the files that the command line names: one without a name, two outputs of one name, an output that
 * is read, too. Empty when nothing is.
 */
std::string PathProblem(const Verb& verb);

} // namespace qstd

#endif
