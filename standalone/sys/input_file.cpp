#include "standalone/sys/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

constexpr size_t STEP = 1 << 16;

} // namespace

InputFile::InputFile(const std::string& path) : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    struct stat status;
    if (!is_open() || fstat(descriptor.get(), &status) != 0) {
        error_number = errno;
    } else if (S_ISDIR(status.st_mode)) {
        error_number = EISDIR;
        descriptor = Descriptor();
    }
}

bool InputFile::read(size_t count, std::string& bytes) {
    while (count > 0) {
        const size_t old_size = bytes.size();
        const size_t step = std::min(count, STEP);
        bytes.resize(old_size + step);
        const ssize_t taken = ::read(descriptor.get(), &bytes[old_size], step);
        bytes.resize(old_size + static_cast<size_t>(std::max<ssize_t>(taken, 0)));
        if (taken == 0)
            return true;
        if (taken < 0 && errno != EINTR) {
            error_number = errno;
            return false;
        }
        count -= static_cast<size_t>(std::max<ssize_t>(taken, 0));
    }
    return true;
}
