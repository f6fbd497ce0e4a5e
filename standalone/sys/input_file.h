#pragma once

#include <cstddef>
#include <string>

#include "standalone/sys/descriptor.h"

/// A file, device or pipe open for reading from its start; a folder does not open.
class InputFile {
public:
    explicit InputFile(const std::string& path);

    bool is_open() const { return descriptor.is_open(); }
    /// Appends the next `count` bytes, fewer at the end of the file, to `bytes`. False when the system fails.
    bool read(size_t count, std::string& bytes);
    /// The system's number (errno) for the last failure; 0 when there was none.
    int get_error_number() const { return error_number; }

private:
    Descriptor descriptor;
    int error_number = 0;
};
