#pragma once

#include <string>
#include <vector>

namespace tool {

/// What stands between commas, without the blanks around it.
std::vector<std::string> split_list(const std::string& text);

/// The arguments with "--name=" as "--name" and an empty value; the parser would take the next argument as
/// the value.
std::vector<std::string> separate_empty_values(const std::vector<std::string>& arguments);

} // namespace tool
