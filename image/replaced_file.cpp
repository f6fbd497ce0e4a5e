#include "image/replaced_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tool/exit_code.h"

namespace tool {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

/// The temporary files of this process. Files are made and removed under the lock, so that whoever holds it
/// sees all of them.
struct TemporaryFiles {
    std::mutex mutex;
    std::set<std::string> paths;

    void remove_all() {
        for (const std::string& path : paths)
            unlink(path.c_str());
        paths.clear();
    }
};

TemporaryFiles& get_temporary_files() {
    static TemporaryFiles files;
    return files;
}

/// Writes the signal's number to the thread that cleans up: a handler must not take locks.
int interrupt_pipe[2] = {-1, -1};

void hand_on_signal(int number) {
    const int saved_errno = errno;
    const auto byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const auto written = write(interrupt_pipe[1], &byte, 1);
    errno = saved_errno;
}

struct InterruptState {
    std::thread thread;
    struct sigaction old_actions[std::size(SIGNALS)];
};

InterruptState& get_interrupt_state() {
    static InterruptState state;
    return state;
}

void wait_for_interrupt() {
    unsigned char number = 0;
    while (read(interrupt_pipe[0], &number, 1) < 0 && errno == EINTR) {
    }
    if (number == 0)
        return;                                                     // the end of the watch
    std::unique_lock<std::mutex> lock(get_temporary_files().mutex); // never released: no new files
    get_temporary_files().remove_all();
    std::signal(number, SIG_DFL);
    kill(getpid(), number);
    for (;;)
        pause();
}

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw CommandError(fmt::format("cannot write '{}': {}", path, reason));
}

/// Permissions of the file in the place, or those of a new file.
mode_t get_mode(const std::string& target) {
    struct stat status;
    return stat(target.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

std::string make_temporary_name(const std::filesystem::path& target) {
    static std::atomic<unsigned int> counter{0};
    return (target.parent_path() /
            fmt::format(".colorio-{}-{}{}", getpid(), counter++, target.extension().string()))
        .string();
}

} // namespace

ReplacedFile::ReplacedFile(const std::string& path) : path(path) {
    std::error_code error;
    std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    if (error)
        resolved = path;
    target = resolved.string();
    const std::filesystem::file_status status = std::filesystem::status(resolved, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        fail(path, "something other than a file has that name");
    temporary = make_temporary_name(resolved);

    TemporaryFiles& files = get_temporary_files();
    std::lock_guard<std::mutex> lock(files.mutex);
    const int descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        fail(path, errno == ENOENT ? "there is no such folder" : std::strerror(errno));
    files.paths.insert(temporary);
    if (const mode_t mode = get_mode(target); mode != 0)
        fchmod(descriptor, mode);
    ::close(descriptor);
}

ReplacedFile::~ReplacedFile() {
    if (committed)
        return;
    TemporaryFiles& files = get_temporary_files();
    std::lock_guard<std::mutex> lock(files.mutex);
    unlink(temporary.c_str());
    files.paths.erase(temporary);
}

void ReplacedFile::commit() {
    TemporaryFiles& files = get_temporary_files();
    std::lock_guard<std::mutex> lock(files.mutex);
    if (rename(temporary.c_str(), target.c_str()) != 0)
        fail(path, std::strerror(errno));
    files.paths.erase(temporary);
    committed = true;
}

InterruptCleanup::InterruptCleanup() {
    if (pipe2(interrupt_pipe, O_CLOEXEC) != 0)
        throw CommandError(fmt::format("cannot watch for interrupts: {}", std::strerror(errno)));
    InterruptState& state = get_interrupt_state();
    state.thread = std::thread(wait_for_interrupt);
    struct sigaction action = {};
    action.sa_handler = hand_on_signal;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < std::size(SIGNALS); ++i) {
        sigaction(SIGNALS[i], nullptr, &state.old_actions[i]);
        if (state.old_actions[i].sa_handler != SIG_IGN) // nohup stays in force
            sigaction(SIGNALS[i], &action, nullptr);
    }
}

InterruptCleanup::~InterruptCleanup() {
    InterruptState& state = get_interrupt_state();
    for (std::size_t i = 0; i < std::size(SIGNALS); ++i)
        sigaction(SIGNALS[i], &state.old_actions[i], nullptr);
    hand_on_signal(0);
    state.thread.join();
    for (int& end : interrupt_pipe) {
        ::close(end);
        end = -1;
    }
}

} // namespace tool
