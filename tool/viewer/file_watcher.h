#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace tool {

/// Tells which files of some folders were written, replaced, moved or removed. Where the operating system
/// offers no such notices, it never tells of any.
class FileWatcher {
public:
    FileWatcher();
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete;
    FileWatcher& operator=(const FileWatcher&) = delete;

    /// Watches these folders and those below them from now on, and no others. Those that cannot be watched
    /// are passed over, and so are hidden ones below, those deep below, and those past the first few hundred.
    void watch(const std::vector<std::string>& folders);

    /// Absolute paths of files that changed since the last call, each once; waits so long for the first.
    std::vector<std::string> take_changes(std::chrono::milliseconds patience = {});

private:
    void add_folder(const std::string& folder, int depth);
    void read_notices(std::vector<std::string>& changes) const;

    int descriptor;
    std::map<int, std::string> folder_of_watch;
};

} // namespace tool
