#pragma once

#include <string>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

/// Keeps out, while it lives, all others that take the lock of the same folder: other processes, and other
/// places of this one.
class Lock {
public:
    /// Waits until the lock is free. The folder must exist. On a file system that has no locks, and in a
    /// folder that may not be read, nothing is locked, and that is not a failure.
    static Result<Lock> take(const std::string& folder);

private:
    explicit Lock(Descriptor descriptor) : descriptor(std::move(descriptor)) {}

    Descriptor descriptor;
};

} // namespace files
