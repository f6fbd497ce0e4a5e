#include "files/leftovers.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <set>
#include <utility>

#include "files/descriptor.h"
#include "files/retry.h"
#include "files/temporary_name.h"

namespace files {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// A temporary file is locked while it is written.
bool is_abandoned(const Descriptor& file) {
    struct stat status;
    return file.is_open() && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_uid == geteuid() && retry([&] { return flock(file.get(), LOCK_EX | LOCK_NB); }) == 0;
}

// The creation time distinguishes a folder from an earlier one with the same number.
bool is_first_visit(int folder) {
    static std::mutex mutex;
    static std::set<std::array<std::uint64_t, 5>> visited;
    struct statx status = {};
    if (statx(folder, "", AT_EMPTY_PATH, STATX_INO | STATX_BTIME, &status) != 0)
        return false;
    const std::lock_guard<std::mutex> lock(mutex);
    return visited
        .insert({status.stx_dev_major, status.stx_dev_minor, status.stx_ino,
                 static_cast<std::uint64_t>(status.stx_btime.tv_sec), status.stx_btime.tv_nsec})
        .second;
}

struct TemporaryFiles {
    std::mutex mutex;
    std::set<std::string> paths;
};

TemporaryFiles& get_temporary_files() {
    static TemporaryFiles temporary;
    return temporary;
}

} // namespace

void remove_leftovers(const std::string& folder) {
    const std::unique_ptr<DIR, CloseFolder> entries(opendir(folder.c_str()));
    if (!entries || !is_first_visit(dirfd(entries.get())))
        return;
    while (const dirent* entry = readdir(entries.get())) {
        if (!is_temporary_name(entry->d_name))
            continue;
        const Descriptor file(openat(dirfd(entries.get()), entry->d_name,
                                     O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (is_abandoned(file))
            unlinkat(dirfd(entries.get()), entry->d_name, 0);
    }
}

// Files are made under the mutex, so that its holder sees all of them.
bool make_temporary_file(const std::string& path, const std::function<bool()>& make) {
    const std::lock_guard<std::mutex> lock(get_temporary_files().mutex);
    if (!make())
        return false;
    get_temporary_files().paths.insert(path);
    return true;
}

void forget_temporary_file(const std::string& path) {
    const std::lock_guard<std::mutex> lock(get_temporary_files().mutex);
    get_temporary_files().paths.erase(path);
}

void remove_temporary_files() {
    get_temporary_files().mutex.lock(); // and never released
    for (const std::string& path : get_temporary_files().paths)
        unlink(path.c_str());
    get_temporary_files().paths.clear();
}

} // namespace files
