#include "leave.h"

#include "semihosting.h"

/* The C library's names for the end of a process and for a signal to it, such as that of abort(). */
void _exit(int status) __attribute__((noreturn)); /* NOLINT: the C library gives the name */
int _kill(int process, int signal);               /* NOLINT */

void Leave(int status)
{
    const uint32_t APPLICATION_EXIT = 0x20026;
    const uint32_t block[2] = {APPLICATION_EXIT, (uint32_t)status};
    SemihostingCall(SEMIHOSTING_EXIT_EXTENDED, block);
    for (;;)
    {
    }
}

static void Write(const char* text)
{
    SemihostingCall(SEMIHOSTING_WRITE_TEXT, text);
}

void LeaveByFault(const char* kind, uint32_t address)
{
    char digits[] = "00000000\n";
    for (int i = 0; i < 8; ++i)
    {
        digits[i] = "0123456789abcdef"[(address >> (28 - 4 * i)) & 0xFU];
    }
    Write("Fault: ");
    Write(kind);
    Write(" at 0x");
    Write(digits);
    Leave(LEAVE_STATUS_FAULT);
}

void _exit(int status) /* NOLINT */
{
    Leave(status);
}

int _kill(int process, int signal) /* NOLINT */
{
    (void)process;
    (void)signal;
    Write("Ended by a signal to itself\n");
    Leave(LEAVE_STATUS_SIGNAL);
}
