#include "tests/gpu/module_fixture.h"

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"

namespace {

std::string str(const CoreString& text) {
    return std::string(text.view());
}

NamedConversion show(const CoreString& space, const CoreString& label) {
    NamedConversion conversion = {str(space) + " through " + str(label),
                                  std::make_unique<ColorIOConverter>()};
    CoreString display, view;
    EXPECT_TRUE(ColorIO::get_display_view(label, display, view)) << conversion.name;
    EXPECT_TRUE(conversion.converter->configure_for_display(space, display, view)) << conversion.name;
    return conversion;
}

} // namespace

NamedConversion convert(const CoreString& source, const CoreString& destination) {
    NamedConversion conversion = {str(source) + " to " + str(destination),
                                  std::make_unique<ColorIOConverter>()};
    EXPECT_TRUE(conversion.converter->configure(source, destination)) << conversion.name;
    return conversion;
}

RunningModuleTest::RunningModuleTest() {
    EXPECT_TRUE(ColorIO::init(&app));
}

RunningModuleTest::~RunningModuleTest() {
    ColorIO::get_instance()->disconnect(*ColorIO::get_instance());
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    ColorIOManager::s_default_color_space_name = "linear";
}

void RunningModuleTest::use_config(const std::string& path) {
    ASSERT_TRUE(try_config(path)) << take_messages();
}

bool RunningModuleTest::try_config(const std::string& path) {
    app.set_color_space_file_path(path.c_str());
    app.set_use_color_space_file(true);
    return !ColorIOManager::get_instance()->is_using_tavelion_config();
}

std::string RunningModuleTest::take_messages() {
    std::string messages;
    for (const RecordingLog::Line& line : log.get_lines())
        messages += (messages.empty() ? "" : " ") + line.text.substr(0, line.text.find_last_not_of('\n') + 1);
    log.clear();
    return messages;
}

void RunningModuleTest::use_cdls(const std::vector<ColorIOManager::ColorDecisionListDef>& cdls) {
    CoreVector<ColorIOManager::ColorDecisionListDef> list =
        ColorIOManager::get_instance()->get_tavelion_color_decision_lists();
    for (const auto& cdl : cdls)
        list.append(cdl);
    ColorIOManager::get_instance()->set_tavelion_config(list);
    ASSERT_EQ(ColorIOManager::get_instance()->get_CDL_names().get_count(), cdls.size() + 1);
}

std::vector<NamedConversion> RunningModuleTest::get_spaces() const {
    const CoreString scene_linear = ColorIO::get_ROLE_SCENE_LINEAR();
    std::vector<NamedConversion> conversions;
    for (const CoreString& space : ColorIO::get_color_space_names())
        if (space != scene_linear) {
            conversions.push_back(convert(space, scene_linear));
            conversions.push_back(convert(scene_linear, space));
        }
    return conversions;
}

std::vector<NamedConversion> RunningModuleTest::get_views() const {
    const CoreString scene_linear = ColorIO::get_ROLE_SCENE_LINEAR();
    const CoreString default_view = ColorIO::get_default_display_view();
    std::vector<NamedConversion> conversions;
    for (const CoreString& view : ColorIO::get_display_view_names())
        conversions.push_back(show(scene_linear, view));
    for (const CoreString& space : ColorIO::get_color_space_names())
        if (space != scene_linear)
            conversions.push_back(show(space, default_view));
    return conversions;
}

std::vector<NamedConversion> RunningModuleTest::get_cdls() const {
    const CoreString none = ColorIO::get_default_CDL_name();
    std::vector<NamedConversion> conversions;
    for (const CoreString& name : ColorIOManager::get_instance()->get_CDL_names()) {
        if (name == none)
            continue;
        auto applied = std::make_unique<ColorIOConverter>(), undone = std::make_unique<ColorIOConverter>();
        EXPECT_TRUE(applied->configure_CDL(none, name)) << str(name);
        EXPECT_TRUE(undone->configure_CDL(name, none)) << str(name);
        conversions.push_back({str(name) + " applied", std::move(applied)});
        conversions.push_back({str(name) + " undone", std::move(undone)});
    }
    return conversions;
}
