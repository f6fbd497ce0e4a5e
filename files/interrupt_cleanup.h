#pragma once

namespace files {

/// For programs: during its lifetime SIGINT, SIGTERM and SIGHUP first remove every temporary file of this
/// process, then end it as the signal would have. At most one object may exist.
class InterruptCleanup {
public:
    /// Throws diagnostics::Failure.
    InterruptCleanup();
    ~InterruptCleanup();
    InterruptCleanup(const InterruptCleanup&) = delete;
    InterruptCleanup& operator=(const InterruptCleanup&) = delete;
};

} // namespace files
