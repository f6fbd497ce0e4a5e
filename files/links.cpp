#include "files/links.h"

#include <unistd.h>

#include <cerrno>
#include <climits>

#include "files/retry.h"

namespace files {

namespace {

constexpr int MAX_LINKS = 40; // as the system's own limit

// With the '/' at its end; empty for a path without one.
std::string get_folder_prefix(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

} // namespace

Result<std::string> follow_links(const std::string& path) {
    std::string target = path;
    char link[PATH_MAX];
    for (int i = 0; i <= MAX_LINKS; ++i) {
        const ssize_t length = retry([&] { return readlink(target.c_str(), link, sizeof link); });
        if (length < 0 && (errno == EINVAL || errno == ENOENT))
            return target; // not a link, or nothing at all
        if (length < 0)
            return make_failure(path, Operation::WRITE, errno);
        const std::string next(link, static_cast<std::size_t>(length));
        target = next.front() == '/' ? next : get_folder_prefix(target) + next;
    }
    return make_failure(path, Operation::WRITE, ELOOP);
}

std::string get_folder(const std::string& path) {
    const std::string prefix = get_folder_prefix(path);
    return prefix.empty() ? "." : prefix == "/" ? prefix : prefix.substr(0, prefix.size() - 1);
}

} // namespace files
