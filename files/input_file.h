#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "files/descriptor.h"
#include "files/failure.h"

namespace files {

/// Opens the regular file at `path` for reading. Everything else is refused and left untouched: a folder, a
/// device, and a pipe, which could keep the caller waiting for ever.
Result<Descriptor> open_for_reading(const std::string& path);

/// Reads up to `size` bytes, after interruptions too; -1 and errno on failure.
ssize_t read_some(const Descriptor& file, void* bytes, std::size_t size);

/// A regular file open for reading from its start.
class InputFile {
public:
    explicit InputFile(const std::string& path);

    bool is_open() const { return descriptor.is_open(); }
    /// Appends the next `count` bytes, fewer at the end of the file, to `bytes`. False when the system fails.
    bool read(std::size_t count, std::string& bytes);
    /// Why opening or the last reading failed; nothing when neither did.
    const std::optional<Failure>& get_failure() const { return failure; }

private:
    std::string path;
    Descriptor descriptor;
    std::optional<Failure> failure;
};

/// Content of the regular file at `path`, which may have `max_size` bytes at most: a longer one fails with
/// EFBIG.
Result<std::string> read_whole(const std::string& path, std::size_t max_size);

} // namespace files
