#include "standalone/sys/set_aside.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace {

constexpr int MAX_NUMBER = 10'000;

// Fails with EEXIST when there is a file at `to`.
bool rename_to_free_name(const std::string& from, const std::string& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // A file system without that operation.
    struct stat status;
    if (lstat(to.c_str(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.c_str(), to.c_str()) == 0;
}

} // namespace

std::string set_aside(const std::string& path) {
    for (int number = 1; number <= MAX_NUMBER; ++number) {
        const std::string kept = path + ".damaged-" + std::to_string(number);
        if (rename_to_free_name(path, kept))
            return kept;
        if (errno != EEXIST)
            break;
    }
    return {};
}
