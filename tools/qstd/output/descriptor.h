/**
 * @file descriptor.h
 * Reading and writing by the system's calls, whole and in spite of signals that interrupt them.
 */
#ifndef QSTD_DESCRIPTOR_H
#define QSTD_DESCRIPTOR_H

#include <cstddef>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace qstd {

/** What the system calls an error number, the same in every locale. */
std::string ErrorText(int error);

/** Reads what there is, at most `size` bytes: their number, 0 at the end, or -1 with the reason in errno. */
ssize_t ReadSome(int descriptor, char* bytes, size_t size);

/** Writes all of a text. @return 0, or the error number */
int WriteAll(int descriptor, std::string_view text);

} // namespace qstd

#endif
