#include "tests/colorio/preferences_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

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

} // namespace
