#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

/// Questions about paths.
class HOST_API SysFilesystem {
public:
    /// True when `path` names an existing file (not a folder) after following links.
    static bool file_exists(const CoreBasicString& path);
    /// Text after the last '.' of the last path component, with its case; empty when there is none. A leading
    /// '.' of the component (a hidden file) does not start an extension.
    static CoreString get_file_extension(const CoreBasicString& path);
};
