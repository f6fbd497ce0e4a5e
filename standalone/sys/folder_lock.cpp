#include "standalone/sys/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

FolderLock::FolderLock(const std::string& folder)
    : descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (descriptor.is_open() && flock(descriptor.get(), LOCK_EX) != 0 && errno == EINTR) {
    }
}
