/* A call that the C library declares and leaves to the platform. */
#include <errno.h>
#include <sys/stat.h>

/* No directory can be made: the emulator's calls know files only. */
int mkdir(const char* path, mode_t mode)
{
    (void)path;
    (void)mode;
    errno = ENOSYS;
    return -1;
}
