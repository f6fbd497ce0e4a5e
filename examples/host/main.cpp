// Starts the module in this host, publishes a config, and converts a color.
#include <cstdio>
#include <cstdlib>

#include "app.h"
#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_converter.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"

namespace {

// Follows the list of color spaces, as a menu of the application does.
class Menu : public EventObject {
public:
    explicit Menu(OfEnum& spaces) : spaces(spaces) {
        connect(spaces, EVT_ID_OF_ENUM_CHANGE, &Menu::on_change, nullptr);
    }
    void on_change(AppBase&, const EventInfo&, OfObject*) {
        std::printf("color spaces:");
        for (unsigned int i = 0; i < spaces.get_value_count(); ++i)
            std::printf(" %s", spaces.get_label(i).get_data());
        std::printf("\n");
    }

private:
    OfEnum& spaces;
};

bool convert(ExampleApp& app, char** arguments) {
    Menu menu(*app.get_object_factory().get_enum("color_space"));
    app.change(&ExampleApp::color_space_file_path, CoreString(arguments[1]),
               EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    app.change(&ExampleApp::use_color_space_file, true, EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);

    ColorIOConverter converter;
    GMathVec4<float> color;
    for (unsigned int i = 0; i < 3; ++i)
        color[i] = static_cast<float>(CoreString(arguments[4 + i]).to_double());
    color[3] = 1;
    if (!converter.configure(CoreString(arguments[2]), CoreString(arguments[3])) ||
        !converter.convert_pixel(color))
        return false;
    std::printf("%g %g %g\n", color[0], color[1], color[2]);
    return true;
}

} // namespace

int main(int count, char** arguments) {
    const char* const home = std::getenv("HOME");
    if (count != 7 || !home) {
        std::fprintf(stderr, "usage: example_host CONFIG SOURCE DESTINATION RED GREEN BLUE\n");
        return 2;
    }
    ExampleApp app(CoreString(home) + "/.example_host"); // outlives the module
    const bool converted = ColorIO::init(&app) && ColorIO::load_config(nullptr) && convert(app, arguments);
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    return converted ? 0 : 1;
}
