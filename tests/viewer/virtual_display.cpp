#include "tests/viewer/virtual_display.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

bool VirtualDisplay::is_installed() {
    return std::system("command -v Xvfb > /dev/null") == 0;
}

VirtualDisplay::VirtualDisplay() {
    int ends[2];
    if (pipe(ends) != 0)
        return;
    server = fork();
    if (server == 0) {
        close(ends[0]);
        const int nothing = open("/dev/null", O_WRONLY);
        dup2(nothing, STDERR_FILENO);
        const std::string descriptor = std::to_string(ends[1]);
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "1024x768x24", "-nolisten",
               "tcp", nullptr);
        _exit(127);
    }
    close(ends[1]);
    // The server writes its number and a line end when it is ready, and closes the pipe when it fails.
    std::string number;
    for (char letter; read(ends[0], &letter, 1) == 1 && letter != '\n';)
        number += letter;
    close(ends[0]);
    if (!number.empty())
        name = ":" + number;
}

VirtualDisplay::~VirtualDisplay() {
    if (server <= 0)
        return;
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
}
