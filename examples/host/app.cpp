#include "app.h"

#include <sys/stat.h>

bool ExampleApp::create_temp_folder(const CoreString& name, CoreString& path) {
    const CoreString wanted = folder + "/" + name;
    mkdir(folder.get_data(), 0700);
    mkdir(wanted.get_data(), 0700);
    struct stat status;
    if (stat(wanted.get_data(), &status) != 0 || !S_ISDIR(status.st_mode))
        return false;
    path = wanted;
    return true;
}
