#include "standalone/sys/file_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <utility>

namespace {

constexpr size_t BUFFER_SIZE = 1 << 16;
constexpr mode_t PERMISSIONS = 0777;
constexpr mode_t NEW_FILE_MODE = 0666; // before the umask
constexpr const char* OPEN_FILES = "/proc/self/fd/";
constexpr int NAME_ATTEMPTS = 16;
constexpr size_t SIBLING_NAME_LENGTH = 200; // of the target's name; file systems allow 255 bytes in all

std::string follow_links(const std::string& path) {
    std::error_code absent;
    const std::filesystem::path file = std::filesystem::canonical(path, absent);
    return absent ? path : file.string();
}

std::string folder_of(const std::string& file) {
    const std::string folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::string make_sibling_name(const std::string& target) {
    const std::filesystem::path path(target);
    char suffix[32];
    std::random_device random;
    std::snprintf(suffix, sizeof suffix, ".%08x%08x.tmp", random(), random());
    const std::string name = "." + path.filename().string().substr(0, SIBLING_NAME_LENGTH) + suffix;
    return (path.parent_path() / name).string();
}

// A rename is only durable once its folder is on the disk; a file system that cannot do that does its best.
void flush_folder(const std::string& file) {
    const Descriptor descriptor(open(folder_of(file).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.is_open())
        fsync(descriptor.get());
}

} // namespace

FileReplacement::FileReplacement(const std::string& path, std::optional<mode_t> mode)
    : target(follow_links(path)) {
    if (!open_target(mode))
        fail();
}

FileReplacement::~FileReplacement() {
    abandon();
}

bool FileReplacement::open_target(std::optional<mode_t> mode) {
    struct stat old;
    if (stat(target.c_str(), &old) != 0)
        return errno == ENOENT && !target.empty() && open_new(mode);
    // A rename would not mind that the file is write-protected, its owner would.
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return false;
    if (S_ISREG(old.st_mode)) {
        if (!open_new(mode ? mode : old.st_mode & PERMISSIONS))
            return false;
        // Only a privileged process can give files away; for others the file is theirs already.
        return fchown(descriptor.get(), old.st_uid, old.st_gid) == 0 || errno == EPERM;
    }
    descriptor = Descriptor(open(target.c_str(), O_WRONLY | O_CLOEXEC));
    return is_open();
}

bool FileReplacement::open_new(std::optional<mode_t> mode) {
    const mode_t created_mode = mode ? *mode & 0600 : NEW_FILE_MODE;
    in_place = false;
    return (open_nameless(created_mode) || open_sibling(created_mode)) &&
           (!mode || fchmod(descriptor.get(), *mode) == 0);
}

// A file without a name vanishes with the process, even a killed one. Not every file system has them, and
// only /proc can name them later.
bool FileReplacement::open_nameless(mode_t mode) {
    if (access(OPEN_FILES, X_OK) == 0)
        descriptor = Descriptor(open(folder_of(target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, mode));
    return is_open();
}

bool FileReplacement::open_sibling(mode_t mode) {
    return make_sibling([&](const std::string& name) {
        descriptor =
            Descriptor(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode));
        return is_open();
    });
}

bool FileReplacement::name_sibling() {
    const std::string open_file = OPEN_FILES + std::to_string(descriptor.get());
    return make_sibling([&](const std::string& name) {
        return linkat(AT_FDCWD, open_file.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    });
}

// Has `make` make the sibling, which fails with EEXIST when the name is taken.
bool FileReplacement::make_sibling(const std::function<bool(const std::string&)>& make) {
    for (int attempt = 0; attempt < NAME_ATTEMPTS; ++attempt) {
        const std::string name = make_sibling_name(target);
        if (make(name)) {
            sibling = name;
            return true;
        }
        if (errno != EEXIST)
            break;
    }
    return false;
}

bool FileReplacement::write(std::string_view bytes) {
    if (!is_open())
        return false;
    if (buffer.size() + bytes.size() < BUFFER_SIZE) {
        buffer.append(bytes);
        return true;
    }
    return (write_out(std::exchange(buffer, {})) && write_out(bytes)) || fail();
}

bool FileReplacement::write_out(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor.get(), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(written < 0 ? 0 : static_cast<size_t>(written));
    }
    return true;
}

bool FileReplacement::commit() {
    if (!is_open())
        return false;
    if (!write_out(std::exchange(buffer, {})) || !flush_to_disk())
        return fail();
    if (!in_place && sibling.empty() && !name_sibling())
        return fail();
    // Some file systems report a full disk only here.
    if (!descriptor.close())
        return fail();
    if (in_place)
        return true;
    if (std::rename(sibling.c_str(), target.c_str()) != 0)
        return fail();
    sibling.clear();
    flush_folder(target);
    return true;
}

// EINVAL: a device, a pipe, or a file system that has nothing to flush.
bool FileReplacement::flush_to_disk() {
    return fsync(descriptor.get()) == 0 || errno == EINVAL || errno == EROFS || errno == ENOTSUP;
}

bool FileReplacement::fail() {
    error = std::strerror(errno);
    abandon();
    return false;
}

void FileReplacement::abandon() {
    descriptor = Descriptor();
    if (!sibling.empty())
        unlink(sibling.c_str());
    sibling.clear();
    buffer.clear();
}
