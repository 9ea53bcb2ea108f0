#include "command_line/verbs.h"

#include <CLI/CLI.hpp>

namespace qstd {

void AddGeneralVerbs(CommandLine& commandLine)
{
    static_cast<void>(commandLine);
}

} // namespace qstd
