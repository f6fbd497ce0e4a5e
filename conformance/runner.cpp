#include "conformance/runner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace conformance {

namespace {

constexpr unsigned int TIME_LIMIT = 20; // seconds; checks take milliseconds
constexpr int ENDED = 0;
constexpr int CANNOT_RUN = 99;

// In the child: writes each finding, or the obstacle, with a NUL behind it.
[[noreturn]] void report_and_end(const Check& check, int pipe_end) {
    alarm(TIME_LIMIT);
    const Outcome outcome = run_here(check);
    std::string text = outcome.obstacle;
    for (const std::string& finding : outcome.findings)
        text.append(finding).append(1, '\0');
    const char* next = text.data();
    for (size_t left = text.size(); left > 0;) {
        const ssize_t written = write(pipe_end, next, left);
        if (written <= 0)
            _exit(CANNOT_RUN);
        next += written;
        left -= static_cast<size_t>(written);
    }
    _exit(outcome.obstacle.empty() ? ENDED : CANNOT_RUN);
}

std::string read_all(int pipe_end) {
    std::string text;
    char block[4096];
    for (;;) {
        const ssize_t count = read(pipe_end, block, sizeof block);
        if (count > 0)
            text.append(block, static_cast<size_t>(count));
        else if (count == 0 || errno != EINTR)
            return text;
    }
}

std::string describe_end(int status) {
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM)
        return "the check did not end within " + std::to_string(TIME_LIMIT) + " s";
    if (WIFSIGNALED(status))
        return std::string("the check crashed: ") + strsignal(WTERMSIG(status));
    return "the check ended the process with exit status " + std::to_string(WEXITSTATUS(status));
}

Outcome to_outcome(int status, const std::string& text) {
    Outcome outcome;
    if (WIFEXITED(status) && WEXITSTATUS(status) == CANNOT_RUN) {
        outcome.obstacle = text.empty() ? "its result cannot be sent" : text;
        return outcome;
    }
    for (size_t begin = 0, end; (end = text.find('\0', begin)) != std::string::npos; begin = end + 1)
        outcome.findings.push_back(text.substr(begin, end - begin));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != ENDED)
        outcome.findings.push_back(describe_end(status));
    return outcome;
}

Outcome fail(const char* call) {
    return {{}, std::string(call) + ": " + strerror(errno)};
}

} // namespace

Checks list_all_checks() {
    Checks all;
    for (const auto& list : {list_string_checks, list_string_number_checks, list_container_checks,
                             list_log_checks, list_class_checks, list_event_checks, list_event_change_checks,
                             list_enumeration_checks, list_enumeration_sleep_checks, list_parser_checks,
                             list_file_checks, list_app_checks, list_thread_checks})
        for (const Check& check : list())
            all.push_back(check);
    return all;
}

Outcome run_here(const Check& check) {
    Findings findings;
    try {
        check.run(findings);
    } catch (const CannotRun& obstacle) {
        return {{}, obstacle.what()};
    } catch (const std::exception& exception) {
        findings.expect(false, std::string("an exception was thrown: ") + exception.what());
    } catch (...) {
        findings.expect(false, "an exception was thrown");
    }
    return {findings.get_lines(), {}};
}

Outcome run_apart(const Check& check) {
    int ends[2];
    if (pipe(ends) != 0)
        return fail("pipe");
    std::fflush(stdout); // Otherwise the child would hold a copy of what is buffered.
    const pid_t child = fork();
    if (child < 0)
        return fail("fork");
    if (child == 0) {
        close(ends[0]);
        report_and_end(check, ends[1]);
    }
    close(ends[1]);
    const std::string text = read_all(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR)
            return fail("waitpid");
    return to_outcome(status, text);
}

} // namespace conformance
