#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

/// Opens the regular file at `path` for reading. Folders, devices and pipes (which could block forever) are
/// refused without opening them.
Result<Descriptor> open_for_reading(const std::string& path);

/// Reads up to `size` bytes, again after interruptions. Returns their count, 0 at the end of the file, -1 and
/// errno on failure.
ssize_t read_some(const Descriptor& file, void* bytes, std::size_t size);

/// A regular file open for reading from its start.
class InputFile {
public:
    /// Opens the file; check `is_open` or `get_failure`.
    explicit InputFile(const std::string& path);

    /// Whether opening succeeded.
    bool is_open() const { return descriptor.is_open(); }
    /// Appends the next `count` bytes, fewer at the end of the file, to `bytes`. False on a read error.
    bool read(std::size_t count, std::string& bytes);
    /// Why opening or the last reading failed; empty when neither did.
    const std::optional<Failure>& get_failure() const { return failure; }

private:
    std::string path;
    Descriptor descriptor;
    std::optional<Failure> failure;
};

/// Content of the regular file at `path`; a file with more than `max_size` bytes fails with EFBIG.
Result<std::string> read_whole(const std::string& path, std::size_t max_size);

} // namespace files
