#pragma once

#include <cstddef>
#include <optional>
#include <string>

/// Content of a whole file, or why there is none.
struct FileText {
    std::optional<std::string> text;
    std::string reason;   ///< Empty when there is a text.
    int error_number = 0; ///< The system's (errno); 0 when the system has no part in it.
};

/// Reads the file at `path`, which may have `max_size` bytes at most.
FileText read_text(const std::string& path, size_t max_size);
