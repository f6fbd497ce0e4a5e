#include "standalone/sys/process_folder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include "files/retry.h"
#include "host/sys/sys_env.h"

namespace {

using files::Descriptor;
using files::retry;

constexpr std::string_view PREFIX = "qb_colorio-";
constexpr std::string_view UNIQUE_PART = "XXXXXX"; // which mkdtemp replaces
constexpr int ATTEMPTS = 16;

std::vector<std::string> get_places() {
    std::vector<std::string> places = {"/tmp", "/var/tmp", "/dev/shm"};
    const CoreString chosen = sys_get_env("TMPDIR");
    if (chosen.start_with("/"))
        places.insert(places.begin(), chosen.get_data());
    return places;
}

Descriptor open_folder(const std::string& path) {
    return Descriptor(
        retry([&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
}

/// Whether this user owns the folder and no process uses it; it is locked then.
bool is_abandoned(const Descriptor& folder) {
    struct stat status;
    return folder.is_open() && fstat(folder.get(), &status) == 0 && status.st_uid == geteuid() &&
           flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
}

void remove_abandoned(const std::string& place) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(place, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.size() != PREFIX.size() + UNIQUE_PART.size() || name.substr(0, PREFIX.size()) != PREFIX)
            continue;
        std::error_code ignored;
        if (const Descriptor folder = open_folder(entry->path().string()); is_abandoned(folder))
            std::filesystem::remove_all(entry->path(), ignored);
    }
}

/// Opens and locks the new folder; false when another process removed it as abandoned before.
bool take(const std::string& path, Descriptor& folder) {
    struct stat status;
    folder = open_folder(path);
    if (!folder.is_open())
        return false;
    retry([&] { return flock(folder.get(), LOCK_EX); });
    return fstat(folder.get(), &status) == 0 && status.st_nlink > 0;
}

} // namespace

files::Result<std::unique_ptr<ProcessFolder>> ProcessFolder::make() {
    files::Failure failure;
    for (const std::string& place : get_places()) {
        remove_abandoned(place);
        for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
            std::string path = place + "/" + std::string(PREFIX) + std::string(UNIQUE_PART);
            if (!mkdtemp(path.data())) {
                failure = files::make_failure(place, files::Operation::WRITE, errno);
                break;
            }
            Descriptor folder;
            if (take(path, folder))
                return std::unique_ptr<ProcessFolder>(new ProcessFolder(std::move(path), std::move(folder)));
            failure = files::make_failure(path, files::Operation::WRITE, errno);
            rmdir(path.c_str());
        }
    }
    return failure;
}

ProcessFolder::ProcessFolder(std::string path, Descriptor lock)
    : path(std::move(path)), lock(std::move(lock)) {}

ProcessFolder::~ProcessFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}
