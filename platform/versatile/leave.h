/* Ends of an image. exit(), abort() and the return of main() end by the same way. */
#ifndef QSTDLIB_PLATFORM_VERSATILE_LEAVE_H
#define QSTDLIB_PLATFORM_VERSATILE_LEAVE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Ends the emulator with this exit status, at once: what standard output still buffers is lost. */
__attribute__((noreturn)) void Leave(int status);

/* What a processor fault leads to: a line with its kind and address, and LEAVE_STATUS_FAULT. */
__attribute__((noreturn)) void LeaveByFault(const char* kind, uint32_t address);

#define LEAVE_STATUS_FAULT 125
#define LEAVE_STATUS_SIGNAL 126

#ifdef __cplusplus
}
#endif

#endif
