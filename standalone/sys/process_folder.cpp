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

#include "files/input_file.h"
#include "files/retry.h"
#include "host/sys/sys_env.h"

namespace {

using files::Descriptor;
using files::retry;

constexpr std::string_view PREFIX = "qb_colorio-";
constexpr std::string_view UNIQUE_PART = "XXXXXX"; // which mkdtemp replaces
constexpr int ATTEMPTS = 16;

/// A file that marks a folder of this program, and its content: other folders may have such a name.
constexpr char MARKER_NAME[] = ".qb_colorio-process-folder";
constexpr std::string_view MARKER_TEXT = "qb_colorio: temporary files of one process\n";

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

/// True if `is_own(entry)` is true for every entry of the folder.
template <class Predicate>
bool all_entries(const std::filesystem::path& folder, const Predicate& is_own) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    for (const std::filesystem::directory_iterator end; !error && entry != end; entry.increment(error))
        if (!is_own(*entry))
            return false;
    return !error;
}

bool is_real_folder(const std::filesystem::directory_entry& entry) {
    std::error_code error;
    return entry.symlink_status(error).type() == std::filesystem::file_type::directory;
}

bool is_real_file(const std::filesystem::directory_entry& entry) {
    std::error_code error;
    return entry.symlink_status(error).type() == std::filesystem::file_type::regular;
}

bool has_marker(const std::filesystem::path& folder) {
    const std::filesystem::directory_entry marker(folder / MARKER_NAME);
    if (!is_real_file(marker))
        return false;
    auto text = files::read_whole(marker.path().string(), MARKER_TEXT.size());
    return text && *text == MARKER_TEXT;
}

/// Whether the folder carries the marker, and beside it holds GROUP/NAME/FILE at most, as this program makes
/// them.
bool holds_own_files_only(const std::filesystem::path& folder) {
    if (!has_marker(folder))
        return false;
    const auto is_named_folder = [](const auto& named) {
        return is_real_folder(named) && all_entries(named.path(), is_real_file);
    };
    return all_entries(folder, [&](const auto& entry) {
        if (entry.path().filename() == MARKER_NAME)
            return true;
        return entry.path().filename() == ProcessFolder::GROUP_NAME && is_real_folder(entry) &&
               all_entries(entry.path(), is_named_folder);
    });
}

void remove_abandoned(const std::string& place) {
    std::error_code error;
    for (std::filesystem::directory_iterator entry(place, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.size() != PREFIX.size() + UNIQUE_PART.size() || name.substr(0, PREFIX.size()) != PREFIX)
            continue;
        std::error_code ignored;
        const Descriptor folder = open_folder(entry->path().string());
        if (is_abandoned(folder) && holds_own_files_only(entry->path()))
            std::filesystem::remove_all(entry->path(), ignored);
    }
}

/// A process that is killed before that leaves an empty folder, which nobody removes.
bool write_marker(const Descriptor& folder) {
    const Descriptor marker(
        openat(folder.get(), MARKER_NAME, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    return marker.is_open() && retry([&] {
                                   return write(marker.get(), MARKER_TEXT.data(), MARKER_TEXT.size());
                               }) == static_cast<ssize_t>(MARKER_TEXT.size());
}

/// Opens, locks and marks the new folder. Marked last, so that nobody takes it for an abandoned one.
bool take(const std::string& path, Descriptor& folder) {
    folder = open_folder(path);
    if (!folder.is_open())
        return false;
    retry([&] { return flock(folder.get(), LOCK_EX); });
    return write_marker(folder);
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
            unlink((path + "/" + MARKER_NAME).c_str());
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
