#include "colorio/color_io_manager.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "host/event/event_ids.h"
#include "host/of/of_enum.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using CdlDef = ColorIOManager::ColorDecisionListDef;

class CdlRegistry : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }
    std::vector<std::string> published() { return strings(manager().get_CDL_names()); }
    const CoreVector<CdlDef>& records() { return manager().get_tavelion_color_decision_lists(); }
    std::vector<std::string> record_names() {
        std::vector<std::string> names;
        for (const CdlDef& record : records())
            names.push_back(str(record.name));
        return names;
    }

    static LogLine duplicate(const std::string& name) {
        return warning("Color Management: duplicate CDL '" + name +
                       "' is already defined in the current configuration.\n");
    }

    /// Makes a file of that text the application's CDL library and tells the module; answers its path.
    std::string use_library(const std::string& text, const char* name = "library.ccc") {
        const std::string path = write_file(name, text);
        follow_library(path);
        return path;
    }
    void follow_library(const std::string& path) {
        app.cdl_library_file_path = path.c_str();
        app.raise_event(EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    }

    /// Red of the grey that the CDL of that name makes of `value`.
    float grade(const char* name, float value) {
        EXPECT_TRUE(converter->configure_CDL("No CDL", name)) << name;
        return convert(value, value, value)[0];
    }
};

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
    use_cdls({single, second, upper});
    EXPECT_FLOAT_EQ(grade("single", 0.25f), 0.5f) << "the file counts, not the values";
    EXPECT_FLOAT_EQ(grade("second", 0.25f), 1.0f);
    EXPECT_FLOAT_EQ(grade("upper", 0.25f), 0.5f) << "an id is used with the extension ccc only";
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

// The library

TEST_F(CdlRegistry, ReadsEveryCorrectionOfTheLibrary) {
    const std::string path = use_library(
        collection_text(correction_text("warm", "2", "0.125", "1.5", "0.75") + correction_text("cool", "4")));
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm", "cool"));
    ASSERT_EQ(records().get_count(), 3u);
    const CdlDef& warm = records()[1];
    EXPECT_EQ(str(warm.name), "warm");
    EXPECT_EQ(str(warm.file), path);
    EXPECT_EQ(str(warm.cccid), "warm");
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(warm.slope[i], 2) << i;
        EXPECT_EQ(warm.offset[i], 0.125f) << i;
        EXPECT_EQ(warm.power[i], 1.5f) << i;
    }
    EXPECT_EQ(warm.saturation, 0.75f);
    EXPECT_FALSE(warm.is_builtin);
    EXPECT_FLOAT_EQ(grade("cool", 0.25f), 1.0f);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
}

TEST_F(CdlRegistry, ReadsALibraryWithoutADeclaration) {
    use_library(
        "<colorcorrectioncollection><colorcorrection ID=\"no\" id=\"yes\"><sopnode><slope>2 2 2</slope>"
        "<offset>0 0 0</offset><power>1 1 1</power></sopnode><satnode><saturation>1</saturation></satnode>"
        "</colorcorrection></colorcorrectioncollection>");
    ASSERT_EQ(records().get_count(), 2u) << "element names in any letter case";
}

TEST_F(CdlRegistry, ReadsNumbersApartByAnyBlanks) {
    use_library(collection_text(
        "<ColorCorrection id=\"wide\"><SOPNode><Slope>\n\t1.5   2\t2.5\n</Slope><Offset>-1e-1 "
        "+.5 0</Offset><Power>1 1 1</Power></SOPNode><SATNode><Saturation> 0.5 </Saturation>"
        "</SATNode></ColorCorrection>"));
    ASSERT_EQ(records().get_count(), 2u);
    EXPECT_THAT(records()[1].slope, ElementsAre(1.5f, 2, 2.5f));
    EXPECT_EQ(records()[1].offset[0], -0.1f);
    EXPECT_EQ(records()[1].saturation, 0.5f);
}

TEST_F(CdlRegistry, ReadsALibraryOfAnotherExtensionWithItsFirstCorrectionForAll) {
    use_library(collection_text(correction_text("warm", "2") + correction_text("cool", "4")), "library.xml");
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm", "cool"));
    EXPECT_EQ(records()[2].slope[0], 4);
    EXPECT_FLOAT_EQ(grade("cool", 0.25f), 0.5f) << "the file is asked without an id";
}

TEST_F(CdlRegistry, ListsTwoCorrectionsOfOneIdAndPublishesTheirNameOnce) {
    use_library(collection_text(correction_text("same", "2") + correction_text("same", "4")));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "same", "same"));
    EXPECT_EQ(records()[1].slope[0], 2);
    EXPECT_EQ(records()[2].slope[0], 4);
    const std::vector<std::string> menu = labels(app.get_enum("color_decision_list"));
    EXPECT_EQ(std::count(menu.begin(), menu.end(), "same"), 1);
    EXPECT_THAT(take_log(), Contains(duplicate("same")));
}

TEST_F(CdlRegistry, DoesNotDoubleALibraryOfTwoCorrectionsOfOneIdThatIsReadTwice) {
    const std::string path =
        use_library(collection_text(correction_text("same", "2") + correction_text("same", "4")));
    follow_library(path);
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "same", "same"));
}

TEST_F(CdlRegistry, DoesNotDoubleALibraryThatIsReadTwice) {
    const std::string path =
        use_library(collection_text(correction_text("warm", "2") + correction_text("cool", "4")));
    follow_library(path);
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "warm", "cool"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm", "cool"));
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT, CDL_LIST_EVENT));
}

TEST_F(CdlRegistry, ReadsAnEditedLibraryAfresh) {
    const std::string path = use_library(collection_text(correction_text("warm", "2")));
    EXPECT_FLOAT_EQ(grade("warm", 0.25f), 0.5f);
    write_file("library.ccc", collection_text(correction_text("warm", "4") + correction_text("new", "8")));
    follow_library(path);
    EXPECT_FLOAT_EQ(grade("warm", 0.25f), 1.0f);
    EXPECT_EQ(records()[1].slope[0], 4);
    EXPECT_FLOAT_EQ(grade("new", 0.25f), 2.0f);
}

TEST_F(CdlRegistry, ReplacesTheCdlsOfAnEarlierLibrary) {
    use_cdls({cdl_record("mine", {})});
    use_library(collection_text(correction_text("warm", "2")), "first.ccc");
    use_library(collection_text(correction_text("cool", "4")), "second.ccc");
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "mine", "cool"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "mine", "cool"));
}

TEST_F(CdlRegistry, KeepsTheSecondOfTwoAdjacentRecordsOfARemovedCorrection) {
    const std::string path = use_library(collection_text(correction_text("warm", "2")), "first.ccc");
    CoreVector<CdlDef> list = records();
    CdlDef twin = list[1];
    twin.name = "twin";
    list.append(twin);
    manager().set_tavelion_config(list);
    use_library(collection_text(correction_text("cool", "4")), "second.ccc");
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "twin", "cool"));
}

TEST_F(CdlRegistry, RemovesEveryRecordOfARemovedCorrectionThatIsNotAdjacentToAnother) {
    use_library(collection_text(correction_text("warm", "2")), "first.ccc");
    CoreVector<CdlDef> list = records();
    CdlDef twin = list[1];
    twin.name = "twin";
    list.append(cdl_record("between", {}));
    list.append(twin);
    manager().set_tavelion_config(list);
    use_library(collection_text(correction_text("cool", "4")), "second.ccc");
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "between", "cool"));
}

TEST_F(CdlRegistry, StaysAsItIsForAnEmptyPath) {
    use_library(collection_text(correction_text("warm", "2")));
    take_events();
    follow_library("");
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "warm"));
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm"));
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(CdlRegistry, PublishesTheIdentityAloneWhenTheLibraryIsMissing) {
    use_cdls({cdl_record("mine", {})});
    use_library(collection_text(correction_text("warm", "2")));
    follow_library(path_of("absent.ccc"));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "mine"));
    EXPECT_THAT(published(), ElementsAre("No CDL")) << "custom CDLs are made with the library's";
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlRegistry, ReportsALibraryThatIsNoXml) {
    testing::internal::CaptureStdout();
    const std::string path = use_library("<ColorCorrectionCollection><ColorCorrection");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(printed.rfind("XML Parsing error inside file '" + path + "'.\n", 0), 0u) << printed;
    EXPECT_THAT(take_log(), ElementsAre(error("XML Error with file '" + path + "'.\n")));
    EXPECT_THAT(published(), ElementsAre("No CDL"));
    EXPECT_THAT(take_events(), ElementsAre(CDL_LIST_EVENT));
}

/// A correction that lacks an element, and the message about it.
struct IncompleteCorrection {
    const char* missing;
    const char* content;
};

class IncompleteLibrary : public CdlRegistry, public testing::WithParamInterface<IncompleteCorrection> {};

TEST_P(IncompleteLibrary, IsGivenUpAtTheFirstMissingElement) {
    const std::string incomplete =
        "<ColorCorrection id=\"bad\">" + std::string(GetParam().content) + "</ColorCorrection>";
    const std::string path = use_library(
        collection_text(correction_text("before", "2") + incomplete + correction_text("after", "4")));
    EXPECT_THAT(take_log(), ElementsAre(error("Node '" + std::string(GetParam().missing) + "' not find in '" +
                                              path + "'.\n")));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "before")) << "what was read so far stays listed";
    EXPECT_THAT(published(), ElementsAre("No CDL")) << "but is not made";
}

INSTANTIATE_TEST_SUITE_P(
    CdlRegistry, IncompleteLibrary,
    testing::Values(
        IncompleteCorrection{"SOPNode", "<SATNode><Saturation>1</Saturation></SATNode>"},
        IncompleteCorrection{"Slope", "<SOPNode><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
                                      "<SATNode><Saturation>1</Saturation></SATNode>"},
        IncompleteCorrection{"Offset", "<SOPNode><Slope>1 1 1</Slope><Power>1 1 1</Power></SOPNode>"
                                       "<SATNode><Saturation>1</Saturation></SATNode>"},
        IncompleteCorrection{"Power", "<SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset></SOPNode>"
                                      "<SATNode><Saturation>1</Saturation></SATNode>"},
        IncompleteCorrection{"Saturation", "<SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                                           "<Power>1 1 1</Power></SOPNode><SATNode></SATNode>"}),
    [](const auto& correction) { return std::string("Without") + correction.param.missing; });

TEST_F(CdlRegistry, CountsCorrectionsButTakesChildrenByPosition) {
    const std::string path =
        use_library(collection_text("<Description>two grades</Description>" + correction_text("warm", "2")));
    EXPECT_THAT(take_log(), ElementsAre(error("Node 'SOPNode' not find in '" + path + "'.\n")));
    EXPECT_THAT(record_names(), ElementsAre("No CDL"));

    use_library(collection_text(correction_text("warm", "2") + "<Description>ignored</Description>"),
                "other.ccc");
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm"));
}

TEST_F(CdlRegistry, ReadsALibraryOfNoCorrections) {
    use_library(collection_text(""));
    EXPECT_THAT(published(), ElementsAre("No CDL"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlRegistry, KeepsConvertersOfARemovedLibraryWorking) {
    use_library(collection_text(correction_text("warm", "2")));
    ASSERT_TRUE(converter->configure_CDL("No CDL", "warm"));
    follow_library(path_of("absent.ccc"));
    EXPECT_FLOAT_EQ(convert(0.25f, 0, 0)[0], 0.5f);
}

TEST_F(CdlRegistry, SaysNothingToAHandlerThatWantsNoErrors) {
    log.set_level(0);
    use_library(collection_text("<ColorCorrection id=\"bad\"/>"));
    EXPECT_THAT(take_log(), IsEmpty());
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
