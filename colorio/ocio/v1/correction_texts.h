#pragma once

#include <string>
#include <vector>

namespace ocio {

/// The text of every color correction in the XML text of a correction, a collection or a decision list, in
/// the spelling that OpenColorIO reads. Throws when the text is none of these or its elements are not closed
/// properly.
std::vector<std::string> split_corrections(const std::string& xml);

} // namespace ocio
