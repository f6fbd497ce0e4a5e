#include <stdlib.h>

#include <iostream>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "colorio/ocio/types.h"
#include "standalone/standalone_app.h"
#include "tests/parity/parity_rows.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr int FAILURE = 1;
constexpr int USAGE_ERROR = 2;

/// Makes the configuration at `path` the active one; empty leaves the built-in one active. False when it is
/// refused.
bool use_config(StandaloneApp& app, const std::string& path) {
    if (path.empty())
        return true;
    app.set_color_space_file_path(path.c_str());
    app.set_use_color_space_file(true);
    return !ColorIOManager::get_instance()->is_using_tavelion_config();
}

int write_values(const std::string& path) {
    RecordingLog log;
    const TempDir cache;
    StandaloneApp app(cache.get_path().c_str());
    if (!ColorIO::init(&app)) {
        std::cerr << "parity_values: the module does not start: " << take_reason(log) << "\n";
        return FAILURE;
    }
    std::cout << "library\t" << ocio::get_version() << "\n";
    log.clear();
    if (use_config(app, path))
        write_parity_rows(std::cout, log);
    else
        std::cout << "refused\t" << take_reason(log) << "\n";
    ColorIO* facade = ColorIO::get_instance();
    facade->disconnect(*facade);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    return std::cout.flush() ? 0 : FAILURE;
}

} // namespace

/// usage: parity_values [CONFIGURATION]
/// Writes the version of OpenColorIO ("library", then the number) and the rows of the configuration,
/// or of the built-in one; of a configuration that is refused "refused", then the reason.
int main(int argc, char** argv) {
    if (argc > 2) {
        std::cerr << "usage: parity_values [CONFIGURATION]\n";
        return USAGE_ERROR;
    }
    unsetenv("OCIO");
    return write_values(argc == 2 ? argv[1] : "");
}
