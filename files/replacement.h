#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

struct ReplacementRules {
    /// Permissions of the new file; without it those of the old one, or those that the process gives to new
    /// files.
    std::optional<mode_t> mode;
    /// A device or a pipe is written in place instead of refused. A pipe that nobody reads is still refused.
    bool writes_special_files = false;
    /// The new file has a path from the start, `get_temporary_path`, for code that opens files by their
    /// paths.
    bool has_path = false;
};

/// Replaces a file whole or not at all: the new version is written beside the old one and takes its place
/// when it is complete and on the disk.
///
/// - The new file has the old one's permissions, owner and group, as far as the process may set them; a group
///   that cannot be kept gives its permissions to no other group. The right to run as the file's owner or
///   group (setuid, setgid) is never handed on to new content.
/// - Symbolic links are followed and stay; one that leads to nothing gets its target made.
/// - Other names (hard links) of the old file keep the old content.
/// - A file that the process may not write is refused, though its folder would let it be replaced.
/// - Nothing is left beside the target: the new file has no name until it is complete, where the file system
///   knows such files. Otherwise, and for the moment in between, what a killed process left is removed when a
///   file in the same folder is replaced next.
class Replacement {
public:
    explicit Replacement(const std::string& path, const ReplacementRules& rules = {});
    /// Without a successful `commit` the old file stays and nothing is left beside it.
    ~Replacement();
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;

    bool is_open() const { return descriptor.is_open(); }
    /// False when not all bytes could be written; the replacement is then abandoned. Bytes may wait in memory
    /// for `commit`.
    bool write(std::string_view bytes);
    /// Brings the bytes to the disk and takes the old file's place. False when any step failed, or an earlier
    /// one had; the old file is then untouched, unless its folder alone could not be brought to the disk:
    /// then the new file is in place, as the reason says.
    bool commit();
    /// Why the first step that failed did; nothing while none has.
    const std::optional<Failure>& get_failure() const { return failure; }
    /// Where the new file can be opened until `commit`; empty unless the rules ask for a path. It has the
    /// target's extension.
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
    std::string target;    ///< Behind the links.
    std::string temporary; ///< Path of the new file; empty while it has none.
    bool in_place = false;
    std::optional<mode_t> mode; ///< Of the complete file; without it as it was made.
    std::optional<Owner> owner; ///< Of the old file.
    std::string buffer;
    Descriptor folder;
    Descriptor descriptor;
    std::optional<Failure> failure;
};

} // namespace files
