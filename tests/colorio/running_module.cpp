#include "tests/colorio/running_module.h"

#include "colorio/color_io.h"
#include "host/event/event_ids.h"

void RunningModule::SetUp() {
    ASSERT_TRUE(ColorIO::init(&app));
    events.emplace();
    take_log();
}

void RunningModule::use_config(const std::string& config) {
    want_file(write_file("config.ocio", config));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
}

void RunningModule::use_builtin_config() {
    app.use_color_space_file = false;
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
}

void RunningModule::forget_facade() {
    ColorIO::___class_destructor__(ColorIO::s_singleton, false);
    ColorIO::s_singleton = nullptr;
}

LogLine error(const std::string& text) {
    return {1, text};
}

LogLine warning(const std::string& text) {
    return {2, text};
}

LogLine information(const std::string& text) {
    return {3, text};
}

const char CONFIG_WITHOUT_FAMILIES[] = R"(ocio_profile_version: 1
search_path: .
strictparsing: true
roles:
  scene_linear: lin
displays:
  Monitor:
    - !<View> {name: Film, colorspace: film}
    - !<View> {name: Video.v2, colorspace: video}
  Cinema:
    - !<View> {name: Film, colorspace: film}
active_displays: [Monitor, Cinema]
colorspaces:
  - !<ColorSpace>
    name: lin
    bitdepth: 32f
    allocation: lg2
    allocationvars: [-10, 6]
  - !<ColorSpace>
    name: film
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: video
    bitdepth: 32f
    from_reference: !<ExponentTransform> {value: [0.5, 0.5, 0.5, 1]}
  - !<ColorSpace>
    name: data
    bitdepth: 32f
    isdata: true
)";
