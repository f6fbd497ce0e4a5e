#pragma once

#include <stdexcept>
#include <string>

namespace tool {

/// What the program tells its caller.
enum ExitCode : int { EXIT_CODE_DONE = 0, EXIT_CODE_FAILED = 1, EXIT_CODE_WRONG_USAGE = 2 };

/// Ends a command: one message for the user, and the exit code.
class CommandError : public std::runtime_error {
public:
    explicit CommandError(const std::string& message, ExitCode code = EXIT_CODE_FAILED)
        : std::runtime_error(message), code(code) {}

    ExitCode get_code() const { return code; }

private:
    ExitCode code;
};

/// A command line that cannot be meant.
class UsageError : public CommandError {
public:
    explicit UsageError(const std::string& message) : CommandError(message, EXIT_CODE_WRONG_USAGE) {}
};

} // namespace tool
