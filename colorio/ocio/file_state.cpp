#include "colorio/ocio/file_state.h"

#include <sys/stat.h>

#include <chrono>
#include <tuple>

#include "colorio/ocio/error.h"
#include "colorio/ocio/types.h"
#include "diagnostics/file_failure.h"

namespace ocio {

namespace {

using Clock = std::chrono::system_clock;

/// File systems take the time of a change from a clock that ticks every few milliseconds.
constexpr std::chrono::milliseconds CLOCK_TICK{50};

auto identity_of(const FileState& state) {
    return std::tie(state.device, state.inode, state.size, state.seconds, state.nanoseconds);
}

} // namespace

std::optional<FileState> file_state(const std::string& path) {
    struct stat info {};
    if (stat(path.c_str(), &info) != 0)
        return std::nullopt;
    if (!S_ISREG(info.st_mode))
        throw Error(diagnostics::make_read_error(diagnostics::Code::FILE_NOT_REGULAR, path,
                                                 diagnostics::NOT_A_REGULAR_FILE));
    const auto age = Clock::now() - Clock::from_time_t(info.st_mtim.tv_sec) -
                     std::chrono::nanoseconds(info.st_mtim.tv_nsec);
    return FileState{info.st_dev,         info.st_ino,          info.st_size,
                     info.st_mtim.tv_sec, info.st_mtim.tv_nsec, age > CLOCK_TICK};
}

bool is_unchanged(const FileState& before, const std::optional<FileState>& now) {
    return before.settled && now && identity_of(before) == identity_of(*now);
}

} // namespace ocio
