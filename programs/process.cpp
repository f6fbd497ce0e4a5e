#include "programs/process.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <fcntl.h>
#include <unistd.h>

namespace tool {

namespace {

/// If the caller closed standard input, output or error, the next opened file would take that descriptor and
/// receive what is printed.
void fill_standard_descriptors() {
    for (int descriptor; (descriptor = open("/dev/null", O_RDONLY)) >= 0;)
        if (descriptor > STDERR_FILENO) {
            close(descriptor);
            return;
        }
}

} // namespace

int run_process(const std::function<int()>& work) {
    fill_standard_descriptors();
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe is an error like a full disk
    std::signal(SIGXFSZ, SIG_IGN); // so is a file beyond the limit on file sizes
    try {
        return work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "colorio: error: %s\n", error.what());
    } catch (...) {
        std::fputs("colorio: error: unknown exception\n", stderr);
    }
    return EXIT_FAILURE;
}

std::vector<std::string> get_arguments(int count, char* arguments[]) {
    return {arguments + (count > 0 ? 1 : 0), arguments + count};
}

InterruptWatch::InterruptWatch() {
    try {
        cleanup.emplace();
    } catch (const std::exception& error) {
        warning = error.what();
    }
}

void InterruptWatch::warn() const {
    if (!warning.empty())
        std::fprintf(stderr, "colorio: warning: an interrupt may leave temporary files: %s\n",
                     warning.c_str());
}

} // namespace tool
