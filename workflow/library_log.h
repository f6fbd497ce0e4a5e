#pragma once

namespace tool {

/// While it lives, what the colour library itself reports goes to the host's main log handler instead of
/// straight to standard error. One at a time.
class LibraryLog {
public:
    LibraryLog();
    ~LibraryLog();
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;
};

} // namespace tool
