#include <csignal>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "files/interrupt_cleanup.h"
#include "image/reader_server.h"
#include "tool/program.h"

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

/// A failure is only a warning: the tool works without the cleanup.
void watch_for_interrupts(std::optional<files::InterruptCleanup>& cleanup) {
    try {
        cleanup.emplace();
    } catch (const std::exception& error) {
        std::cerr << "colorio: warning: an interrupt may leave temporary files: " << error.what()
                  << std::endl;
    }
}

int run_program(int count, char* arguments[]) {
    std::optional<files::InterruptCleanup> cleanup;
    watch_for_interrupts(cleanup);
    return tool::run({arguments + 1, arguments + count}, std::cout, std::cerr, tool::detect_console_traits());
}

} // namespace

int main(int count, char* arguments[]) {
    fill_standard_descriptors();
    image::start_reader_server();  // first, while there are no threads
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe is an error like a full disk
    std::signal(SIGXFSZ, SIG_IGN); // so is a file beyond the limit on file sizes
    try {
        return run_program(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "colorio: error: %s\n", error.what());
    } catch (...) {
        std::fputs("colorio: error: unknown exception\n", stderr);
    }
    return EXIT_FAILURE;
}
