#include "command_line/verbs.h"

#include <CLI/CLI.hpp>

namespace qstd {

void AddMeasureVerbs(CommandLine& commandLine)
{
    static_cast<void>(commandLine);
}

} // namespace qstd
