#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

/// A file opened for reading or writing. What is written replaces the file at `path` as a whole when the file
/// is closed; until then, and when anything failed, the old file (or none) stays. The new file has the old
/// one's permissions, and a link's target is replaced, not the link. Devices and pipes are written in place.
class HOST_API SysFile {
public:
    enum Mode { MODE_READ = 0, MODE_WRITE = 1 };

    /// `type` 0: bytes as they are.
    SysFile(const CoreString& path, Mode mode, int type);
    ~SysFile(); ///< Closes; a write that was never closed successfully leaves the old file.
    SysFile(const SysFile&) = delete;
    SysFile& operator=(const SysFile&) = delete;

    bool is_opened() const;
    /// Count of bytes taken: all of `text`, or -1 when they could not be written whole. Bytes may wait in
    /// memory for `close`, which then reports what goes wrong with them.
    long long write(const CoreString& text);
    /// The next `count` bytes at most, fewer at the end of the file; empty on failure.
    CoreString read(unsigned int count);
    /// Finishes the file. False when it could not be finished, or is not open; the old file is then
    /// untouched.
    bool close();

private:
    struct State;
    std::unique_ptr<State> state;
};
