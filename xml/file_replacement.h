#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace xml {

/// Replaces a file whole or not at all: what is written goes to a sibling that takes the target's place on
/// commit. Links are followed, and an existing target keeps its permissions. A target that is no regular file
/// (a device, a pipe) is written to directly, as it has no content to keep.
class FileReplacement {
public:
    FileReplacement() = default;
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    /// Gives up what was not committed.
    ~FileReplacement();

    /// False when the target may not be written or its folder takes no sibling.
    bool open(const char* path);
    /// A failure is kept until commit.
    void write(std::string_view piece);
    /// False when anything since `open` failed; the target is then as it was.
    bool commit();

private:
    bool open_sibling(mode_t mode);
    bool take_permissions(const struct stat& status);
    void flush();

    std::string target;
    std::string sibling; ///< empty while there is none to remove
    std::string buffer;
    int file = -1;
    bool has_failed = false;
};

} // namespace xml
