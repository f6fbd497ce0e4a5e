#pragma once

#include <string>
#include <utility>

#include "diagnostics/failure.h"

namespace tool {

/// Exit codes of the tool.
enum ExitCode : int {
    EXIT_CODE_DONE = 0,
    EXIT_CODE_FAILED = 1,
    EXIT_CODE_WRONG_USAGE = 2,
    EXIT_CODE_NOT_HERE =
        -1 ///< Nothing was done: the command is part of another program (programs/image_program.h).
};

/// An invalid command line.
class UsageError : public diagnostics::Failure {
public:
    explicit UsageError(std::string message, std::string hint = {})
        : Failure(with_hint(diagnostics::make_error(diagnostics::Code::USAGE, std::move(message)),
                            std::move(hint))) {}
};

/// The exit code for a failure: its worst diagnostic decides.
inline ExitCode get_exit_code(const diagnostics::Failure& failure) {
    return failure.get_worst().code == diagnostics::Code::USAGE ? EXIT_CODE_WRONG_USAGE : EXIT_CODE_FAILED;
}

} // namespace tool
