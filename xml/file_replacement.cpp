#include "xml/file_replacement.h"

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace xml {

namespace {

constexpr std::size_t BUFFER_SIZE = 64 * 1024;
constexpr int MAX_LINKS = 40;
constexpr int MAX_SIBLINGS = 1000;
constexpr mode_t NEW_FILE_MODE = 0666; // less the process's mask
constexpr mode_t OWNER_BITS = 0600;
constexpr mode_t PERMISSION_BITS = 07777;

std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

// The path behind a chain of links; its last part need not exist. False for a chain without end.
bool follow_links(std::string& path) {
    char link[PATH_MAX];
    for (int i = 0; i < MAX_LINKS; ++i) {
        const ssize_t length = readlink(path.c_str(), link, sizeof(link));
        if (length < 0)
            return errno == EINVAL || errno == ENOENT;
        const std::string next(link, static_cast<std::size_t>(length));
        path = !next.empty() && next.front() == '/' ? next : folder_of(path) + next;
    }
    return false;
}

// Makes the new name lasting too. A file system that cannot is no failure: the file itself is on it.
void sync_folder(const std::string& target) {
    const std::string folder = folder_of(target);
    const int file = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0)
        return;
    fsync(file);
    close(file);
}

} // namespace

FileReplacement::~FileReplacement() {
    if (file >= 0)
        close(file);
    if (!sibling.empty())
        unlink(sibling.c_str());
}

bool FileReplacement::open(const char* path) {
    target = path != nullptr ? path : "";
    if (target.empty() || target.back() == '/' || !follow_links(target))
        return false;
    struct stat status = {};
    if (stat(target.c_str(), &status) != 0)
        return errno == ENOENT && open_sibling(NEW_FILE_MODE);
    if (S_ISDIR(status.st_mode) || access(target.c_str(), W_OK) != 0)
        return false;
    if (S_ISREG(status.st_mode))
        return open_sibling(status.st_mode & OWNER_BITS) && take_permissions(status);
    file = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file >= 0)
        fcntl(file, F_SETFL, fcntl(file, F_GETFL) & ~O_NONBLOCK);
    return file >= 0;
}

// A short name of its own, so that the longest name a folder takes can be replaced too.
bool FileReplacement::open_sibling(mode_t mode) {
    for (int i = 0; i < MAX_SIBLINGS && file < 0; ++i) {
        sibling = folder_of(target) + ".xml-" + std::to_string(getpid()) + "-" + std::to_string(i) + ".tmp";
        file = ::open(sibling.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (file < 0 && errno != EEXIST)
            break;
    }
    if (file < 0)
        sibling.clear();
    return file >= 0;
}

// The group and owner are kept as far as this process may: a group that cannot be kept gets no rights.
bool FileReplacement::take_permissions(const struct stat& status) {
    mode_t mode = status.st_mode & PERMISSION_BITS;
    if (fchown(file, static_cast<uid_t>(-1), status.st_gid) != 0)
        mode &= ~static_cast<mode_t>(02070);
    const bool owner_kept = fchown(file, status.st_uid, static_cast<gid_t>(-1)) == 0;
    if (!owner_kept)
        mode &= ~static_cast<mode_t>(04000);
    return fchmod(file, mode) == 0;
}

void FileReplacement::write(std::string_view piece) {
    buffer.append(piece);
    if (buffer.size() >= BUFFER_SIZE)
        flush();
}

void FileReplacement::flush() {
    std::string_view rest = buffer;
    while (!rest.empty() && !has_failed) {
        const ssize_t count = ::write(file, rest.data(), rest.size());
        if (count > 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else
            has_failed = count == 0 || errno != EINTR;
    }
    buffer.clear();
}

bool FileReplacement::commit() {
    flush();
    const bool is_replacing = !sibling.empty();
    has_failed |= is_replacing && fsync(file) != 0;
    has_failed |= close(file) != 0;
    file = -1;
    if (has_failed || !is_replacing)
        return !has_failed;
    if (std::rename(sibling.c_str(), target.c_str()) != 0)
        return false;
    sibling.clear();
    sync_folder(target);
    return true;
}

} // namespace xml
