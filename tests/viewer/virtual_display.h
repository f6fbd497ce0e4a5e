#pragma once

#include <string>

#include <sys/types.h>

/// An X server without a screen (Xvfb) that runs until the end of the scope.
class VirtualDisplay {
public:
    /// Waits until the server takes connections.
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    static bool is_installed();
    /// Value of DISPLAY; empty when the server did not start.
    const std::string& get_name() const { return name; }

private:
    pid_t server = -1;
    std::string name;
};
