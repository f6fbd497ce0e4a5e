#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "standalone/sys/descriptor.h"

/// Writes a new version of a file beside it and puts it in the old one's place when it is complete. Links are
/// followed to the file they name. Something that is no regular file (a device, a pipe) is written in place.
class FileReplacement {
public:
    /// Without `mode` the new file has the permissions of the old one, or those that the process gives to new
    /// files.
    explicit FileReplacement(const std::string& path, std::optional<mode_t> mode = std::nullopt);
    /// Without a successful `commit` the old file stays and nothing is left beside it.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    bool is_open() const { return descriptor.is_open(); }
    /// False when not all bytes could be written; the replacement is then abandoned.
    bool write(std::string_view bytes);
    /// Brings the bytes to the disk and takes the old file's place. False when any step failed, or an earlier
    /// one had.
    bool commit();
    /// Why the last step failed, in the system's words.
    const std::string& get_error() const { return error; }

private:
    bool open_target(std::optional<mode_t> mode);
    bool open_new(std::optional<mode_t> mode);
    bool open_nameless(mode_t mode);
    bool open_sibling(mode_t mode);
    bool name_sibling();
    bool make_sibling(const std::function<bool(const std::string& name)>& make);
    bool write_out(std::string_view bytes);
    bool flush_to_disk();
    bool fail();
    void abandon();

    std::string target;
    std::string sibling; ///< The new file beside the target; empty while it has no name.
    bool in_place = true;
    std::string buffer;
    std::string error;
    Descriptor descriptor;
};
