/* Calls from an image to the emulator that runs it. */
#ifndef QSTDLIB_PLATFORM_VERSATILE_SEMIHOSTING_H
#define QSTDLIB_PLATFORM_VERSATILE_SEMIHOSTING_H

#include <stdint.h>

enum
{
    SEMIHOSTING_WRITE_TEXT = 0x04,
    SEMIHOSTING_COMMAND_LINE = 0x15,
    SEMIHOSTING_EXIT_EXTENDED = 0x20
};

/* `block` is what the operation asks for: a text, or the address of its words. */
static inline uint32_t SemihostingCall(uint32_t operation, const void* block)
{
    register uint32_t result __asm__("r0") = operation;
    register const void* argument __asm__("r1") = block;
    __asm__ volatile("svc 0x123456" : "+r"(result) : "r"(argument) : "memory");
    return result;
}

#endif
