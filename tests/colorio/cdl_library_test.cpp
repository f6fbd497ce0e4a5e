#include "colorio/color_io_manager.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/of/of_enum.h"
#include "tests/colorio/cdl_registry_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

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
    EXPECT_EQ(str(records()[1].name), "yes") << "the attribute's name in this letter case only";
    EXPECT_EQ(str(records()[1].cccid), "yes");
}

TEST_F(CdlRegistry, ReadsALibraryBehindAComment) {
    use_library("<!-- graded on set --><ColorCorrectionCollection>" + correction_text("warm", "2") +
                "</ColorCorrectionCollection>");
    EXPECT_THAT(published(), ElementsAre("No CDL", "warm"));
}

TEST_F(CdlRegistry, ListsACorrectionWithoutAnId) {
    use_library(collection_text("<ColorCorrection><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset>"
                                "<Power>1 1 1</Power></SOPNode><SATNode><Saturation>1</Saturation></SATNode>"
                                "</ColorCorrection>"));
    ASSERT_EQ(records().get_count(), 2u);
    EXPECT_EQ(str(records()[1].name), "");
    EXPECT_EQ(str(records()[1].cccid), "");
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

TEST_F(CdlRegistry, ReportsNoRepeatedNameOfWhatWasNotMade) {
    const std::string same = correction_text("same", "2") + correction_text("same", "4");
    const std::string path = use_library(collection_text(same + "<ColorCorrection id=\"cut\"/>"));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "same", "same"));
    EXPECT_THAT(published(), ElementsAre("No CDL"));
    EXPECT_THAT(take_log(), ElementsAre(error("Node 'SOPNode' not find in '" + path + "'.\n")));
}

TEST_F(CdlRegistry, TellsRecordsApartByFileAndId) {
    const std::string path = path_of("library.ccc");
    CdlDef same_id = cdl_record("other file", {});
    same_id.cccid = "warm";
    same_id.file = path_of("other.ccc").c_str();
    CdlDef same_file = cdl_record("other id", {});
    same_file.cccid = "cool";
    same_file.file = path.c_str();
    use_cdls({same_id, same_file});
    use_library(collection_text(correction_text("warm", "2")));
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "other file", "other id", "warm"));
    use_library(collection_text(correction_text("late", "2")), "late.ccc");
    EXPECT_THAT(record_names(), ElementsAre("No CDL", "other file", "other id", "late"));
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

TEST_F(CdlRegistry, KeepsARecordThatMovedUpBehindARemovedOne) {
    use_library(collection_text(correction_text("between", "1") + correction_text("warm", "2")), "first.ccc");
    const CoreVector<CdlDef> read = records();
    CdlDef twin = read[2];
    twin.name = "twin";
    CoreVector<CdlDef> list;
    for (const CdlDef& def : {read[2], read[1], twin})
        list.append(def);
    manager().set_tavelion_config(list);
    use_library(collection_text(correction_text("cool", "4")), "second.ccc");
    EXPECT_THAT(record_names(), ElementsAre("twin", "No CDL", "cool"));
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

} // namespace
