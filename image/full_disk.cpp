#include "image/full_disk.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace image {

namespace {

/// More than the rest of the last block of a file, so that the disk has to provide a new one.
constexpr std::size_t PROBE_BYTES = 1 << 20;

} // namespace

std::string find_full_disk(const std::string& path) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (descriptor < 0)
        return std::strerror(errno);
    const std::vector<char> zeros(PROBE_BYTES);
    std::size_t written = 0;
    while (written < zeros.size()) {
        const ssize_t step = write(descriptor, zeros.data(), zeros.size() - written);
        if (step < 0 && errno == EINTR)
            continue;
        if (step <= 0)
            break;
        written += static_cast<std::size_t>(step);
    }
    const std::string reason = written < zeros.size() ? std::strerror(errno) : "";
    close(descriptor);
    return reason;
}

} // namespace image
