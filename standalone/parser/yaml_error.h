#pragma once

#include <stdexcept>
#include <string>

/// Why a YAML text was refused, and where. Internal to the parser: `read_yaml` turns it into a message.
struct YamlError : std::runtime_error {
    YamlError(unsigned int line, unsigned int column, const std::string& reason)
        : std::runtime_error(reason), line(line), column(column) {}

    unsigned int line;   ///< From 1; 0 without a position.
    unsigned int column; ///< From 1.
};
