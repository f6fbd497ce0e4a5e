#pragma once

#include <string>
#include <vector>

namespace viewer {

/// Kinds of files in the viewer.
enum class FileKind { IMAGE, CONFIG, CDL_LIBRARY };

/// By the file's extension; unknown ones are images.
FileKind get_file_kind(const std::string& path);

/// Extensions of such files, with the '.', in lower case.
const std::vector<std::string>& get_extensions(FileKind kind);

} // namespace viewer
