// Starts the module on the standalone host and lists the color spaces that it publishes.
#include <iostream>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "standalone/standalone_app.h"

int main() {
    StandaloneApp app;
    if (!ColorIO::init(&app))
        return 1;
    for (const CoreString& name : ColorIOManager::get_instance()->get_color_space_names())
        std::cout << name.get_data() << '\n';
    ColorIO::destroy();
}
