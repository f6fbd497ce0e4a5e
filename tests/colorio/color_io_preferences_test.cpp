#include <string>
#include <vector>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/manager_fixture.h"

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string FILM =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"scene_linear", "film"}});

std::vector<std::string> entry_names(ParserEntry& entry) {
    std::vector<std::string> names;
    const ParserGroup* group = entry.is_group() ? entry.get_group(0) : nullptr;
    for (unsigned int i = 0; group && i < group->get_entry_count(); ++i)
        names.push_back(str(group->get_entry(i)->get_name()));
    return names;
}

void add_extension(ParserGroup& group, const char* format, const char* extensions, const char* color_space) {
    ParserEntry* entry = group.add_entry("extension", 0, 0);
    for (const char* text : {format, extensions, color_space})
        entry->add_string(text);
}

using ColorIOPreferences = ManagerTest;

} // namespace

TEST_F(ColorIOPreferences, WithNothingStartedNeitherLoadNorSave) {
    ParserEntry entry("colorio");
    EXPECT_FALSE(ColorIO::load_config(&entry));
    EXPECT_FALSE(ColorIO::save_config(&entry));
}

TEST_F(ColorIOPreferences, WithAManagerAloneBothReportSuccessWhateverItSays) {
    start_manager();
    ParserEntry entry("colorio");
    EXPECT_TRUE(ColorIO::load_config(&entry));
    EXPECT_TRUE(ColorIO::save_config(&entry));
    EXPECT_THAT(entry_names(entry), IsEmpty());
}

TEST_F(ColorIOPreferences, WithADetectorAloneBothReportSuccess) {
    ASSERT_TRUE(ColorIO::init(&app));
    ColorIO::destroy();

    ParserEntry loaded("colorio");
    add_extension(*loaded.add_group(nullptr), "Film", "dpx", "log");
    EXPECT_TRUE(ColorIO::load_config(&loaded));
    EXPECT_EQ(str(ColorIOAutoDetection::get_instance()->get_extension_from_file_format("Film")), "dpx");

    ParserEntry saved("colorio");
    EXPECT_TRUE(ColorIO::save_config(&saved));
    EXPECT_THAT(entry_names(saved), SizeIs(10));
    EXPECT_THAT(entry_names(saved), Each("extension"));
}

TEST_F(ColorIOPreferences, ANullEntryLoadsNothingAndSucceeds) {
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_TRUE(ColorIO::load_config(nullptr));
}

TEST_F(ColorIOPreferences, LoadingAppliesTheSwitchThatStartUpLeftAlone) {
    want_file(write_file("film.ocio", FILM));
    ASSERT_TRUE(ColorIO::init(&app));
    ASSERT_TRUE(ColorIOManager::get_instance()->is_using_tavelion_config());
    EXPECT_TRUE(ColorIO::load_config(nullptr));
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("film"));
}

// The bare name becomes a full one only because the manager read its spaces before.
TEST_F(ColorIOPreferences, TheManagerLoadsBeforeTheDetector) {
    ASSERT_TRUE(ColorIO::init(&app));
    ParserEntry entry("colorio");
    ParserGroup& group = *entry.add_group(nullptr);
    add_extension(group, "Jpeg", "jpg", "warm");
    ParserEntry* space = group.add_entry("space", 0, 0);
    space->add_string("warm");
    space->add_string(path_of("srgb.spi1d").c_str());
    space->add_int(0);
    space->add_int(1);
    for (double value : {0.0, 1.0, 0.0})
        space->add_double(value);

    EXPECT_TRUE(ColorIO::load_config(&entry));

    EXPECT_TRUE(ColorIO::color_space_exists("Tavelion|warm"));
    EXPECT_EQ(str(ColorIOAutoDetection::get_instance()->get_default_color_space_from_file_format("Jpeg")),
              "Tavelion|warm");
}

TEST_F(ColorIOPreferences, TheManagerSavesBeforeTheDetector) {
    ASSERT_TRUE(ColorIO::init(&app));
    CoreVector<ColorIOManager::ColorDecisionListDef> cdls =
        ColorIOManager::get_instance()->get_tavelion_color_decision_lists();
    ColorIOManager::ColorDecisionListDef warm = cdls[0];
    warm.name = "warm";
    warm.is_builtin = false;
    cdls.append(warm);
    ColorIOManager::get_instance()->set_tavelion_config(cdls);

    ParserEntry entry("colorio");
    EXPECT_TRUE(ColorIO::save_config(&entry));

    const std::vector<std::string> names = entry_names(entry);
    ASSERT_THAT(names, SizeIs(10));
    EXPECT_EQ(names[0], "CDL");
    EXPECT_EQ(names[1], "extension");
    EXPECT_EQ(names[9], "extension");
}
