#pragma once

#include <string>

namespace tool {

/// A file that is replaced whole or not at all: it is written beside its place under a temporary name with
/// the same extension, and takes its place on `commit`. Without that, whatever was written disappears and
/// the old file, if any, stays. Links are followed, the permissions of an old file are kept.
class ReplacedFile {
public:
    /// Makes the temporary file. Throws CommandError when the folder is missing or not writable, or when
    /// something other than a file is in the place.
    explicit ReplacedFile(const std::string& path);
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    /// Where to write.
    const std::string& get_temporary_path() const { return temporary; }
    /// Throws CommandError when the file cannot take its place.
    void commit();

private:
    std::string path;   ///< As the user gave it.
    std::string target; ///< After following links.
    std::string temporary;
    bool committed = false;
};

/// While it lives, an interrupt (SIGINT, SIGTERM, SIGHUP) first removes every temporary file of this process,
/// then ends it as the signal would have. One at a time.
class InterruptCleanup {
public:
    InterruptCleanup();
    ~InterruptCleanup();
    InterruptCleanup(const InterruptCleanup&) = delete;
    InterruptCleanup& operator=(const InterruptCleanup&) = delete;
};

} // namespace tool
