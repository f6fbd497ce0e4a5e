#include "files/lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "files/retry.h"

namespace files {

namespace {

// Locked instead where a folder cannot be locked: network file systems lock only files open for writing. It
// is never removed.
constexpr char LOCK_FILE[] = "/.qb_colorio.lock";

// 0 or errno.
int lock(const Descriptor& file) {
    return retry([&] { return flock(file.get(), LOCK_EX); }) == 0 ? 0 : errno;
}

bool is_without_locks(int error_number) {
    return error_number == ENOLCK || error_number == ENOTSUP || error_number == ENOSYS ||
           error_number == EINVAL;
}

} // namespace

Result<Lock> Lock::take(const std::string& folder) {
    Descriptor file(retry([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (!file.is_open() && errno == EACCES)
        return Lock(Descriptor());
    if (!file.is_open())
        return make_failure(folder, Operation::LOCK, errno);
    int error_number = lock(file);
    if (error_number == EBADF) {
        const std::string path = folder + LOCK_FILE;
        file = Descriptor(
            retry([&] { return open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600); }));
        error_number = file.is_open() ? lock(file) : errno;
    }
    if (error_number != 0 && !is_without_locks(error_number))
        return make_failure(folder, Operation::LOCK, error_number);
    return Lock(std::move(file));
}

} // namespace files
