#pragma once

#include <sys/types.h>

#include <ctime>
#include <optional>
#include <string>

namespace ocio {

/// Identifies the content of a file without reading it.
struct FileState {
    dev_t device;
    ino_t inode;
    off_t size;
    time_t seconds; ///< of the last change
    long nanoseconds;
    /// False when the last change is so recent that another one could have the same time.
    bool settled;
};

/// Empty when the file does not exist. Throws when it is not a regular file: reading a pipe or a device might
/// never end.
std::optional<FileState> file_state(const std::string& path);

/// True when a file that was read in state `before` certainly still has the same content.
bool is_unchanged(const FileState& before, const std::optional<FileState>& now);

} // namespace ocio
