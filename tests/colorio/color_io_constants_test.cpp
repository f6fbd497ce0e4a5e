#include "colorio/color_io_constants.h"

#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "host/core/core_hash.h"
#include "host/event/event_ids.h"
#include "tests/colorio/manager_fixture.h"

namespace {

/// What the module's mutable statics held when it had been loaded and no test had run.
struct StateAtLoad {
    std::string default_cdl = str(ColorIOManager::s_default_CDL_name);
    std::string default_color_picking_space = str(ColorIOManager::s_default_color_picking_space_name);
    std::string default_color_space = str(ColorIOManager::s_default_color_space_name);
    std::string scene_linear_label = str(ColorIO::s_default_scene_linear);
    std::string color_picking_label = str(ColorIO::s_default_color_picking);
    bool no_instance = ColorIO::s_singleton == nullptr && ColorIOManager::s_instance == nullptr &&
                       ColorIOAutoDetection::s_instance == nullptr;
};
const StateAtLoad at_load;

std::vector<std::string> event_names() {
#define EVENT_TEXT(id) #id,
    return {HOST_EVENTS(EVENT_TEXT)};
#undef EVENT_TEXT
}

unsigned int hash_of(const std::string& text) {
    return CoreHash::generate_jenkins(text.c_str(), static_cast<unsigned int>(text.size()));
}

} // namespace

TEST(ColorIOConstants, BuiltinNamesCarryTheirTextItsLengthAndItsHash) {
    const struct {
        const CoreStringView& constant;
        const char* text;
        unsigned int length;
        unsigned int hash;
    } expectations[] = {
        {ColorIOManager::BUILTIN_FAMILY, "Tavelion", 8, 0x42E1B6AA},
        {ColorIOManager::BUILTIN_SRGB, "sRGB", 4, 0x2EF9EC0C},
        {ColorIOManager::BUILTIN_LINEAR, "linear", 6, 0x39327DA3},
        {ColorIOManager::BUILTIN_CINEON, "Cineon", 6, 0x1062EED2},
    };
    for (const auto& expected : expectations) {
        EXPECT_STREQ(expected.constant.data, expected.text);
        EXPECT_EQ(expected.constant.length, expected.length) << expected.text;
        EXPECT_EQ(expected.constant.hash, expected.hash) << expected.text;
    }
}

TEST(ColorIOConstants, AStringMadeFromABuiltinNameHasItsHash) {
    EXPECT_EQ(CoreString(ColorIOManager::BUILTIN_SRGB).get_hash(), 0x2EF9EC0Cu);
}

TEST(ColorIOConstants, FamilyAndDisplayAreSeparatedByOneCharacterEach) {
    EXPECT_EQ(ColorIOManager::FAMILY_SEPARATOR, '|');
    EXPECT_EQ(ColorIOManager::DISPLAY_SEPARATOR, '.');
    static_assert(std::is_same_v<decltype(ColorIOManager::FAMILY_SEPARATOR), const char>);
    static_assert(std::is_same_v<decltype(ColorIOManager::DISPLAY_SEPARATOR), const char>);
}

TEST(ColorIOConstants, NamesSplitAtTheFirstSeparator) {
    EXPECT_EQ(CoreString::before_first("Tavelion|sRGB", ColorIOManager::FAMILY_SEPARATOR), "Tavelion");
    EXPECT_EQ(CoreString::after_first("Tavelion|sRGB", ColorIOManager::FAMILY_SEPARATOR), "sRGB");
    EXPECT_EQ(CoreString::before_first("Monitor.sRGB.v2", ColorIOManager::DISPLAY_SEPARATOR), "Monitor");
    EXPECT_EQ(CoreString::after_first("Monitor.sRGB.v2", ColorIOManager::DISPLAY_SEPARATOR), "sRGB.v2");
}

TEST(ColorIOConstants, TheHostsOwnCDLsHaveReservedNames) {
    EXPECT_STREQ(INPUT_LOCAL_CDL, "input_local_CDL");
    EXPECT_STREQ(OUTPUT_LOCAL_CDL, "output_local_CDL");
}

TEST(ColorIOConstants, NotFoundIsTheLargest32BitNumber) {
    EXPECT_EQ(NOT_FOUND, 0xFFFFFFFFu);
}

TEST(ColorIOConstants, DefaultNamesAreSetWhenTheModuleIsLoaded) {
    EXPECT_EQ(at_load.default_cdl, "No CDL");
    EXPECT_EQ(at_load.default_color_picking_space, "sRGB");
    EXPECT_EQ(at_load.default_color_space, "linear");
}

TEST(ColorIOConstants, PseudoLabelsAreEmptyUntilStartUp) {
    EXPECT_EQ(at_load.scene_linear_label, "");
    EXPECT_EQ(at_load.color_picking_label, "");
}

TEST(ColorIOConstants, NoSingletonExistsWhenTheModuleIsLoaded) {
    EXPECT_TRUE(at_load.no_instance);
}

TEST(ColorIOConstants, TheEmptyTextHashesToZero) {
    EXPECT_EQ(hash_of(""), 0u);
    EXPECT_EQ(CoreString().get_hash(), 0u);
}

TEST(ColorIOConstants, TheModulesEventsHashToTheirPublishedValues) {
    EXPECT_EQ(EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED.get_hash(), 0x6DD0F2C3u);
    EXPECT_EQ(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED.get_hash(), 0x9E39DA24u);
    EXPECT_EQ(EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED.get_hash(), 0xC97D229Eu);
}

TEST(ColorIOConstants, AnEventsTextIsItsIdentifier) {
    EXPECT_EQ(str(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED),
              "EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED");
    EXPECT_EQ(str(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED),
              "EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED");
    EXPECT_EQ(str(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED), "EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED");
    EXPECT_EQ(str(EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED),
              "EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED");
    EXPECT_EQ(str(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED),
              "EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED");
    EXPECT_EQ(str(EVT_ID_ROLE_SCENE_LINEAR_CHANGED), "EVT_ID_ROLE_SCENE_LINEAR_CHANGED");
    EXPECT_EQ(str(EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED),
              "EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED");
    EXPECT_EQ(str(EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED), "EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED");
    EXPECT_EQ(str(EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED), "EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED");
}

TEST(ColorIOConstants, NoTwoOfTheHosts114EventsShareAHash) {
    std::set<unsigned int> hashes;
    for (const std::string& name : event_names())
        EXPECT_TRUE(hashes.insert(hash_of(name)).second) << name;
    EXPECT_EQ(hashes.size(), 114u);
}

// The 114 names in alphabetical order, joined by line feeds, hash to this value.
TEST(ColorIOConstants, TheHostDeclaresExactlyTheKnownEvents) {
    std::string joined;
    for (const std::string& name : event_names())
        joined += (joined.empty() ? "" : "\n") + name;
    EXPECT_EQ(hash_of(joined), 0x17072A58u);
}

using ColorIOConstantsAfterStart = ManagerTest;

TEST_F(ColorIOConstantsAfterStart, StartUpLeavesTheManagersDefaultNamesAsTheyAre) {
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(str(ColorIOManager::s_default_CDL_name), "No CDL");
    EXPECT_EQ(str(ColorIOManager::s_default_color_picking_space_name), "sRGB");
    EXPECT_EQ(str(ColorIOManager::s_default_color_space_name), "linear");
}

TEST_F(ColorIOConstantsAfterStart, StartUpFillsThePseudoLabels) {
    ASSERT_TRUE(ColorIO::init(&app));
    EXPECT_EQ(str(ColorIO::s_default_scene_linear), "Use scene_linear");
    EXPECT_EQ(str(ColorIO::s_default_color_picking), "Use Default");
}
