#pragma once

#include <cstddef>
#include <string>

/// A file, device or pipe open for reading from its start; a folder does not open.
class InputFile {
public:
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool is_open() const { return descriptor >= 0; }
    /// Appends the next `count` bytes, fewer at the end of the file, to `bytes`. False when the system fails.
    bool read(size_t count, std::string& bytes);
    /// The system's number (errno) for the last failure; 0 when there was none.
    int get_error_number() const { return error_number; }

private:
    int descriptor = -1;
    int error_number = 0;
};
