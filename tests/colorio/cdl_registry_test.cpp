#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/ocio/color_space.h"
#include "colorio/ocio/config.h"
#include "host/of/of_enum.h"
#include "tests/colorio/cdl_registry_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

// At the start

TEST_F(CdlRegistry, HoldsTheIdentityAtTheStart) {
    EXPECT_THAT(published(), ElementsAre("No CDL"));
    EXPECT_EQ(str(manager().get_default_CDL_name()), "No CDL");
    ASSERT_EQ(records().get_count(), 1u);
    const CdlDef& none = records()[0];
    EXPECT_EQ(str(none.name), "No CDL");
    EXPECT_EQ(str(none.file), "");
    EXPECT_EQ(str(none.cccid), "");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(none.slope[i], 1) << i;
        EXPECT_EQ(none.offset[i], 0) << i;
        EXPECT_EQ(none.power[i], 1) << i;
    }
    EXPECT_EQ(none.saturation, 1);
    EXPECT_TRUE(none.is_builtin);
}

TEST_F(CdlRegistry, FindsNamesAndPositions) {
    use_cdls({cdl_record("warm", {}), cdl_record("cool", {})});
    EXPECT_EQ(manager().get_CDL_index("No CDL"), 0u);
    EXPECT_EQ(manager().get_CDL_index("cool"), 2u);
    EXPECT_EQ(manager().get_CDL_index("Cool"), NOT_FOUND);
    EXPECT_EQ(manager().get_CDL_index(""), NOT_FOUND);
    EXPECT_EQ(str(manager().get_CDL_name(1)), "warm");
    EXPECT_EQ(str(manager().get_CDL_name(3)), "");
    EXPECT_EQ(str(manager().get_CDL_name(NOT_FOUND)), "");
    EXPECT_EQ(ColorIO::get_CDL_index("warm"), 1u);
    EXPECT_EQ(str(ColorIO::get_CDL_name(2)), "cool");
    EXPECT_EQ(str(ColorIO::get_default_CDL_name()), "No CDL");
}

TEST_F(CdlRegistry, FillsItsMenuWithPositionsAsValues) {
    use_cdls({cdl_record("warm", {}), cdl_record("cool", {})});
    const OfEnum* menu = app.get_enum("color_decision_list");
    EXPECT_THAT(labels(menu), ElementsAre("No CDL", "warm", "cool"));
    EXPECT_THAT(values(menu), ElementsAre(0u, 1u, 2u));
    EXPECT_FALSE(menu->is_asleep());
}

// Replacing the list

TEST_F(CdlRegistry, TakesAWholeList) {
    CoreVector<CdlDef> list = records();
    list.append(cdl_record("double", {{2, 2, 2}}));
    manager().set_tavelion_config(list);
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "double"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "double"));
    EXPECT_EQ(grade("double", 0.25f), 0.5f);
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlRegistry, PublishesTheIdentityThoughAListLacksIt) {
    CoreVector<CdlDef> list;
    list.append(cdl_record("double", {{2, 2, 2}}));
    manager().set_tavelion_config(list);
    EXPECT_THAT(record_names(), ElementsAre("double"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "double"));
    manager().set_tavelion_config(CoreVector<CdlDef>());
    EXPECT_THAT(record_names(), IsEmpty());
    EXPECT_THAT(published(), ElementsAre("No CDL"));
}

TEST_F(CdlRegistry, KeepsRecordsMarkedBuiltInWithoutMakingThem) {
    CdlDef marked = cdl_record("marked", {});
    marked.is_builtin = true;
    use_cdls({marked});
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "marked"));
    EXPECT_THAT(published(), ElementsAre("No CDL"));
}

TEST_F(CdlRegistry, LetsTheLaterOfTwoRecordsOfOneNameWinAndReportsIt) {
    CoreVector<CdlDef> list = records();
    list.append(cdl_record("twice", {{2, 2, 2}}));
    list.append(cdl_record("twice", {{4, 4, 4}}));
    manager().set_tavelion_config(list);
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "twice", "twice"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "twice"));
    EXPECT_THAT(take_log(), ElementsAre(duplicate("twice")));
    EXPECT_EQ(grade("twice", 0.25f), 1.0f);
}

TEST_F(CdlRegistry, ReadsTheCorrectionOfARecordsFile) {
    CdlDef single = cdl_record("single", {{100, 100, 100}});
    single.file = write_file("single.cc", correction_text("x", "2")).c_str();
    single.cccid = "ignored";
    CdlDef second = cdl_record("second", {});
    second.file =
        write_file("pair.ccc", collection_text(correction_text("a", "2") + correction_text("b", "4")))
            .c_str();
    second.cccid = "b";
    CdlDef upper = cdl_record("upper", {});
    upper.file =
        write_file("pair.CCC", collection_text(correction_text("a", "2") + correction_text("b", "4")))
            .c_str();
    upper.cccid = "b";
    CdlDef bare = cdl_record("bare", {});
    bare.file =
        write_file("pair", collection_text(correction_text("a", "2") + correction_text("b", "4"))).c_str();
    bare.cccid = "b";
    use_cdls({single, second, upper, bare});
    EXPECT_FLOAT_EQ(grade("single", 0.25f), 0.5f) << "the file counts, not the values";
    EXPECT_FLOAT_EQ(grade("second", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(grade("upper", 0.25f), 0.5f) << "an id is used with the extension ccc only";
    EXPECT_FLOAT_EQ(grade("bare", 0.25f), 0.5f);
}

TEST_F(CdlRegistry, MakesOneSpaceForEachCdlAndADisplayForTheBuiltInOne) {
    use_cdls({cdl_record("warm", {{2, 2, 2}})});
    const ocio::ConstConfigRcPtr config = manager().get_cdl_config();
    EXPECT_EQ(std::string(ocio::get_working_dir(config)), folder.get_path());
    ASSERT_EQ(ocio::get_num_displays(config), 1);
    EXPECT_STREQ(ocio::get_display(config, 0), "Tavelion");
    ASSERT_EQ(ocio::get_num_views(config, "Tavelion"), 1);
    EXPECT_STREQ(ocio::get_view(config, "Tavelion", 0), "No CDL");
    EXPECT_EQ(ocio::get_display_color_space_name(config, "Tavelion", "No CDL"), "No CDL");
    ASSERT_EQ(ocio::get_num_color_spaces(config), 2);
    for (const char* name : {"No CDL", "warm"}) {
        const ocio::ConstColorSpaceRcPtr space = ocio::get_color_space(config, name);
        ASSERT_TRUE(space) << name;
        EXPECT_EQ(ocio::get_bit_depth(space), ocio::BIT_DEPTH_F32) << name;
        EXPECT_EQ(ocio::get_allocation(space), ocio::ALLOCATION_LG2) << name;
        EXPECT_TRUE(ocio::get_transform(space, ocio::COLORSPACE_DIR_FROM_REFERENCE)) << name;
        EXPECT_FALSE(ocio::get_transform(space, ocio::COLORSPACE_DIR_TO_REFERENCE)) << name;
    }
}

TEST_F(CdlRegistry, EmptiesTheConfigThatANewListReplaces) {
    use_cdls({cdl_record("warm", {{2, 2, 2}})});
    const ocio::ConstConfigRcPtr replaced = manager().get_cdl_config();
    use_cdls({cdl_record("cool", {{3, 3, 3}})});
    EXPECT_EQ(ocio::get_num_color_spaces(replaced), 0);
    EXPECT_EQ(ocio::get_num_color_spaces(manager().get_cdl_config()), 2);
}

TEST_F(CdlRegistry, TellsOfOneChangeOfTheMenuAndThenOfTheList) {
    OfEnum& menu = *app.get_enum("color_decision_list");
    const unsigned int before = menu.get_change_count();
    EventRecorder events;
    std::vector<std::string> seen;
    events.on_event = [&](const std::string& event) {
        if (event == CDL_LIST_EVENT && !menu.is_asleep())
            seen = labels(&menu);
    };
    use_cdls({cdl_record("warm", {}), cdl_record("cool", {})});
    EXPECT_EQ(menu.get_change_count(), before + 1);
    EXPECT_THAT(seen, ElementsAre("No CDL", "warm", "cool"));
}

TEST_F(CdlRegistry, UsesTheValuesOfARecordWhoseFileIsMissing) {
    CdlDef lost = cdl_record("lost", {{2, 2, 2}});
    lost.file = path_of("absent.ccc").c_str();
    lost.cccid = "x";
    use_cdls({lost});
    EXPECT_EQ(grade("lost", 0.25f), 0.5f);
}

TEST_F(CdlRegistry, ReportsAndPassesOverARecordOfADamagedFile) {
    CdlDef damaged = cdl_record("damaged", {{2, 2, 2}});
    damaged.file = write_file("damaged.cc", "<ColorCorrection><SOPNode>").c_str();
    CoreVector<CdlDef> list;
    list.append(damaged);
    list.append(cdl_record("good", {{2, 2, 2}}));
    manager().set_tavelion_config(list);
    EXPECT_THAT(take_log(), ElementsAre(error("Color Management: the custom CDL 'damaged' has errors and was "
                                              "ignored.\n"),
                                        OcioExceptionAt(LOG_ERROR)));
    EXPECT_THAT(published(), ElementsAre("No CDL", "good"));
    EXPECT_THAT(record_names(), ElementsAre("damaged", "good"));
}

// Local CDLs

TEST_F(CdlRegistry, AddsALocalCdlWithoutListingIt) {
    use_cdls({cdl_record("warm", {})});
    EXPECT_TRUE(manager().add_local_CDL(cdl_record(INPUT_LOCAL_CDL, {{2, 2, 2}})));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "warm"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm"));
    EXPECT_THAT(take_events(), IsEmpty());
    ASSERT_TRUE(converter->configure_CDL("input_local_CDL", "No CDL"));
    EXPECT_EQ(convert(0.5f, 0.5f, 0.5f)[0], 0.25f);
}

TEST_F(CdlRegistry, ReplacesALocalCdlByTheNextOfItsName) {
    EXPECT_TRUE(manager().add_local_CDL(cdl_record(OUTPUT_LOCAL_CDL, {{2, 2, 2}})));
    EXPECT_TRUE(manager().add_local_CDL(cdl_record(OUTPUT_LOCAL_CDL, {{4, 4, 4}})));
    EXPECT_EQ(grade("output_local_CDL", 0.25f), 1.0f);
}

TEST_F(CdlRegistry, ReplacesAListedCdlByALocalOneInConversionsOnly) {
    use_cdls({cdl_record("warm", {{2, 2, 2}}), cdl_record("cool", {{8, 8, 8}})});
    EXPECT_TRUE(manager().add_local_CDL(cdl_record("warm", {{4, 4, 4}})));
    EXPECT_EQ(grade("warm", 0.25f), 1.0f);
    EXPECT_EQ(grade("cool", 0.25f), 2.0f);
    ASSERT_EQ(records().get_count(), 3u);
    EXPECT_EQ(records()[1].slope[0], 2);
}

TEST_F(CdlRegistry, PublishesALocalCdlOnceTheListIsRebuilt) {
    EXPECT_TRUE(manager().add_local_CDL(cdl_record(INPUT_LOCAL_CDL, {{2, 2, 2}})));
    manager().use_file_config(false);
    EXPECT_THAT(published(), ElementsAre("No CDL", "input_local_CDL"));
}

TEST_F(CdlRegistry, DoesNotMakeALocalCdlMarkedBuiltIn) {
    CdlDef marked = cdl_record(INPUT_LOCAL_CDL, {{2, 2, 2}});
    marked.is_builtin = true;
    EXPECT_TRUE(manager().add_local_CDL(marked));
    EXPECT_FALSE(converter->configure_CDL("input_local_CDL", "No CDL"));
    EXPECT_THAT(take_log(), IsEmpty()) << "an unknown name stands for No CDL";
}

// Starting

class CdlStart : public ManagerTest {};

TEST_F(CdlStart, WithoutATemporaryFolderLeavesNoCdlAtAll) {
    app.answer_folder_request = [](unsigned int, CoreString&) { return false; };
    EXPECT_FALSE(ColorIOManager::static_init(&app));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_CDL_names()), IsEmpty());
    EXPECT_EQ(manager.get_CDL_index("No CDL"), NOT_FOUND);
    const std::vector<LogLine> lines = take_log();
    EXPECT_THAT(lines, Contains(LogLine{1, "Color Management: failed to create the temporary folder for the "
                                           "built-in CDL files.\n"}));
    EXPECT_THAT(lines, Contains(LogLine{1, "Color Management: failed to create Tavelion built-in CDL "
                                           "configuration.\n"}));
}

TEST_F(CdlStart, WithoutAnApplicationPublishesNothing) {
    EXPECT_TRUE(ColorIOManager::static_init(nullptr));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    EXPECT_THAT(strings(manager.get_CDL_names()), IsEmpty());
    EXPECT_EQ(manager.get_CDL_index("No CDL"), NOT_FOUND);
    EXPECT_EQ(str(manager.get_CDL_name(0)), "");
    EXPECT_EQ(str(manager.get_default_CDL_name()), "No CDL");
    manager.update_file_cdl_library_path();
    EXPECT_THAT(take_log(), IsEmpty());
}

} // namespace
