#include "workflow/program_output.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "files/descriptor.h"

namespace workflow {

namespace {

using Clock = std::chrono::steady_clock;
using files::Descriptor;

[[noreturn]] void fail(const std::string& what, const std::string& reason) {
    diagnostics::fail(diagnostics::Code::SYSTEM_FAILURE, fmt::format("{}: {}", what, reason));
}

/// Starts the program with its output to `output`.
pid_t start(const std::string& program, const std::vector<std::string>& arguments, int output) {
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> line;
    for (std::string& word : words)
        line.push_back(word.data());
    line.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDERR_FILENO);
    pid_t child = -1;
    const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, line.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        fail(fmt::format("cannot run '{}'", program), std::strerror(error));
    return child;
}

/// Adds what comes through the pipe until its end. False after `deadline`.
bool read_until(int pipe, Clock::time_point deadline, std::string& text) {
    for (;;) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd wait = {pipe, POLLIN, 0};
        if (poll(&wait, 1, static_cast<int>(left)) <= 0)
            continue;
        char piece[4096];
        const ssize_t count = read(pipe, piece, sizeof piece);
        if (count > 0)
            text.append(piece, static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return true;
    }
}

/// The last line that is not empty, which says why a program failed.
std::string find_last_line(const std::string& text) {
    const std::size_t end = text.find_last_not_of("\n ");
    if (end == std::string::npos)
        return "";
    const std::size_t start = text.rfind('\n', end);
    return text.substr(start == std::string::npos ? 0 : start + 1,
                       end - (start == std::string::npos ? -1 : start));
}

/// Throws unless the program ended well.
void check_end(const std::string& program, int status, const std::string& text) {
    if (WIFSIGNALED(status))
        fail(fmt::format("'{}' crashed", program), strsignal(WTERMSIG(status)));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        fail(fmt::format("'{}' failed", program), find_last_line(text));
}

} // namespace

std::string read_program_output(const std::string& program, const std::vector<std::string>& arguments,
                                std::chrono::milliseconds patience) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        fail(fmt::format("cannot run '{}'", program), std::strerror(errno));
    const Descriptor output(ends[0]);
    pid_t child = -1;
    {
        const Descriptor input(ends[1]);
        child = start(program, arguments, input.get());
    }
    std::string text;
    const bool has_ended = read_until(output.get(), Clock::now() + patience, text);
    if (!has_ended)
        kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!has_ended)
        fail(fmt::format("'{}' was ended", program),
             fmt::format("no answer within {} s", patience.count() / 1000));
    check_end(program, status, text);
    return text;
}

} // namespace workflow
