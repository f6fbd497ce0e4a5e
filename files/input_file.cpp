#include "files/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "diagnostics/file_failure.h"
#include "files/retry.h"

namespace files {

namespace {

constexpr std::size_t STEP = 1 << 16;

std::optional<Failure> check_kind(const std::string& path, const struct stat& status) {
    if (S_ISREG(status.st_mode))
        return std::nullopt;
    if (S_ISDIR(status.st_mode))
        return make_failure(path, Operation::READ, EISDIR);
    return make_refusal(path, Operation::READ, diagnostics::NOT_A_REGULAR_FILE);
}

} // namespace

// Merely opening a pipe or a device has side effects, so the type is checked before opening, and again on the
// open file in case it was replaced in between.
Result<Descriptor> open_for_reading(const std::string& path) {
    struct stat status;
    if (retry([&] { return stat(path.c_str(), &status); }) != 0)
        return make_failure(path, Operation::READ, errno);
    if (auto failure = check_kind(path, status))
        return *failure;
    Descriptor file(retry([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    if (!file.is_open() || retry([&] { return fstat(file.get(), &status); }) != 0)
        return make_failure(path, Operation::READ, errno);
    if (auto failure = check_kind(path, status))
        return *failure;
    return file;
}

ssize_t read_some(const Descriptor& file, void* bytes, std::size_t size) {
    return retry([&] { return ::read(file.get(), bytes, size); });
}

InputFile::InputFile(const std::string& path) : path(path) {
    auto opened = open_for_reading(path);
    if (opened)
        descriptor = std::move(*opened);
    else
        failure = opened.get_failure();
}

bool InputFile::read(std::size_t count, std::string& bytes) {
    while (count > 0) {
        const std::size_t old_size = bytes.size();
        const std::size_t step = std::min(count, STEP);
        bytes.resize(old_size + step);
        const ssize_t taken = read_some(descriptor, &bytes[old_size], step);
        bytes.resize(old_size + static_cast<std::size_t>(std::max<ssize_t>(taken, 0)));
        if (taken < 0) {
            failure = make_failure(path, Operation::READ, errno);
            return false;
        }
        if (taken == 0)
            return true;
        count -= static_cast<std::size_t>(taken);
    }
    return true;
}

Result<std::string> read_whole(const std::string& path, std::size_t max_size) {
    InputFile file(path);
    std::string text;
    if (!file.is_open() || !file.read(max_size + 1, text))
        return *file.get_failure();
    if (text.size() > max_size)
        return Failure{path, Operation::READ, EFBIG, "longer than " + std::to_string(max_size) + " bytes"};
    return text;
}

} // namespace files
