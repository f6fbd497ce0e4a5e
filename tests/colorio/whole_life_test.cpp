#include <functional>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "standalone/standalone_app.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// Everything that the module publishes, by the name of the list.
using Published = std::vector<std::pair<std::string, std::vector<std::string>>>;

Published everything_published(OfObjectFactory& factory) {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    Published published = {{"color spaces", strings(ColorIO::get_color_space_names())},
                           {"views", strings(ColorIO::get_display_view_names())},
                           {"CDLs", strings(manager.get_CDL_names())},
                           {"scene linear", {str(ColorIO::get_ROLE_SCENE_LINEAR())}},
                           {"default space", {str(ColorIO::get_default_color_space_name())}},
                           {"default view", {str(ColorIO::get_default_display_view())}}};
    for (const char* name : {"color_space", "internal_color_space", "color_picking", "view_transform",
                             "color_decision_list", "roles_enum"}) {
        const OfEnum* list = factory.get_enum(name);
        published.push_back({name, labels(list)});
        for (unsigned int value : values(list))
            published.back().second.push_back(std::to_string(value));
    }
    published.push_back({"roles", {}});
    for (int role = 0; role < 8; ++role)
        published.back().second.push_back(str(ColorIO::get_role_color_space(role)));
    published.push_back({"format mappings", {}});
    const ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
    for (unsigned int i = 0; i < detection.get_categories_count(); ++i) {
        const CoreString format = detection.get_file_format(i);
        published.back().second.push_back(str(format) + ": " +
                                          str(detection.get_extension_from_file_format(format)) + " in " +
                                          str(detection.get_default_color_space_from_file_format(format)));
    }
    return published;
}

/// The module's life in a host that keeps its preferences in a file.
class WholeLife : public ManagerTest {
protected:
    void start() {
        host = std::make_unique<StandaloneApp>(path_of("cache").c_str());
        ASSERT_TRUE(ColorIO::init(host.get()));
    }
    void stop() {
        ColorIO::destroy();
        ColorIOAutoDetection::destroy();
        ColorIO::___class_destructor__(ColorIO::s_singleton, false);
        ColorIO::s_singleton = nullptr;
        ColorIO::s_default_scene_linear = "";
        ColorIO::s_default_color_picking = "";
        ColorIOManager::s_default_color_space_name = "linear";
        host.reset();
    }
    void save() {
        ParserFile file;
        ParserEntry* entry = file.get_root().add_entry("color_management", 0, 0);
        ASSERT_TRUE(ColorIO::save_config(entry));
        ASSERT_TRUE(file.write(path_of("preferences.yaml").c_str())) << str(file.get_error());
    }
    void load() {
        ParserFile file;
        ASSERT_TRUE(file.read(path_of("preferences.yaml").c_str(), "", "")) << str(file.get_error());
        EXPECT_TRUE(ColorIO::load_config(file.get_root().find_entry("color_management")));
    }
    Published published() { return everything_published(host->get_object_factory()); }

    std::unique_ptr<StandaloneApp> host;
};

TEST_F(WholeLife, BuiltInDefinitionsAndEditsComeBackAfterARestart) {
    start();
    EXPECT_TRUE(ColorIO::load_config(nullptr));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorIOManager::ColorSpaceDef> spaces = manager.get_tavelion_color_spaces();
    spaces.append(space_record("half", write_file("half.spi1d", lut_text(0.5))));
    spaces.append(space_record("lost", path_of("absent.spi1d")));
    spaces.append(space_record("grade", "", write_file("grade.cc", correction_text("x", "2"))));
    manager.set_tavelion_config(spaces);
    CoreVector<ColorIOManager::ColorDecisionListDef> cdls = manager.get_tavelion_color_decision_lists();
    cdls.append(cdl_record("warm", {{1.1, 1, 0.9}, {0.01, 0, 0}, {1, 1, 1.3}, 0.95}));
    manager.set_tavelion_config(cdls);
    host->set_cdl_library_file_path(write_file("library.ccc", collection_text(correction_text("shot 1", "2") +
                                                                              correction_text("shot 2", "4")))
                                        .c_str());
    ColorIOAutoDetection& detection = *ColorIOAutoDetection::get_instance();
    detection.add_file_format("Dpx", "dpx, cin", "Tavelion|Cineon");
    detection.set_extension_from_file_format(4, "png, apng");

    const Published before = published();
    EXPECT_THAT(before[0].second, ElementsAre("sRGB", "Cineon", "linear", "half", "grade"));
    EXPECT_THAT(before[2].second, ElementsAre("No CDL", "warm", "shot 1", "shot 2"));
    save();
    stop();

    start();
    EXPECT_NE(published(), before) << "a fresh start knows the built-in definitions alone";
    load();
    EXPECT_THAT(published(), ElementsAreArray(before));
    host->set_cdl_library_file_path(path_of("library.ccc").c_str());
    EXPECT_THAT(published(), ElementsAreArray(before)) << "the library's CDLs are not doubled";
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure("linear", "half"));
    GMathVec4<float> pixel(0.5f, 0.25f, 1, 1);
    ASSERT_TRUE(converter.convert_pixel(pixel));
    EXPECT_FLOAT_EQ(pixel[0], 0.25f);
    save();
    stop();

    start();
    load();
    EXPECT_THAT(published(), ElementsAreArray(before)) << "nothing grows from run to run";
    EXPECT_THAT(take_log(), IsEmpty());
    stop();
}

TEST_F(WholeLife, AConfigurationOfAFileComesBackAfterARestart) {
    const std::string config = write_file("config.ocio", CONFIG_WITHOUT_FAMILIES);
    const std::string mapping =
        write_file("mapping.yaml", "Scans: {extensions: dpx, color_space: film}\n"
                                   "default: {extensions: Other, color_space: video}\n");
    // A host restores its preferences, then hands over the stored entry, then raises the other events.
    auto restore = [&](const std::function<void()>& load_definitions) {
        start();
        host->set_color_space_file_path(config.c_str());
        host->set_use_color_space_file(true);
        load_definitions();
        host->set_default_color_space_name("film");
        host->set_use_color_space_by_extension_file(1);
        host->set_color_space_by_extension_file_path(mapping.c_str());
    };
    restore([] { ColorIO::load_config(nullptr); });
    const Published before = published();
    EXPECT_THAT(before[0].second, ElementsAre("lin", "film", "video", "data"));
    EXPECT_THAT(before[1].second, ElementsAre("Monitor.Film", "Monitor.Video.v2", "Cinema.Film"));
    EXPECT_THAT(before[3].second, ElementsAre("lin"));
    EXPECT_THAT(before[4].second, ElementsAre("film"));
    EXPECT_THAT(before.back().second, ElementsAre("Scans: dpx in film", "default: Other in video"));
    save();
    stop();

    restore([this] { load(); });
    EXPECT_THAT(published(), ElementsAreArray(before));
    stop();
}

TEST_F(WholeLife, AFileAndTheBuiltInConfigurationTakeTurns) {
    start();
    const Published builtin = published();
    host->set_color_space_file_path(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES).c_str());
    for (int turn = 0; turn < 3; ++turn) {
        host->set_use_color_space_file(true);
        EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("lin", "film", "video", "data"))
            << turn;
        host->set_use_color_space_file(false);
        EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"))
            << turn;
        EXPECT_THAT(strings(ColorIO::get_display_view_names()),
                    ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"))
            << turn;
    }
    EXPECT_EQ(published()[0], builtin[0]);
    EXPECT_EQ(published()[6], builtin[6]);
    stop();
}

TEST_F(WholeLife, AnEditedConfigurationIsReadAgainWhenItsPathIsAnnounced) {
    start();
    const std::string path = write_file("config.ocio", CONFIG_WITHOUT_FAMILIES);
    host->set_color_space_file_path(path.c_str());
    host->set_use_color_space_file(true);
    write_file("config.ocio", config_text({{"", "new"}}, {{"D", "V", "new"}}, {{"scene_linear", "new"}}));
    host->raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("new"));
    stop();
}

TEST_F(WholeLife, AnImageIsConvertedFromItsFormatsColorSpace) {
    start();
    const CoreString space = ColorIO::get_instance()->get_default_color_space_from_ext("JPG");
    EXPECT_EQ(str(space), "Tavelion|sRGB");
    std::vector<float> image = {0.5f, 0.25f, 1, 1};
    EXPECT_TRUE(ColorIO::convert_buffer(image.data(), 1, 1, 4, "Tavelion|linear", space));
    EXPECT_NEAR(image[0], formula::srgb_to_linear(0.5), 2e-6);
    EXPECT_NEAR(image[1], formula::srgb_to_linear(0.25), 2e-6);
    stop();
}

TEST_F(WholeLife, TheHostSeesOneChangeOfAMenuPerOperation) {
    start();
    OfObjectFactory& factory = host->get_object_factory();
    const std::vector<const char*> menus = {"color_space", "internal_color_space", "color_picking",
                                            "view_transform"};
    auto changes = [&] {
        std::vector<unsigned int> counts;
        for (const char* menu : menus) {
            EXPECT_FALSE(factory.get_enum(menu)->is_asleep()) << menu;
            counts.push_back(factory.get_enum(menu)->get_change_count());
        }
        return counts;
    };
    std::vector<unsigned int> expected = changes();
    host->set_color_space_file_path(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES).c_str());
    EXPECT_EQ(changes(), expected) << "no file is wanted yet";
    host->set_use_color_space_file(true);
    for (unsigned int& count : expected)
        ++count;
    EXPECT_EQ(changes(), expected);
    host->set_use_color_space_file(false);
    for (unsigned int& count : expected)
        ++count;
    EXPECT_EQ(changes(), expected);
    stop();
}

} // namespace
