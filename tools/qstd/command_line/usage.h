/**
 * @file usage.h
 * The arguments and options of a verb, as help, manual and completion show them.
 */
#ifndef QSTD_USAGE_H
#define QSTD_USAGE_H

#include "command_line/command_line.h"

#include <string>
#include <vector>

namespace CLI {
class Option;
}

namespace qstd {

/** An argument or an option. */
struct Parameter
{
    std::vector<std::string> names;   /**< --csv, or the one name of an argument */
    std::string value;                /**< what stands behind the name of an option, such as FILE; empty for a flag */
    std::string type;                 /**< of one value, such as POINT */
    std::string description;          /**< sentence without full stop */
    std::vector<std::string> choices; /**< the values that are allowed, where they are few */
    std::string group;                /**< heading in the list of options */
    bool isRequired = false;
    bool isRepeated = false; /**< takes any number of values */
};

/** Options under one heading. */
struct ParameterGroup
{
    std::string title;
    std::vector<Parameter> parameters;
};

/** What is said once about a type of values, not for each argument and option that takes them. */
struct TypeText
{
    std::string type;
    std::string text;
};

struct Usage
{
    std::vector<Parameter> arguments;
    std::vector<ParameterGroup> options;
    std::vector<TypeText> types; /**< of those that arguments and options have */
};

/** Headings that options of several verbs stand under. */
extern const char* const INPUT_GROUP;
extern const char* const INSTRUMENT_GROUP;
extern const char* const OUTPUT_GROUP;
extern const char* const FIGURE_GROUP;

/** Options added while it lives stand under its heading. */
class InGroup
{
public:
    InGroup(CLI::App& appOfOptions, const char* group);
    ~InGroup();
    InGroup(const InGroup&) = delete;
    InGroup& operator=(const InGroup&) = delete;
    InGroup(InGroup&&) = delete;
    InGroup& operator=(InGroup&&) = delete;

private:
    CLI::App& app;
};

/** Names an option and its value, such as: -h, --help or --angle FORM. */
std::string Signature(const Parameter& parameter);

/** The description with what is to know besides: the choices and the type where it does not say them. */
std::string FullDescription(const Parameter& parameter);

Parameter ParameterOf(const CLI::Option& option);

Usage UsageOf(const CLI::App& app);

/** A command line of the verb in short, such as: qstd forward [OPTION]... A AZIMUTH DISTANCE [DH]. */
std::string Synopsis(const Verb& verb);

/** The options without their headings. */
std::vector<Parameter> AllOptions(const Usage& usage);

} // namespace qstd

#endif
