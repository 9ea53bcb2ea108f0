/* The command line of an image, as main() receives it. */
#include "semihosting.h"

enum
{
    MOST_ARGUMENTS = 32, /* start.S holds room for these and the null behind them */
    LONGEST_LINE = 1024
};

int FetchArguments(char* arguments[]);

/* Blanks separate arguments; there are no quotes. The program's name is the first. */
int FetchArguments(char* arguments[])
{
    static char line[LONGEST_LINE];
    struct
    {
        char* text;
        uint32_t size;
    } block = {line, sizeof line};
    int count = 0;
    if (SemihostingCall(SEMIHOSTING_COMMAND_LINE, &block) == 0)
    {
        char* next = line;
        while (*next != '\0' && count < MOST_ARGUMENTS)
        {
            if (*next == ' ')
            {
                *next++ = '\0';
                continue;
            }
            arguments[count++] = next;
            while (*next != '\0' && *next != ' ')
            {
                ++next;
            }
        }
    }
    arguments[count] = 0;
    return count;
}
