#pragma once

#include <memory>

#include "host/core/core_string.h"
#include "host/host_export.h"

/// A file opened for reading or writing. A written file replaces the one at `path` as a whole when it is
/// closed; until then, and after any failure, the old file (or none) stays. The new file has the old one's
/// permissions, and a link's target is replaced, not the link. Devices and pipes are written in place.
class HOST_API SysFile {
public:
    /// How to open the file.
    enum Mode { MODE_READ = 0, MODE_WRITE = 1 };

    /// Opens the file; check `is_opened`. `type` 0: bytes are not converted.
    SysFile(const CoreString& path, Mode mode, int type);
    ~SysFile(); ///< Closes; without a successful `close` before, the old file stays.
    SysFile(const SysFile&) = delete;
    SysFile& operator=(const SysFile&) = delete;

    /// False when opening failed, and after `close`.
    bool is_opened() const;
    /// Count of bytes written: all of `text`, or -1 on failure. Bytes may be buffered until `close`, which
    /// then reports errors in writing them.
    long long write(const CoreString& text);
    /// At most the next `count` bytes, fewer at the end of the file; empty on failure.
    CoreString read(unsigned int count);
    /// Completes the file. False when that fails or the file is not open; the old file is then unchanged.
    bool close();

private:
    struct State;
    std::unique_ptr<State> state;
};
