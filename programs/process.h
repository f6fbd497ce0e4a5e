#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "files/interrupt_cleanup.h"

namespace tool {

/// The body of `main`: prepares the process, calls `work`, and returns its exit code; an exception is
/// reported and means EXIT_FAILURE.
int run_process(const std::function<int()>& work);

/// The arguments without the name of the program.
std::vector<std::string> get_arguments(int count, char* arguments[]);

/// During its lifetime an interrupt removes temporary files. A failure to do so is only a warning: the tool
/// works without the cleanup.
class InterruptWatch {
public:
    InterruptWatch();
    /// Prints the warning, if there is one.
    void warn() const;

private:
    std::optional<files::InterruptCleanup> cleanup;
    std::string warning;
};

} // namespace tool
