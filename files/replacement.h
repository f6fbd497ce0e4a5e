#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

/// How a file is replaced.
struct ReplacementRules {
    /// Permissions of the new file; empty: those of the old one, or the process's default for new files.
    std::optional<mode_t> mode;
    /// Devices and pipes are written in place instead of refused. A pipe without a reader is always refused.
    bool writes_special_files = false;
    /// The new file has a path from the start (`get_temporary_path`), for code that opens files by path.
    bool has_path = false;
};

/// Replaces a file whole or not at all: the new version is written beside the old one and takes its place
/// when it is complete and on the disk.
///
/// - The new file has the old one's permissions, owner and group, as far as the process may set them; a group
///   that cannot be kept does not pass its permissions to another group. The right to run as the file's owner
///   or group (setuid, setgid) is never kept for new content.
/// - Symbolic links are followed and stay; the missing target of a link is created.
/// - Other names (hard links) of the old file keep the old content.
/// - A file without write permission is refused, even where its folder would allow a replacement.
/// - No temporary file remains: where the file system supports it, the new file has no name until it is
///   complete. Otherwise, files left by a killed process are removed at the next replacement in the folder.
class Replacement {
public:
    /// Opens the new file; check `is_open` or `get_failure`.
    explicit Replacement(const std::string& path, const ReplacementRules& rules = {});
    /// Without a successful `commit` the old file stays and nothing is left beside it.
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    /// False after a failure, and after `commit`.
    bool is_open() const { return descriptor.is_open(); }
    /// False when not all bytes could be written; the replacement is then abandoned. Bytes may be buffered
    /// until `commit`.
    bool write(std::string_view bytes);
    /// Flushes the new file to disk and replaces the old one. False when this or an earlier step failed; the
    /// old file is then unchanged, unless only the folder could not be flushed: then the new file is in
    /// place, as the reason says.
    bool commit();
    /// Why the first failed step failed; empty when none did.
    const std::optional<Failure>& get_failure() const { return failure; }
    /// Path of the new file until `commit`, with the target's extension; empty unless the rules ask for one.
    const std::string& get_temporary_path() const { return temporary; }

private:
    struct Owner {
        uid_t user;
        gid_t group;
    };

    bool open_target(const ReplacementRules& rules);
    bool open_folder();
    bool open_in_place();
    bool open_new(bool has_path, mode_t new_mode);
    bool open_unnamed(mode_t new_mode);
    bool open_named(mode_t new_mode);
    bool name_unnamed();
    template <class Make>
    bool make_named(const Make& make);
    bool lock_temporary();
    bool write_out(std::string_view bytes);
    bool set_permissions();
    bool take_place();
    bool fail();
    bool refuse(int error_number, const std::string& reason);
    void abandon();

    const std::string path;
    std::string target;    ///< After following links.
    std::string temporary; ///< Path of the new file; empty while it has none.
    bool in_place = false;
    std::optional<mode_t> mode; ///< Of the complete file; empty: unchanged.
    std::optional<Owner> owner; ///< Of the old file.
    std::string buffer;
    Descriptor folder;
    Descriptor descriptor;
    std::optional<Failure> failure;
};

} // namespace files
