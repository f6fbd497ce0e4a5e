#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

class HOST_API SysFilesystem {
public:
    /// True when `path` names an existing file (not a folder) after following links.
    static bool file_exists(const CoreBasicString& path);
    /// Text after the last '.' of the last path component, case kept; empty when there is none. A '.' that
    /// begins the component hides a file and starts no extension.
    static CoreString get_file_extension(const CoreBasicString& path);
};
