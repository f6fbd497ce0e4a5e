#pragma once

#include <string>

#include "standalone/sys/descriptor.h"

/// Keeps other processes that lock the same folder out until the end of the scope, and waits for them first.
/// A folder that is absent or cannot be locked is passed by: then nothing is locked.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder);

private:
    Descriptor descriptor;
};
