#include "output/descriptor.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace qstd {

std::string ErrorText(int error)
{
    return std::generic_category().message(error);
}

ssize_t ReadSome(int descriptor, char* bytes, size_t size)
{
    ssize_t count = -1;
    do
    {
        count = read(descriptor, bytes, size);
    } while (count < 0 && errno == EINTR);
    return count;
}

int WriteAll(int descriptor, std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR)
        {
            continue;
        }
        if (count <= 0)
        {
            return count < 0 ? errno : EIO;
        }
        text.remove_prefix(static_cast<size_t>(count));
    }
    return 0;
}

} // namespace qstd
