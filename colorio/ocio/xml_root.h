#pragma once

#include <string>
#include <string_view>

namespace ocio {

/// Name of the outermost element of an XML file in an encoding that extends ASCII; empty when there is none
/// within the first 64 KB.
std::string xml_root_name(const std::string& path);

/// The value of an attribute of that element as it is written, references unresolved; empty when it has none.
std::string xml_root_attribute(const std::string& path, std::string_view name);

} // namespace ocio
