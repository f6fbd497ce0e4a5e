#include "workflow/setup_files.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "standalone/sys/user_folders.h"
#include "workflow/log_forwarding.h"
#include "workflow/user_preferences.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using diagnostics::Severity;
using Problem = std::optional<Diagnostic>;

constexpr char GROUP[] = "/qb_colorio";
constexpr unsigned int PERMISSIONS = 07777;

/// "mode 0700, owner 1000"; empty when the file cannot be examined.
std::string describe_permissions(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return "";
    return fmt::format("mode {:04o}, owner {}", status.st_mode & PERMISSIONS, status.st_uid);
}

/// The folder, or the nearest one above it that exists.
std::string find_existing(std::filesystem::path folder) {
    std::error_code error;
    while (!std::filesystem::exists(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder.string();
}

/// Why this user cannot make files in the folder, or the folder itself; empty for no reason.
std::string find_reason_against_writing(const std::string& folder) {
    const std::string existing = find_existing(folder);
    std::error_code error;
    if (!std::filesystem::is_directory(existing, error))
        return fmt::format("'{}' is not a folder", existing);
    if (access(existing.c_str(), W_OK | X_OK) != 0)
        return fmt::format("'{}': {}", existing, std::strerror(errno));
    return "";
}

SetupItem examine_folder(const std::string& name, const std::string& folder, Severity severity,
                         const std::string& hint) {
    if (folder.empty())
        return {name, "none: no home folder",
                with_hint(make_warning(Code::HOME_MISSING, fmt::format("no {} folder: no home folder", name)),
                          hint)};
    std::error_code error;
    const bool exists = std::filesystem::exists(folder, error);
    SetupItem item{
        name,
        fmt::format("{} ({})", folder, exists ? describe_permissions(folder) : "does not exist yet"),
        {}};
    if (const std::string reason = find_reason_against_writing(folder); !reason.empty()) {
        Diagnostic problem = make_file_error(
            Code::FILE_UNWRITABLE, fmt::format("cannot write to the {} folder: {}", name, reason), folder);
        problem.severity = severity;
        item.problem = with_hint(problem, hint);
    }
    return item;
}

/// The cache of another user is not used, even where it could be written.
void check_owner(SetupItem& item, const std::string& folder) {
    struct stat status;
    if (item.problem || folder.empty() || stat(folder.c_str(), &status) != 0 || status.st_uid == geteuid())
        return;
    item.problem = with_hint(
        make_file_warning(Code::FILE_UNWRITABLE,
                          fmt::format("the cache folder belongs to user {} and is not used", status.st_uid),
                          folder),
        "set XDG_CACHE_HOME to a folder of this user");
}

/// The user's folder of this program below one of the desktop's.
std::string add_group(const std::string& base) {
    return base.empty() ? "" : base + GROUP;
}

/// A damaged file is not used: an error here, although commands go on without it.
void add_contents(SetupSection& section, const SessionOptions& options) {
    const LogForwarding silence({}); // what is logged is reported, too
    try {
        const UserPreferences preferences(options, PreferenceUse::READ);
        for (Diagnostic warning : preferences.get_warnings()) {
            warning.severity = Severity::ERROR;
            section.items.push_back({"contents", "", warning});
        }
    } catch (const std::exception& error) {
        section.items.push_back({"contents", "", diagnostics::describe(error)});
    }
}

/// Others could change what the user's programs do.
Problem find_open_permissions(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0 || (status.st_mode & (S_IWGRP | S_IWOTH)) == 0)
        return {};
    return with_hint(
        make_file_warning(Code::PREFERENCES_INVALID, fmt::format("other users can change '{}'", path), path),
        fmt::format("chmod go-w '{}'", path));
}

} // namespace

SetupSection examine_folders() {
    const char* temporary = std::getenv("TMPDIR");
    const std::string cache_folder = add_group(get_user_cache_folder());
    SetupItem cache = examine_folder("cache", cache_folder, Severity::WARNING,
                                     "set XDG_CACHE_HOME to a folder that can be written");
    check_owner(cache, cache_folder);
    return {"folders",
            {examine_folder("settings", add_group(get_user_config_folder()), Severity::ERROR,
                            "set XDG_CONFIG_HOME to a folder that can be written"),
             cache,
             examine_folder("temporary files", temporary && *temporary == '/' ? temporary : "/tmp",
                            Severity::WARNING, "set TMPDIR to a folder that can be written")}};
}

SetupSection examine_preferences(const SessionOptions& options) {
    SetupSection section{"preferences", {}};
    if (options.no_preferences) {
        section.items.push_back({"file", "not used", {}});
        return section;
    }
    std::string path = options.preferences_path;
    try {
        if (path.empty())
            path = get_default_preferences_path();
    } catch (const diagnostics::Failure& failure) {
        Diagnostic problem = failure.get_worst();
        problem.severity = Severity::WARNING; // programs use the defaults
        section.items.push_back({"file", "none", problem});
        return section;
    }
    const std::string permissions = describe_permissions(path);
    section.items.push_back(
        {"file",
         fmt::format("{} ({})", path,
                     permissions.empty() ? "does not exist; the defaults are used" : permissions),
         find_open_permissions(path)});
    add_contents(section, options);
    return section;
}

} // namespace workflow
