#include "files/interrupt_cleanup.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iterator>
#include <string>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include "diagnostics/failure.h"
#include "files/leftovers.h"

namespace files {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

/// Carries the number of a signal to the thread that cleans up, because a handler must not take locks. 0 ends
/// the thread.
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
        return; // the destructor asks for the end
    remove_temporary_files();
    std::signal(number, SIG_DFL);
    kill(getpid(), number);
    for (;;)
        pause();
}

} // namespace

InterruptCleanup::InterruptCleanup() {
    if (pipe2(interrupt_pipe, O_CLOEXEC) != 0)
        diagnostics::fail(diagnostics::Code::SYSTEM_FAILURE,
                          std::string("cannot watch for interrupts: ") + std::strerror(errno));
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

} // namespace files
