#include "standalone/sys/user_folders.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <vector>

#include "files/descriptor.h"
#include "host/sys/sys_env.h"

namespace {

using files::Descriptor;

constexpr mode_t PRIVATE = 0700;
constexpr mode_t PERMISSIONS = 07777;

bool is_absolute(const CoreString& path) {
    return path.start_with("/");
}

std::string get_home() {
    const CoreString home = sys_get_env("HOME");
    if (is_absolute(home))
        return home.get_data();
    std::vector<char> texts(1 << 14);
    passwd entry;
    passwd* found = nullptr;
    getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found);
    return found && is_absolute(entry.pw_dir) ? entry.pw_dir : "";
}

std::string get_base_folder(const char* variable, const char* below_home) {
    const CoreString folder = sys_get_env(variable);
    if (is_absolute(folder))
        return folder.get_data();
    const std::string home = get_home();
    return home.empty() ? home : home + below_home;
}

std::string system_reason() {
    return std::strerror(errno);
}

// Empty when there is a folder at `path`, through links; else why there is none.
std::string why_no_folder(const std::string& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0)
        return system_reason();
    return S_ISDIR(status.st_mode) ? "" : std::strerror(ENOTDIR);
}

// Opens the folder `name` in the open folder `parent` after making it when it is missing. Empty on success.
std::string open_private(const Descriptor& parent, const std::string& name, Descriptor& folder) {
    struct stat status;
    if (fstat(parent.get(), &status) != 0)
        return system_reason();
    if (status.st_mode & S_IWOTH)
        return "every user may write in the folder of '" + name + "'";
    if (mkdirat(parent.get(), name.c_str(), PRIVATE) != 0 && errno != EEXIST)
        return system_reason();
    folder = Descriptor(openat(parent.get(), name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.is_open() || fstat(folder.get(), &status) != 0)
        return errno == ELOOP || errno == ENOTDIR ? "'" + name + "' is a link or a file" : system_reason();
    if (status.st_uid != geteuid())
        return "'" + name + "' belongs to another user";
    if ((status.st_mode & PERMISSIONS) != PRIVATE && fchmod(folder.get(), PRIVATE) != 0)
        return system_reason();
    return {};
}

} // namespace

std::string get_user_cache_folder() {
    return get_base_folder("XDG_CACHE_HOME", "/.cache");
}

std::string get_user_config_folder() {
    return get_base_folder("XDG_CONFIG_HOME", "/.config");
}

std::string make_folders(const std::string& path) {
    std::string made;
    for (const std::filesystem::path& part : std::filesystem::path(path)) {
        made = (std::filesystem::path(made) / part).string();
        if (mkdir(made.c_str(), PRIVATE) == 0 || errno == EEXIST)
            continue;
        const int reason = errno; // Above a folder that may not be written to, only this says why.
        if (!why_no_folder(made).empty())
            return std::strerror(reason);
    }
    return why_no_folder(path);
}

std::string make_private_folder(const std::string& base, const std::string& group, const std::string& name) {
    std::string reason = make_folders(base);
    if (!reason.empty())
        return reason;
    const files::Descriptor base_folder(open(base.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!base_folder.is_open())
        return system_reason();
    files::Descriptor group_folder, folder;
    reason = open_private(base_folder, group, group_folder);
    return reason.empty() ? open_private(group_folder, name, folder) : reason;
}
