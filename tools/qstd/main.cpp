/**
 * @file main.cpp
 * Entry point of qstd.
 */
#include "command_line/command_line.h"
#include "text/outcome.h"

#include <cstdio>
#include <exception>
#include <new>

int main(int count, char** arguments)
{
    try
    {
        return qstd::CommandLine().Run(count, arguments);
    }
    catch (const std::bad_alloc&)
    {
        std::fputs("qstd: not enough memory\n", stderr);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "qstd: %s\n", error.what());
    }
    return qstd::EXIT_UNREADABLE;
}
