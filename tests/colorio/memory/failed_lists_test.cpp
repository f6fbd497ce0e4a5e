// Names, custom color spaces, CDLs and preferences while memory is short; see failed_allocation_test.cpp.

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_evaluation.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "host/gmath/gmath_vec4.h"
#include "host/of/of_enum.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/memory/failed_allocation_fixture.h"

namespace {

TEST_F(FailedAllocation, OfNames) {
    expect_answered([] { return ColorIO::color_space_exists("Tavelion|sRGB"); }, false);
    expect_answered([] { return ColorIO::display_view_exists("Tavelion.sRGB"); }, false);
    const CoreString label = "Tavelion|Cineon";
    const CoreString long_name = "a name that no string holds without memory";
    expect_answered([&] { return ColorIO::get_color_space_index(label); }, NOT_FOUND);
    expect_answered([&] { return ColorIO::get_color_space_index(long_name); }, NOT_FOUND);
    expect_answered([] { return ColorIO::get_color_space_name(1); }, CoreString());
    expect_answered([&] { return ColorIO::get_full_color_space_name(long_name); }, CoreString());
    expect_answered([&] { return manager().get_full_color_space_name("Cineon"); }, CoreString("Cineon"));
    const CoreString view_label = "Tavelion.Cineon";
    CoreString display, view;
    expect_answered([&] { return ColorIO::get_display_view(view_label, display, view); }, false);
    expect_answered([] { return ColorIO::get_default_display_view(); }, CoreString());
    expect_answered([&] { return ColorIO::get_default_display_view(display, view); }, false);
    expect_answered([&] { return ColorIO::get_color_space_from_display_view("Tavelion.sRGB"); },
                    CoreString());
    expect_answered([] { return ColorIO::get_color_space_names().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_display_view_names().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_role_color_space(0).get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_ROLE_SCENE_LINEAR().get_count(); }, 0u);
    expect_answered([] { return ColorIO::get_default_color_picker_space_name().get_count(); }, 0u);
}

TEST_F(FailedAllocation, OfLongDefaultNames) {
    const std::string long_name = "a default name that no string holds without memory";
    ColorIOManager::s_default_color_space_name = long_name.c_str();
    const CoreString usual = std::exchange(ColorIOManager::s_default_CDL_name, long_name.c_str());
    expect_answered([] { return ColorIO::get_default_color_space_name(); }, CoreString());
    expect_answered([] { return ColorIO::get_default_CDL_name(); }, CoreString());
    ColorIOManager::s_default_CDL_name = usual;
}

TEST_F(FailedAllocation, OfRolesAndDefaults) {
    app.use_color_space_file = true;
    const auto state = [this] { return str(manager().get_role_color_space(0)); };
    expect_survived([this] { manager().set_role_color_space(0); }, state);
    expect_survived([this] { manager().set_default_color_space_name(true); }, state);
    expect_survived([this] { manager().set_default_color_space_name(false); }, state);
    app.default_color_space_name = "a default name that no string holds without memory";
    expect_survived([this] { manager().update_default_color_space_name(); }, state);
}

TEST_F(FailedAllocation, OfNamesOfEarlierVersions) {
    expect_answered([] { return ColorIO::is_legacy_builtin_color_space("Any|Cineon"); }, false);
    expect_answered([] { return ColorIO::convert_legacy_builtin_color_space("Family|sRGB"); }, CoreString());
    expect_answered(
        [] { return ColorIO::convert_legacy_widget_display_color_space_to_display_view("Cineon"); },
        CoreString());
    for (const char* name : {"Tavelion|Cineon", "linear", "Any|other"})
        expect_answered(
            [&] { return ColorIO::convert_legacy_preferences_display_color_space_to_display_view(name); },
            CoreString());
}

TEST_F(FailedAllocation, OfCustomColorSpaces) {
    const CoreVector<SpaceDef> spaces = own_spaces();
    expect_survived([&] { manager().set_tavelion_config(spaces); }, [this] { return published(); });
    EXPECT_EQ(manager().get_tavelion_color_spaces().get_count(), spaces.get_count());
}

TEST_F(FailedAllocation, OfACustomColorSpaceLosesNoRecord) {
    const CoreVector<SpaceDef> spaces = own_spaces();
    manager().set_tavelion_config(spaces);
    const auto set = [&] { manager().set_tavelion_config(spaces); };
    for (const unsigned int number : record_allocations([] {}, set)) {
        {
            const FailingAllocation failing(number);
            set();
        }
        ASSERT_EQ(manager().get_tavelion_color_spaces().get_count(), spaces.get_count()) << number;
    }
}

TEST_F(FailedAllocation, OfCdls) {
    const CoreVector<CdlDef> list = own_cdls();
    const auto state = [this] { return published(); };
    expect_survived([&] { manager().set_tavelion_config(list); }, state);
    expect_survived([this] { manager().update_file_cdl_library_path(); }, state);
    const CdlDef warm = cdl("input_local_CDL");
    expect_answered([&] { return manager().add_local_CDL(CdlDef(warm)); }, false);
    const CoreString name = "numbers";
    expect_answered([&] { return ColorIO::get_CDL_index(name); }, NOT_FOUND);
    expect_answered([] { return ColorIO::get_CDL_name(0); }, CoreString());
}

TEST_F(FailedAllocation, OfALocalCdlLeavesItsNumbers) {
    manager().set_tavelion_config(own_cdls());
    ColorIOConverter converter;
    CdlDef local = cdl("input_local_CDL");
    local.slope[0] = 4;
    const auto add = [&] { manager().add_local_CDL(local); };
    for (const unsigned int number : record_allocations([] {}, add)) {
        {
            const FailingAllocation failing(number);
            add();
        }
        ASSERT_TRUE(manager().add_local_CDL(cdl("input_local_CDL")));
        GMathVec4<float> pixel(0.25f, 0.25f, 0.25f, 1);
        ASSERT_TRUE(converter.configure_CDL("No CDL", "input_local_CDL"));
        ASSERT_TRUE(converter.convert_pixel(pixel));
        ASSERT_EQ(pixel[0], 0.5f) << number;
    }
}

TEST_F(FailedAllocation, OfCdlDocuments) {
    const std::filesystem::path old_place = std::filesystem::current_path();
    std::filesystem::current_path(folder.get_path());
    const CoreString read = "library.ccc", written = "written.ccc";
    CdlDef def = cdl("read");
    for (const bool collection : {true, false}) {
        expect_survived([&] { manager().read_CDL_from_XML(read, def, collection); },
                        [&] { return def.slope[0]; });
        CoreVector<CdlDef> list;
        CoreString path;
        const auto prepare = [&] {
            list = own_cdls();
            path = written;
        };
        expect_answered_after(
            prepare,
            [&] { return manager().create_XML_from_CDL(std::move(list), std::move(path), collection); },
            false);
    }
}

TEST_F(FailedAllocation, OfPreferences) {
    manager().set_tavelion_config(own_cdls());
    ParserEntry saved("colors");
    ASSERT_TRUE(ColorIO::save_config(&saved));
    ParserEntry entry("colors");
    expect_answered([&] { return ColorIO::save_config(&entry); }, true);
    expect_answered_after([&] { entry.reset(); }, [&] { return manager().save_config(&entry); }, false);
    expect_answered_after([&] { entry.reset(); }, [&] { return detector().save_config(&entry); }, false);
    const auto restart = [this] {
        stop();
        ASSERT_TRUE(ColorIO::init(&app));
    };
    expect_answered_after(
        restart, [&] { return ColorIO::load_config(&saved); }, true);
    expect_answered_after(
        restart, [&] { return manager().load_config(&saved); }, false);
    expect_answered_after(
        restart, [&] { return detector().load_config(&saved); }, false);
}

} // namespace
