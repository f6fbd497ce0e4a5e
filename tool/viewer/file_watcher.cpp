#include "tool/viewer/file_watcher.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <set>

namespace tool {

namespace {

namespace fs = std::filesystem;

/// A writer's last act on a file, whatever way it writes.
constexpr unsigned int NOTICES = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr int MAX_DEPTH = 4;
constexpr std::size_t MAX_FOLDERS = 512;

} // namespace

FileWatcher::FileWatcher() : descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

FileWatcher::~FileWatcher() {
    if (descriptor >= 0)
        close(descriptor);
}

void FileWatcher::watch(const std::vector<std::string>& folders) {
    if (descriptor < 0)
        return;
    std::map<int, std::string> former;
    former.swap(folder_of_watch);
    for (const std::string& folder : folders)
        add_folder(folder, 0);
    for (const auto& [watch, folder] : former)
        if (folder_of_watch.count(watch) == 0)
            inotify_rm_watch(descriptor, watch);
}

void FileWatcher::add_folder(const std::string& folder, int depth) {
    if (depth > MAX_DEPTH || folder_of_watch.size() >= MAX_FOLDERS)
        return;
    const int watch = inotify_add_watch(descriptor, folder.c_str(), NOTICES | IN_ONLYDIR);
    if (watch < 0 || !folder_of_watch.emplace(watch, folder).second)
        return;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code ignored;
        const bool hidden = entry->path().filename().native().front() == '.';
        if (!hidden && entry->is_directory(ignored) && !entry->is_symlink(ignored))
            add_folder(entry->path().string(), depth + 1);
    }
}

std::vector<std::string> FileWatcher::take_changes(std::chrono::milliseconds patience) {
    std::vector<std::string> changes;
    if (descriptor < 0)
        return changes;
    pollfd wanted = {descriptor, POLLIN, 0};
    if (poll(&wanted, 1, static_cast<int>(patience.count())) > 0)
        read_notices(changes);
    return changes;
}

void FileWatcher::read_notices(std::vector<std::string>& changes) const {
    std::set<std::string> known;
    alignas(inotify_event) char buffer[16384];
    for (ssize_t size; (size = read(descriptor, buffer, sizeof buffer)) > 0;) {
        for (ssize_t at = 0; at < size;) {
            inotify_event notice;
            std::memcpy(&notice, buffer + at, sizeof notice);
            const char* name = buffer + at + sizeof notice;
            const auto folder = folder_of_watch.find(notice.wd);
            if (notice.len > 0 && folder != folder_of_watch.end()) {
                std::string path = (fs::path(folder->second) / name).string();
                if (known.insert(path).second)
                    changes.push_back(std::move(path));
            }
            at += static_cast<ssize_t>(sizeof notice + notice.len);
        }
    }
}

} // namespace tool
