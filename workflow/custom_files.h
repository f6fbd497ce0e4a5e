#pragma once

#include <string>
#include <vector>

namespace workflow {

class Session;

/// Files of the custom color spaces and CDLs, including the CDL library, whose color corrections the module
/// lists among the custom CDLs. Independent of the active config.
std::vector<std::string> get_custom_files(const Session& session);

/// True when there are other files than the CDL library.
bool has_custom_files(const Session& session, const std::string& library_path);

} // namespace workflow
