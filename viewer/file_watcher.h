#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

namespace viewer {

/// Reports which of some files were written, replaced, moved, removed or created, including through their
/// folders and links. Without support of the operating system it reports nothing, and why.
class FileWatcher {
public:
    FileWatcher();
    ~FileWatcher();
    FileWatcher(const FileWatcher&) = delete;
    FileWatcher& operator=(const FileWatcher&) = delete;

    /// Watches these files from now on, given by absolute paths, and no others. Neither they nor their
    /// folders need to exist.
    void watch(const std::vector<std::string>& files);

    /// The files that changed since the last call, each once; waits for the first up to the given time (not
    /// at all if negative, some weeks at most).
    std::vector<std::string> take_changes(std::chrono::milliseconds patience = {});

    /// Why some or all changes are not noticed; empty when all are.
    const std::optional<diagnostics::Diagnostic>& get_error() const { return error; }

private:
    /// Identifies the state of a file without reading it.
    struct Stamp {
        bool exists = false;
        unsigned long device = 0;
        unsigned long inode = 0;
        long long size = 0;
        long long nanoseconds = 0; ///< Of its last change.

        bool operator==(const Stamp& other) const;
    };
    using FilePaths = std::set<std::string>;

    static Stamp read_stamp(const std::string& path);
    void place_watches();
    void place_watches_on_way(const std::string& path, const std::string& file);
    std::vector<std::string> read_changes();
    /// Reads what there is to read. Adds the files that a notice names, and those below a folder that it
    /// names.
    void read_notices(FilePaths& named, FilePaths& below);
    void read_notice(const std::string& path, unsigned int kind, FilePaths& named, FilePaths& below) const;

    int descriptor;
    std::optional<diagnostics::Diagnostic> error;
    std::map<std::string, Stamp> stamps;          ///< Of every watched file.
    std::map<int, std::set<std::string>> folders; ///< By watch; links give one folder several names.
    std::map<std::string, FilePaths>
        files_of_entry; ///< Files that stand at a path, by themselves or by a link.
    std::map<std::string, FilePaths> files_of_folder; ///< Files below a path.
};

} // namespace viewer
