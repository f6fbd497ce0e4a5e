#pragma once

#include <string>

#include "files/failure.h"

namespace files {

/// The target of `path` after following symbolic links; it need not exist. Links in the folders above stay in
/// the path. Fails with ELOOP for a cycle of links.
Result<std::string> follow_links(const std::string& path);

/// The folder of `path`: the text before the last '/', or ".".
std::string get_folder(const std::string& path);

} // namespace files
