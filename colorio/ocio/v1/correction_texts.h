#pragma once

#include <string>
#include <vector>

namespace ocio {

/// The text of every color correction in an XML text of one, or of a collection or decision list, spelled as
/// the library reads it. Throws when the text is none of these, or its elements do not close as they open.
std::vector<std::string> split_corrections(const std::string& xml);

} // namespace ocio
