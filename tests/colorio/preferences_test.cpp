#include "colorio/color_io_manager.h"

#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/event/event_ids.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// The manager's custom definitions and the host's preference entry.
class Preferences : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }

    /// An entry of the group, made by the test; `fill` adds its values.
    void add_entry(const char* name, const std::function<void(ParserEntry&)>& fill) {
        ParserGroup* group = entry.is_group() ? entry.get_group(0) : entry.add_group(nullptr);
        fill(*group->add_entry(name, 0, 0));
    }
    /// A "space" entry of a LUT with `count` of its nine values.
    void add_space(const std::string& name, const std::string& lut, int count = 9,
                   const std::string& cdl = "", const std::string& cccid = "") {
        add_entry("space", [&](ParserEntry& item) {
            const std::function<void()> values[] = {
                [&] { item.add_string(name.c_str()); },
                [&] { item.add_string(lut.c_str()); },
                [&] { item.add_int(static_cast<int>(ocio::BIT_DEPTH_F32)); },
                [&] { item.add_int(static_cast<int>(ocio::ALLOCATION_UNIFORM)); },
                [&] { item.add_double(-1); },
                [&] { item.add_double(3); },
                [&] { item.add_double(0.1f); },
                [&] { item.add_string(cdl.c_str()); },
                [&] { item.add_string(cccid.c_str()); },
            };
            for (int i = 0; i < count; ++i)
                values[i]();
        });
    }
    /// A "CDL" entry of three strings and `numbers`.
    void add_cdl(const std::string& name, const std::vector<double>& numbers) {
        add_entry("CDL", [&](ParserEntry& item) {
            item.add_string(name.c_str());
            item.add_string("");
            item.add_string("");
            for (double number : numbers)
                item.add_double(number);
        });
    }

    /// Every value of an entry with its kind: s for strings, i for integers, d for doubles.
    static std::vector<std::string> values_of(const ParserEntry& item) {
        std::vector<std::string> values;
        for (unsigned int i = 0; i < item.get_value_count(); ++i)
            values.push_back((item.is_value_string(i)   ? "s:"
                              : item.is_value_int(i)    ? "i:"
                              : item.is_value_double(i) ? "d:"
                                                        : "?:") +
                             str(item.get_string(i)));
        return values;
    }
    std::vector<std::string> entry_names() {
        std::vector<std::string> names;
        ParserGroup* group = entry.get_group(0);
        for (unsigned int i = 0; group && i < group->get_entry_count(); ++i)
            names.push_back(str(group->get_entry(i)->get_name()));
        return names;
    }
    std::vector<std::string> spaces() { return strings(manager().get_color_space_names()); }
    std::vector<std::string> cdl_records() {
        std::vector<std::string> names;
        for (const auto& record : manager().get_tavelion_color_decision_lists())
            names.push_back(str(record.name));
        return names;
    }

    const std::vector<double> IDENTITY = {1, 1, 1, 0, 0, 0, 1, 1, 1, 1};
    ParserEntry entry{"colour management"};
};

// Saving

TEST_F(Preferences, OfBuiltInDefinitionsAloneAreNotSaved) {
    entry.add_string("earlier content");
    EXPECT_FALSE(manager().save_config(&entry));
    EXPECT_EQ(entry.get_value_count(), 0u) << "the entry is emptied all the same";
}

TEST_F(Preferences, OfNoDefinitionsAtAllAreNotSaved) {
    manager().set_tavelion_config(CoreVector<ColorIOManager::ColorSpaceDef>());
    manager().set_tavelion_config(CoreVector<ColorIOManager::ColorDecisionListDef>());
    entry.add_string("earlier content");
    EXPECT_FALSE(manager().save_config(&entry));
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST_F(Preferences, HoldNineValuesPerCustomSpace) {
    CoreVector<ColorIOManager::ColorSpaceDef> list = manager().get_tavelion_color_spaces();
    ColorIOManager::ColorSpaceDef mine = space_record("mine", "/luts/mine.spi1d", "/cdls/mine.ccc", "shot 7");
    mine.bit_depth = 8;
    mine.allocation = 2;
    mine.allocation_vars[0] = -0.5f;
    mine.allocation_vars[1] = 2.5f;
    mine.allocation_vars[2] = 0.25f;
    list.append(mine);
    manager().set_tavelion_config(list);

    EXPECT_TRUE(manager().save_config(&entry));
    ASSERT_EQ(entry.get_value_count(), 1u);
    ASSERT_TRUE(entry.is_group());
    EXPECT_THAT(entry_names(), ElementsAre("space"));
    EXPECT_THAT(values_of(*entry.get_group(0)->get_entry(0)),
                ElementsAre("s:mine", "s:/luts/mine.spi1d", "i:8", "i:2", StartsWith("d:-0.5"),
                            StartsWith("d:2.5"), StartsWith("d:0.25"), "s:/cdls/mine.ccc", "s:shot 7"));
}

TEST_F(Preferences, HoldThirteenValuesPerCustomCdl) {
    ColorIOManager::ColorDecisionListDef mine =
        cdl_record("mine", {{0.5, 1.5, 2.5}, {-0.25, 0.25, 0.75}, {1.25, 1.75, 2.25}, 0.875});
    mine.file = "/cdls/mine.ccc";
    mine.cccid = "shot 7";
    use_cdls({mine});

    EXPECT_TRUE(manager().save_config(&entry));
    EXPECT_THAT(entry_names(), ElementsAre("CDL"));
    const ParserEntry& item = *entry.get_group(0)->get_entry(0);
    ASSERT_EQ(item.get_value_count(), 13u);
    EXPECT_EQ(str(item.get_string(0)), "mine");
    EXPECT_EQ(str(item.get_string(1)), "/cdls/mine.ccc");
    EXPECT_EQ(str(item.get_string(2)), "shot 7");
    const double numbers[] = {0.5, 1.5, 2.5, -0.25, 0.25, 0.75, 1.25, 1.75, 2.25, 0.875};
    for (unsigned int i = 0; i < 10; ++i) {
        EXPECT_TRUE(item.is_value_double(3 + i)) << i;
        EXPECT_EQ(item.get_double(3 + i), numbers[i]) << i;
    }
}

TEST_F(Preferences, HoldEverySpaceBeforeEveryCdlInTheOrderOfTheLists) {
    use_cdls({cdl_record("b", {}), cdl_record("a", {})});
    CoreVector<ColorIOManager::ColorSpaceDef> list = manager().get_tavelion_color_spaces();
    list.append(space_record("z", "/z"));
    list.append(space_record("y", "/y"));
    manager().set_tavelion_config(list);
    EXPECT_TRUE(manager().save_config(&entry));
    EXPECT_THAT(entry_names(), ElementsAre("space", "space", "CDL", "CDL"));
    std::vector<std::string> first_values;
    for (unsigned int i = 0; i < 4; ++i)
        first_values.push_back(str(entry.get_group(0)->get_entry(i)->get_string(0)));
    EXPECT_THAT(first_values, ElementsAre("z", "y", "b", "a"));
}

TEST_F(Preferences, SavedTwiceHoldEverythingOnce) {
    use_cdls({cdl_record("mine", {})});
    EXPECT_TRUE(manager().save_config(&entry));
    EXPECT_TRUE(manager().save_config(&entry));
    EXPECT_THAT(entry_names(), ElementsAre("CDL"));
}

TEST_F(Preferences, SavedChangeNothing) {
    use_cdls({cdl_record("mine", {})});
    EXPECT_TRUE(manager().save_config(&entry));
    EXPECT_THAT(cdl_records(), ElementsAre("No CDL", "mine"));
    EXPECT_THAT(take_events(), IsEmpty());
    EXPECT_THAT(take_log(), IsEmpty());
}

// Loading definitions

TEST_F(Preferences, BringCustomSpacesBack) {
    add_space("mine", write_file("two.spi1d", lut_text(2)));
    EXPECT_FALSE(manager().load_config(&entry)) << "no configuration file was loaded";
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(strings(manager().get_display_view_names()), Contains("Tavelion.mine"));
    ASSERT_TRUE(converter->configure("linear", "mine"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 0.5f);

    ASSERT_EQ(manager().get_tavelion_color_spaces().get_count(), 4u);
    const ColorIOManager::ColorSpaceDef& record = manager().get_tavelion_color_spaces()[3];
    EXPECT_EQ(record.bit_depth, static_cast<unsigned int>(ocio::BIT_DEPTH_F32));
    EXPECT_EQ(record.allocation, static_cast<unsigned int>(ocio::ALLOCATION_UNIFORM));
    EXPECT_EQ(record.allocation_vars[0], -1);
    EXPECT_EQ(record.allocation_vars[1], 3);
    EXPECT_EQ(record.allocation_vars[2], 0.1f);
    EXPECT_FALSE(record.is_builtin);
}

TEST_F(Preferences, BringCustomCdlsBack) {
    add_cdl("mine", {2, 2, 2, 0.125, 0.125, 0.125, 1, 1, 1, 1});
    manager().load_config(&entry);
    EXPECT_THAT(strings(manager().get_CDL_names()), ElementsAre("No CDL", "mine"));
    ASSERT_TRUE(converter->configure_CDL("No CDL", "mine"));
    EXPECT_THAT(convert(0.25f, 0.25f, 0.25f), ElementsAre(0.625f, 0.625f, 0.625f));
    ASSERT_EQ(manager().get_tavelion_color_decision_lists().get_count(), 2u);
    EXPECT_FALSE(manager().get_tavelion_color_decision_lists()[1].is_builtin);
}

TEST_F(Preferences, OfASpaceWithSevenValuesLeaveItsCdlEmpty) {
    add_space("seven", write_file("two.spi1d", lut_text(2)), 7, "unread", "unread");
    add_space("eight", path_of("two.spi1d"), 8, "/some.cc", "unread");
    manager().load_config(&entry);
    const auto& records = manager().get_tavelion_color_spaces();
    ASSERT_EQ(records.get_count(), 5u);
    EXPECT_EQ(str(records[3].cdl_file), "");
    EXPECT_EQ(str(records[3].cccid), "");
    EXPECT_EQ(str(records[4].cdl_file), "/some.cc");
    EXPECT_EQ(str(records[4].cccid), "");
}

TEST_F(Preferences, OfAShortSpaceReadNeutralValues) {
    add_space("short", "", 1);
    manager().load_config(&entry);
    const auto& records = manager().get_tavelion_color_spaces();
    ASSERT_EQ(records.get_count(), 4u);
    EXPECT_EQ(str(records[3].name), "short");
    EXPECT_EQ(str(records[3].lut_file), "");
    EXPECT_EQ(records[3].bit_depth, 0u);
    EXPECT_EQ(records[3].allocation, 0u);
    EXPECT_EQ(records[3].allocation_vars[2], 0);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(Preferences, ReadCdlFilesOfSpacesFromStringsOnly) {
    add_entry("space", [](ParserEntry& item) {
        item.add_string("odd");
        item.add_string("/lut");
        for (int i = 0; i < 2; ++i)
            item.add_int(1);
        for (int i = 0; i < 3; ++i)
            item.add_double(1);
        item.add_int(7);
        item.add_double(8);
    });
    manager().load_config(&entry);
    const auto& records = manager().get_tavelion_color_spaces();
    ASSERT_EQ(records.get_count(), 4u);
    EXPECT_EQ(str(records[3].cdl_file), "");
    EXPECT_EQ(str(records[3].cccid), "");
}

TEST_F(Preferences, PassOverCdlsOfAnyOtherCountThanThirteenValues) {
    add_cdl("twelve", std::vector<double>(9, 1));
    add_cdl("fourteen", std::vector<double>(11, 1));
    add_cdl("thirteen", IDENTITY);
    manager().load_config(&entry);
    EXPECT_THAT(cdl_records(), ElementsAre("No CDL", "thirteen"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(Preferences, PassOverEntriesOfOtherNamesAndKinds) {
    for (const char* name : {"Space", "cdl", "SPACE", "space ", "extension"})
        add_entry(name, [](ParserEntry& item) {
            item.add_string("odd");
            for (int i = 0; i < 12; ++i)
                item.add_double(1);
        });
    add_entry("space", [](ParserEntry&) {});
    add_entry("space", [](ParserEntry& item) { item.add_int(1); });
    add_entry("space", [](ParserEntry& item) { item.add_group(nullptr); });
    add_entry("CDL", [](ParserEntry& item) {
        for (int i = 0; i < 13; ++i)
            item.add_double(1);
    });
    manager().load_config(&entry);
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(manager().get_tavelion_color_spaces().get_count(), 3u);
    EXPECT_THAT(cdl_records(), ElementsAre("No CDL"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(Preferences, ThatAreMissingStillBringTheKeptDefinitionsBack) {
    use_cdls({cdl_record("mine", {{2, 2, 2}})});
    for (int kind = 0; kind < 3; ++kind) {
        if (kind == 2)
            entry.add_string("no group");
        EXPECT_FALSE(manager().load_config(kind == 0 ? nullptr : &entry)) << kind;
        EXPECT_THAT(cdl_records(), ElementsAre("No CDL", "mine")) << kind;
        EXPECT_THAT(strings(manager().get_CDL_names()), ElementsAre("No CDL", "mine")) << kind;
        EXPECT_THAT(take_events(), ElementsAre(LUT_LIST_EVENT, CDL_LIST_EVENT)) << kind;
    }
}

TEST_F(Preferences, LoadedTwiceKeepEveryRecordTwiceAndPublishItOnce) {
    add_space("mine", write_file("two.spi1d", lut_text(2)));
    add_cdl("grade", IDENTITY);
    manager().load_config(&entry);
    EXPECT_THAT(take_log(), IsEmpty());
    manager().load_config(&entry);
    EXPECT_EQ(manager().get_tavelion_color_spaces().get_count(), 5u);
    EXPECT_THAT(cdl_records(), ElementsAre("No CDL", "grade", "grade"));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    EXPECT_THAT(strings(manager().get_CDL_names()), ElementsAre("No CDL", "grade"));
    const LogLine duplicate_view =
        warning("Color Management: duplicate display view 'Tavelion.mine' was ignored.\n");
    EXPECT_THAT(take_log(),
                ElementsAre(duplicate_view, duplicate_view,
                            warning("Color Management: duplicate CDL 'grade' is already defined in the "
                                    "current configuration.\n")));
}

TEST_F(Preferences, GiveOneViewToSpacesOfOneNameThatAnEarlierConfigurationPublished) {
    use_config(config_text({{"", "lin"}}, {{"Tavelion", "mine", "lin"}}, {{"scene_linear", "lin"}}));
    want_file(path_of("absent.ocio"));
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    ASSERT_TRUE(manager().is_using_tavelion_config());
    ASSERT_THAT(strings(manager().get_display_view_names()), ElementsAre("Tavelion.mine"))
        << "the lists of the earlier configuration stay";
    app.use_color_space_file = false;
    take_log();

    add_space("mine", write_file("two.spi1d", lut_text(2)));
    add_space("mine", write_file("four.spi1d", lut_text(4)));
    manager().load_config(&entry);
    EXPECT_THAT(take_log(), ElementsAre(warning(
                                "Color Management: duplicate display view 'Tavelion.mine' was ignored.\n")))
        << "the first record's view is there when the second is added";
    EXPECT_THAT(strings(manager().get_display_view_names()),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear", "Tavelion.mine"));
}

TEST_F(Preferences, OfASpaceWithTheNameOfABuiltInOneReplaceItAndKeepItsView) {
    add_space("Cineon", write_file("two.spi1d", lut_text(2)));
    manager().load_config(&entry);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: duplicate display view 'Tavelion.Cineon' was ignored.\n")));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
    ASSERT_TRUE(converter->configure("linear", "Cineon"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 0.5f);
}

TEST_F(Preferences, SavedAndLoadedKeepEveryBitOfTheirNumbers) {
    formula::Cdl odd = {{0.1f, 1.0f / 3, 1e-30f}, {-0.7f, 1e10f, 0.3f}, {0.45f, 2.2f, 1.0f / 7}, 0.9f};
    use_cdls({cdl_record("odd", odd)});
    CoreVector<ColorIOManager::ColorSpaceDef> list = manager().get_tavelion_color_spaces();
    ColorIOManager::ColorSpaceDef space = space_record("odd", "");
    space.allocation_vars[0] = 0.1f;
    space.allocation_vars[1] = 1.0f / 3;
    space.allocation_vars[2] = 1e-20f;
    list.append(space);
    manager().set_tavelion_config(list);
    ASSERT_TRUE(manager().save_config(&entry));

    manager().load_config(&entry);
    const auto& spaces = manager().get_tavelion_color_spaces();
    ASSERT_EQ(spaces.get_count(), 5u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(spaces[4].allocation_vars[i], space.allocation_vars[i]) << i;
    const auto& cdls = manager().get_tavelion_color_decision_lists();
    ASSERT_EQ(cdls.get_count(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(cdls[2].slope[i], cdls[1].slope[i]) << i;
        EXPECT_EQ(cdls[2].offset[i], cdls[1].offset[i]) << i;
        EXPECT_EQ(cdls[2].power[i], cdls[1].power[i]) << i;
        EXPECT_EQ(cdls[2].slope[i], static_cast<float>(odd.slope[i])) << i;
    }
    EXPECT_EQ(cdls[2].saturation, 0.9f);
}

// Loading selects the configuration

TEST_F(Preferences, LoadTheConfigurationOfTheWantedFile) {
    want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
    EXPECT_TRUE(manager().load_config(&entry));
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    EXPECT_EQ(str(manager().get_ROLE_SCENE_LINEAR()), "lin");
    EXPECT_THAT(take_events(), ElementsAre(SCENE_LINEAR_EVENT, LUT_LIST_EVENT, CDL_LIST_EVENT));
}

TEST_F(Preferences, LoadTheConfigurationOfTheEnvironment) {
    const std::string path = write_file("environment.ocio", CONFIG_WITHOUT_FAMILIES);
    EnvGuard variable("OCIO", path);
    app.use_color_space_file = true;
    EXPECT_TRUE(manager().load_config(nullptr));
    EXPECT_FALSE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
}

TEST_F(Preferences, LeaveTheBuiltInConfigurationActiveWhenTheWantedFileIsMissing) {
    want_file(path_of("absent.ocio"));
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(take_log(), Contains(warning("Color Management: OCIO configuration file '" +
                                             path_of("absent.ocio") + "' not found.\n")));
    EXPECT_THAT(take_events(), ElementsAre(LUT_LIST_EVENT, CDL_LIST_EVENT));
}

TEST_F(Preferences, LeaveTheBuiltInConfigurationActiveWhenTheWantedFileIsDamaged) {
    want_file(write_file("config.ocio", "no configuration"));
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(take_log(), Contains(OcioExceptionAt(LOG_ERROR)));
}

TEST_F(Preferences, MakeTheBuiltInConfigurationActiveWhenNoFileIsWanted) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    app.use_color_space_file = false;
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_TRUE(manager().is_using_tavelion_config());
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear"));
}

TEST_F(Preferences, KeepCustomSpacesForLaterWhileAFileIsActive) {
    want_file(write_file("config.ocio", CONFIG_WITHOUT_FAMILIES));
    add_space("mine", write_file("two.spi1d", lut_text(2)));
    EXPECT_TRUE(manager().load_config(&entry));
    EXPECT_THAT(spaces(), ElementsAre("lin", "film", "video", "data"));
    use_builtin_config();
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
}

} // namespace
