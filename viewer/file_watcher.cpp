#include "viewer/file_watcher.h"

#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <tuple>

#include "diagnostics/failure.h"

namespace viewer {

namespace {

namespace fs = std::filesystem;

/// The last event of every way to write a file, and the events of folders and links.
constexpr unsigned int NOTICES = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE;

/// A file that is only created, as links are, and not closed by a writer.
bool is_link(const std::string& path) {
    struct stat info {};
    return lstat(path.c_str(), &info) == 0 && (S_ISLNK(info.st_mode) || info.st_nlink > 1);
}

std::string explain(int number) {
    if (number == ENOSPC)
        return "the system's limit on watched folders is reached (fs.inotify.max_user_watches)";
    if (number == EMFILE)
        return "the limit on open files or on inotify instances is reached "
               "(fs.inotify.max_user_instances)";
    return std::strerror(number);
}

diagnostics::Diagnostic describe_limit(int number) {
    return diagnostics::make_error(diagnostics::Code::SYSTEM_FAILURE,
                                   "changed files are not reloaded automatically: " + explain(number));
}

} // namespace

bool FileWatcher::Stamp::operator==(const Stamp& other) const {
    return std::tie(exists, device, inode, size, nanoseconds) ==
           std::tie(other.exists, other.device, other.inode, other.size, other.nanoseconds);
}

FileWatcher::Stamp FileWatcher::read_stamp(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0)
        return {};
    constexpr long long BILLION = 1000000000;
    return {true, info.st_dev, info.st_ino, info.st_size,
            info.st_mtim.tv_sec * BILLION + info.st_mtim.tv_nsec};
}

FileWatcher::FileWatcher() : descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (descriptor < 0)
        error = describe_limit(errno);
}

FileWatcher::~FileWatcher() {
    if (descriptor >= 0)
        close(descriptor);
}

void FileWatcher::watch(const std::vector<std::string>& files) {
    if (descriptor < 0)
        return;
    std::map<std::string, Stamp> former;
    former.swap(stamps);
    for (const std::string& file : files) {
        const auto known = former.find(file);
        stamps.emplace(file, known != former.end() ? known->second : read_stamp(file));
    }
    place_watches();
}

void FileWatcher::place_watches() {
    std::map<int, std::set<std::string>> former;
    former.swap(folders);
    error.reset();
    files_of_entry.clear();
    files_of_folder.clear();
    for (const auto& [file, stamp] : stamps) {
        place_watches_on_way(file, file);
        std::error_code unresolved;
        const fs::path real = fs::weakly_canonical(file, unresolved);
        if (!unresolved && real != file)
            place_watches_on_way(real.string(), file);
    }
    for (const auto& [watch, names] : former)
        if (folders.count(watch) == 0)
            inotify_rm_watch(descriptor, watch);
}

/// Watches every folder on the way to a path, the outermost first: so none that is made meanwhile is missed.
void FileWatcher::place_watches_on_way(const std::string& path, const std::string& file) {
    if (!files_of_entry[path].insert(file).second)
        return;
    fs::path folder;
    const fs::path parent = fs::path(path).parent_path();
    for (const fs::path& part : parent) {
        folder /= part;
        const auto [entry, is_new] = files_of_folder.emplace(folder.string(), FilePaths{});
        entry->second.insert(file);
        const int watch = is_new ? inotify_add_watch(descriptor, folder.c_str(), NOTICES | IN_ONLYDIR) : -1;
        if (watch >= 0)
            folders[watch].insert(folder.string());
        else if (is_new && (errno == ENOSPC || errno == ENOMEM)) // Others mean that there is no such folder.
            error = describe_limit(errno);
    }
}

std::vector<std::string> FileWatcher::take_changes(std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    // A negative one would have `poll` wait forever.
    const auto clamp = [](milliseconds time) {
        return std::clamp(time, milliseconds(0), milliseconds(std::numeric_limits<int>::max()));
    };
    patience = clamp(patience);
    const Clock::time_point end = Clock::now() + patience;
    std::vector<std::string> changes;
    pollfd wanted = {descriptor, POLLIN, 0};
    milliseconds left = patience;
    while (descriptor >= 0 && poll(&wanted, 1, static_cast<int>(left.count())) > 0) {
        changes = read_changes();
        if (!changes.empty() || Clock::now() >= end)
            break;
        left = clamp(std::chrono::ceil<milliseconds>(end - Clock::now())); // Others end no wait.
    }
    return changes;
}

std::vector<std::string> FileWatcher::read_changes() {
    FilePaths named, below;
    read_notices(named, below);
    if (!below.empty() || !named.empty())
        place_watches();
    for (const std::string& file : below)
        if (!(read_stamp(file) == stamps[file]))
            named.insert(file);
    for (const std::string& file : named)
        stamps[file] = read_stamp(file);
    return {named.begin(), named.end()};
}

void FileWatcher::read_notices(FilePaths& named, FilePaths& below) {
    alignas(inotify_event) char buffer[16384];
    for (ssize_t size; (size = read(descriptor, buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < size;) {
            inotify_event notice;
            std::memcpy(&notice, buffer + at, sizeof notice);
            const char* name = buffer + at + sizeof notice;
            if (notice.mask & IN_Q_OVERFLOW) // Some were lost.
                for (const auto& [file, stamp] : stamps)
                    below.insert(file);
            const auto watched = folders.find(notice.wd);
            if (notice.len > 0 && watched != folders.end())
                for (const std::string& folder : watched->second)
                    read_notice((fs::path(folder) / name).string(), notice.mask, named, below);
            at += static_cast<ssize_t>(sizeof notice + notice.len);
        }
    }
}

void FileWatcher::read_notice(const std::string& path, unsigned int kind, FilePaths& named,
                              FilePaths& below) const {
    const auto entry = files_of_entry.find(path);
    // A file that is being made is not whole yet.
    if (entry != files_of_entry.end() && (!(kind & IN_CREATE) || is_link(path)))
        named.insert(entry->second.begin(), entry->second.end());
    const auto folder = files_of_folder.find(path);
    if (folder != files_of_folder.end() && !(kind & IN_CLOSE_WRITE))
        below.insert(folder->second.begin(), folder->second.end());
}

} // namespace viewer
