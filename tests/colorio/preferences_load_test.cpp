#include "host/event/event_ids.h"
#include "tests/colorio/preferences_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(Preferences, BringEveryFieldOfASpaceBackFromItsPlace) {
    add_entry("space", [](ParserEntry& item) {
        item.add_string("the name");
        item.add_string("/the/lut");
        item.add_int(3);
        item.add_int(2);
        for (const double number : {4.5, 5.5, 6.5})
            item.add_double(number);
        item.add_string("/the/cdl");
        item.add_string("the id");
    });
    manager().load_config(&entry);
    ASSERT_EQ(manager().get_tavelion_color_spaces().get_count(), 4u);
    const ColorIOManager::ColorSpaceDef& record = manager().get_tavelion_color_spaces()[3];
    EXPECT_EQ(str(record.name), "the name");
    EXPECT_EQ(str(record.lut_file), "/the/lut");
    EXPECT_EQ(record.bit_depth, 3u);
    EXPECT_EQ(record.allocation, 2u);
    EXPECT_THAT(record.allocation_vars, ElementsAre(4.5f, 5.5f, 6.5f));
    EXPECT_EQ(str(record.cdl_file), "/the/cdl");
    EXPECT_EQ(str(record.cccid), "the id");
    EXPECT_FALSE(record.is_builtin);
}

TEST_F(Preferences, BringEveryFieldOfACdlBackFromItsPlace) {
    add_entry("CDL", [](ParserEntry& item) {
        for (const char* text : {"the name", "/the/file", "the id"})
            item.add_string(text);
        for (int position = 3; position < 13; ++position)
            item.add_double(position + 0.5);
    });
    manager().load_config(&entry);
    ASSERT_EQ(manager().get_tavelion_color_decision_lists().get_count(), 2u);
    const ColorIOManager::ColorDecisionListDef& record = manager().get_tavelion_color_decision_lists()[1];
    EXPECT_EQ(str(record.name), "the name");
    EXPECT_EQ(str(record.file), "/the/file");
    EXPECT_EQ(str(record.cccid), "the id");
    EXPECT_THAT(record.slope, ElementsAre(3.5f, 4.5f, 5.5f));
    EXPECT_THAT(record.offset, ElementsAre(6.5f, 7.5f, 8.5f));
    EXPECT_THAT(record.power, ElementsAre(9.5f, 10.5f, 11.5f));
    EXPECT_EQ(record.saturation, 12.5f);
    EXPECT_FALSE(record.is_builtin);
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

TEST_F(Preferences, ThatAreMissingMakeKeptDefinitionsWhoseFilesHaveCome) {
    CoreVector<ColorIOManager::ColorSpaceDef> list = manager().get_tavelion_color_spaces();
    list.append(space_record("mine", path_of("late.spi1d")));
    manager().set_tavelion_config(list);
    ColorIOManager::ColorDecisionListDef grade = cdl_record("grade", {{4, 4, 4}});
    grade.file = path_of("late.cc").c_str();
    use_cdls({grade});
    ASSERT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear")) << "there is no file to make it of";
    ASSERT_TRUE(converter->configure_CDL("No CDL", "grade"));
    ASSERT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 1.0f) << "by the record's own numbers";

    write_file("late.spi1d", lut_text(2));
    write_file("late.cc", correction_text("x", "2"));
    EXPECT_FALSE(manager().load_config(nullptr));
    EXPECT_THAT(spaces(), ElementsAre("sRGB", "Cineon", "linear", "mine"));
    ASSERT_TRUE(converter->configure("linear", "mine"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 0.5f);
    ASSERT_TRUE(converter->configure_CDL("No CDL", "grade"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 0.5f);
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

} // namespace
