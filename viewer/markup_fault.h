#pragma once

#include <string>

namespace tool {

/// Where the XML of a file is broken: "Unexpected token found at line 2, column 1". Empty when it is not.
std::string find_markup_fault(const std::string& path);

} // namespace tool
