#pragma once

namespace tool {

/// While it lives, an interrupt (SIGINT, SIGTERM, SIGHUP) first removes every temporary file of this process,
/// then ends it as the signal would have. One at a time.
class InterruptCleanup {
public:
    /// Throws diagnostics::Failure.
    InterruptCleanup();
    ~InterruptCleanup();
    InterruptCleanup(const InterruptCleanup&) = delete;
    InterruptCleanup& operator=(const InterruptCleanup&) = delete;
};

} // namespace tool
