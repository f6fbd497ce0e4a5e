#include "files/replacement.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "diagnostics/file_failure.h"
#include "files/leftovers.h"
#include "files/links.h"
#include "files/retry.h"
#include "files/temporary_name.h"

namespace files {

namespace {

constexpr std::size_t BUFFER_SIZE = 1 << 16;
constexpr mode_t PERMISSIONS = 0777; // setuid, setgid and the sticky bit are not among them
constexpr mode_t GROUP_PERMISSIONS = 0070;
constexpr mode_t NEW_FILE_MODE = 0666; // before the umask
constexpr mode_t UNFINISHED_MODE = 0600;
constexpr const char* OPEN_FILES = "/proc/self/fd/";
constexpr int NAME_ATTEMPTS = 16;
constexpr std::size_t MAX_EXTENSION = 32; // formats have shorter ones, and names are limited to 255 bytes

std::string get_extension(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    const std::size_t dot = name.rfind('.');
    const bool is_usable = dot != std::string::npos && dot > 0 && name.size() - dot <= MAX_EXTENSION;
    return is_usable ? name.substr(dot) : "";
}

// A file system without flushing is not a failure.
bool flush(const Descriptor& file) {
    return retry([&] { return fsync(file.get()); }) == 0 || errno == EINVAL || errno == EROFS ||
           errno == ENOTSUP;
}

bool knows_no_unnamed_files(int error_number) {
    return error_number == EOPNOTSUPP || error_number == EISDIR || error_number == EINVAL;
}

} // namespace

Replacement::Replacement(const std::string& path, const ReplacementRules& rules) : path(path) {
    if (!open_target(rules))
        fail();
}

Replacement::~Replacement() {
    abandon();
}

bool Replacement::open_target(const ReplacementRules& rules) {
    auto followed = follow_links(path);
    if (!followed) {
        failure = followed.get_failure();
        return false;
    }
    target = std::move(*followed);
    struct stat old;
    if (retry([&] { return stat(target.c_str(), &old); }) != 0) {
        if (errno != ENOENT || target.empty())
            return false;
        if (target.back() == '/')
            return refuse(EISDIR, "it names a folder");
        mode = rules.mode;
        return open_folder() && open_new(rules.has_path, mode ? UNFINISHED_MODE : NEW_FILE_MODE);
    }
    if (S_ISDIR(old.st_mode)) {
        errno = EISDIR;
        return false;
    }
    const bool is_regular = S_ISREG(old.st_mode);
    if (!is_regular && !rules.writes_special_files)
        return refuse(0, diagnostics::NOT_A_REGULAR_FILE);
    // A rename would replace a write-protected file, against its owner's intention.
    if (retry([&] { return faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS); }) != 0)
        return false;
    if (!is_regular)
        return open_in_place();
    mode = rules.mode ? *rules.mode : old.st_mode & PERMISSIONS;
    owner = Owner{old.st_uid, old.st_gid};
    return open_folder() && open_new(rules.has_path, UNFINISHED_MODE);
}

// A pipe without a reader must not block the caller, so it is opened without waiting; writing waits.
bool Replacement::open_in_place() {
    in_place = true;
    descriptor =
        Descriptor(retry([&] { return open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    return is_open() && fcntl(descriptor.get(), F_SETFL, 0) == 0;
}

// Opened in advance, since after the rename it is too late to fail. Without read permission the folder cannot
// be flushed, but its files can be replaced.
bool Replacement::open_folder() {
    const std::string name = get_folder(target);
    folder = Descriptor(retry([&] { return open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    if (folder.is_open())
        remove_leftovers(name);
    else if (errno == ENOENT)
        return refuse(ENOENT, diagnostics::NO_SUCH_FOLDER);
    return folder.is_open() || errno == EACCES;
}

bool Replacement::open_new(bool has_path, mode_t new_mode) {
    if (!has_path && open_unnamed(new_mode))
        return true;
    return (has_path || knows_no_unnamed_files(errno)) && open_named(new_mode);
}

// A file without a name disappears with the process, even a killed one. Not every file system supports them,
// and only /proc can name them later.
bool Replacement::open_unnamed(mode_t new_mode) {
    if (access(OPEN_FILES, X_OK) != 0) {
        errno = EOPNOTSUPP;
        return false;
    }
    descriptor = Descriptor(
        retry([&] { return open(get_folder(target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, new_mode); }));
    return is_open() && lock_temporary();
}

bool Replacement::open_named(mode_t new_mode) {
    for (int attempt = 0; attempt < NAME_ATTEMPTS; ++attempt) {
        const bool is_made = make_named([&](const char* name) {
            constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
            descriptor = Descriptor(retry([&] { return open(name, FLAGS, new_mode); }));
            return is_open();
        });
        if (!is_made)
            return false;
        if (lock_temporary())
            return true;
        abandon();
    }
    return refuse(0, "its temporary file was removed by another process");
}

bool Replacement::name_unnamed() {
    const std::string open_file = OPEN_FILES + std::to_string(descriptor.get());
    return make_named([&](const char* name) {
        return retry([&] {
                   return linkat(AT_FDCWD, open_file.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW);
               }) == 0;
    });
}

// Has `make` give the new file a name, which fails with EEXIST when the name is taken.
template <class Make>
bool Replacement::make_named(const Make& make) {
    const std::string prefix = target.substr(0, target.rfind('/') + 1);
    for (int attempt = 0; attempt < NAME_ATTEMPTS; ++attempt) {
        const std::string name = prefix + make_temporary_name(get_extension(target));
        if (make_temporary_file(name, [&] { return make(name.c_str()); })) {
            temporary = name;
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return false;
}

// The lock marks the file as in use. False when another process removed it as a leftover before it was
// locked. Without locks leftovers are not removed.
bool Replacement::lock_temporary() {
    struct stat status;
    if (retry([&] { return flock(descriptor.get(), LOCK_EX); }) != 0 || temporary.empty())
        return true;
    return retry([&] { return fstat(descriptor.get(), &status); }) != 0 || status.st_nlink > 0;
}

bool Replacement::write(std::string_view bytes) {
    if (!is_open())
        return false;
    if (buffer.size() + bytes.size() < BUFFER_SIZE) {
        buffer.append(bytes);
        return true;
    }
    return (write_out(std::exchange(buffer, {})) && write_out(bytes)) || fail();
}

bool Replacement::write_out(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = retry([&] { return ::write(descriptor.get(), bytes.data(), bytes.size()); });
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool Replacement::commit() {
    if (!is_open())
        return false;
    if (!write_out(std::exchange(buffer, {})) || !set_permissions() || !flush(descriptor))
        return fail();
    if (in_place)
        return descriptor.close() || fail();
    if (temporary.empty() && !name_unnamed())
        return fail();
    return take_place();
}

// Only a privileged process can give files away; for others the file is theirs already.
bool Replacement::set_permissions() {
    if (owner && retry([&] { return fchown(descriptor.get(), -1, owner->group); }) != 0) {
        if (errno != EPERM)
            return false;
        mode = *mode & ~GROUP_PERMISSIONS;
    }
    if (owner && retry([&] { return fchown(descriptor.get(), owner->user, -1); }) != 0 && errno != EPERM)
        return false;
    return !mode || retry([&] { return fchmod(descriptor.get(), *mode); }) == 0;
}

// The descriptor stays open, and the file with it locked, until it has its final name.
bool Replacement::take_place() {
    if (retry([&] { return std::rename(temporary.c_str(), target.c_str()); }) != 0)
        return fail();
    forget_temporary_file(std::exchange(temporary, {}));
    descriptor = Descriptor();
    if (!folder.is_open() || flush(folder))
        return true;
    failure = make_failure(path, Operation::WRITE, errno);
    failure->reason =
        "the new file is in place, but its folder could not be flushed to disk: " + failure->reason;
    return false;
}

bool Replacement::fail() {
    if (!failure)
        failure = make_failure(path, Operation::WRITE, errno);
    abandon();
    return false;
}

bool Replacement::refuse(int error_number, const std::string& reason) {
    failure = Failure{path, Operation::WRITE, error_number, reason};
    return false;
}

void Replacement::abandon() {
    descriptor = Descriptor();
    if (!temporary.empty()) {
        retry([&] { return unlink(temporary.c_str()); });
        forget_temporary_file(std::exchange(temporary, {}));
    }
    buffer.clear();
}

} // namespace files
