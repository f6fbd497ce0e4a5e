#include "tests/colorio/manager_fixture.h"

#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"

namespace {

void reset_module() {
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIO::___class_destructor__(ColorIO::s_singleton, false);
    ColorIO::s_singleton = nullptr;
    ColorIO::s_default_scene_linear = "";
    ColorIO::s_default_color_picking = "";
    ColorIOManager::s_default_color_space_name = "linear";
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

} // namespace

bool ScriptedApp::create_temp_folder(const CoreString& name, CoreString& path) {
    requested_folders.push_back(str(name));
    path = lut_folder;
    return !answer_folder_request ||
           answer_folder_request(static_cast<unsigned int>(requested_folders.size()), path);
}

EventRecorder::EventRecorder() {
    for (const CoreString& event :
         {EVT_ID_ROLE_SCENE_LINEAR_CHANGED, EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED,
          EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED, EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED})
        connect(*ColorIO::get_instance(), event, &EventRecorder::record, nullptr);
}

void EventRecorder::record(AppBase& sender, const EventInfo& info, OfObject*) {
    EXPECT_EQ(&sender, ColorIO::get_instance());
    names.push_back(str(info.id));
    if (on_event)
        on_event(names.back());
}

std::vector<std::string> EventRecorder::take() {
    return std::exchange(names, {});
}

std::vector<std::string> strings(const CoreBasicArray<CoreString>& list) {
    std::vector<std::string> result;
    for (const CoreString& text : list)
        result.push_back(str(text));
    return result;
}

std::vector<std::string> labels(const OfEnum* list) {
    std::vector<std::string> result;
    for (unsigned int i = 0; i < list->get_value_count(); ++i)
        result.push_back(str(list->get_label(i)));
    return result;
}

std::vector<unsigned int> values(const OfEnum* list) {
    std::vector<unsigned int> result;
    for (unsigned int i = 0; i < list->get_value_count(); ++i)
        result.push_back(list->get_value_by_index(i));
    return result;
}

std::string config_text(const std::vector<SpaceText>& spaces, const std::vector<ViewText>& views,
                        const std::vector<RoleText>& roles) {
    std::string text = "ocio_profile_version: 1\nsearch_path: .\nstrictparsing: true\nroles:\n";
    for (const RoleText& role : roles)
        text += "  " + role.role + ": " + quoted(role.color_space) + "\n";
    if (roles.empty())
        text += "  {}\n";
    text += "displays:\n";
    const std::string* display = nullptr;
    for (const ViewText& view : views) {
        if (display == nullptr || *display != view.display)
            text += "  " + quoted(view.display) + ":\n";
        display = &view.display;
        text +=
            "    - !<View> {name: " + quoted(view.view) + ", colorspace: " + quoted(view.color_space) + "}\n";
    }
    text += "colorspaces:\n";
    for (const SpaceText& space : spaces)
        text += "  - !<ColorSpace>\n    name: " + quoted(space.name) +
                "\n    family: " + quoted(space.family) + "\n    bitdepth: 32f\n";
    return text;
}

ManagerTest::ManagerTest() {
    reset_module();
}

ManagerTest::~ManagerTest() {
    reset_module();
}

ColorIOManager& ManagerTest::start_manager() {
    EXPECT_TRUE(ColorIOManager::static_init(&app));
    return *ColorIOManager::get_instance();
}

void ManagerTest::want_file(const std::string& path) {
    app.use_color_space_file = true;
    app.color_space_file_path = path.c_str();
}

std::vector<LogLine> ManagerTest::take_log() {
    std::vector<LogLine> lines = log.get_lines();
    log.clear();
    return lines;
}
