#pragma once

#include <optional>
#include <string>

namespace ocio {

/// Aliases in a YAML text can repeat other aliases, so that a few lines expand to more than any memory holds.
/// Throws when the file's aliases expand to more than 200,000 nodes, or when it is not a regular file. A file
/// that cannot be opened or parsed passes: OpenColorIO reports why.
void require_bounded_yaml(const std::string& path);

/// Where a YAML text is malformed.
struct YamlError {
    unsigned int line; ///< from 1
    unsigned int column;
    std::string reason;
};

/// The first error of syntax in the file; nothing when there is none.
std::optional<YamlError> find_yaml_error(const std::string& path);

} // namespace ocio
