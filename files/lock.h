#pragma once

#include <string>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

/// An exclusive lock of a folder, held until destruction: against other processes and against other locks in
/// this process.
class Lock {
public:
    /// Waits until the lock is free. The folder must exist. On a file system without locks, and for a folder
    /// without read permission, nothing is locked, which is not a failure.
    static Result<Lock> take(const std::string& folder);

private:
    explicit Lock(Descriptor descriptor) : descriptor(std::move(descriptor)) {}

    Descriptor descriptor;
};

} // namespace files
