#include "host/sys/sys_filesystem.h"

#include <sys/stat.h>

bool SysFilesystem::file_exists(const CoreBasicString& path) {
    struct stat status;
    return stat(path.get_data(), &status) == 0 && S_ISREG(status.st_mode);
}

CoreString SysFilesystem::get_file_extension(const CoreBasicString& path) {
    const std::string_view all = path.view();
    const std::string_view name = all.substr(all.rfind('/') + 1);
    const size_t dot = name.rfind('.');
    // A leading dot hides a file and starts no extension.
    if (dot == std::string_view::npos || name.find_first_not_of('.') > dot)
        return {};
    return CoreString(name.substr(dot + 1));
}
