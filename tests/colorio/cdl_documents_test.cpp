#include "colorio/color_io_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/cdl_document_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

const char* const WHOLE = R"(<?xml version="1.0" encoding="UTF-8"?>
<ColorCorrection id="shot 7">
    <SOPNode>
        <Description>warmer</Description>
        <Slope>1.1 1.2 1.3</Slope>
        <Offset>-0.1 0 0.1</Offset>
        <Power>0.9 1 1.5</Power>
    </SOPNode>
    <SATNode>
        <Saturation>0.8</Saturation>
    </SATNode>
</ColorCorrection>
)";

// Reading one correction

TEST_F(CdlDocument, FillsARecordFromOneCorrection) {
    const CdlDef record = read(WHOLE);
    expect_values(record, {1.1f, 1.2f, 1.3f}, {-0.1f, 0, 0.1f}, {0.9f, 1, 1.5f}, 0.8f);
    EXPECT_FALSE(record.is_builtin);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, NeedsNoDeclaration) {
    expect_values(read(correction_text("x", "2", "0.5", "3", "0.25")), {2, 2, 2}, {0.5f, 0.5f, 0.5f},
                  {3, 3, 3}, 0.25f);
}

TEST_F(CdlDocument, MayNameItsElementsInAnyLetterCase) {
    expect_values(
        read("<COLORCORRECTION><sopnode><SLOPE>2 2 2</SLOPE><oFFSET>0 0 0</oFFSET><power>1 1 1</power>"
             "</sopnode><SatNode><saturation>1</saturation></SatNode></COLORCORRECTION>"),
        {2, 2, 2}, {0, 0, 0}, {1, 1, 1}, 1);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, MayNameItsTopElementAnything) {
    expect_values(
        read("<Grade><SOPNode><Slope>2 2 2</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
             "<SATNode><Saturation>1</Saturation></SATNode></Grade>"),
        {2, 2, 2}, {0, 0, 0}, {1, 1, 1}, 1);
}

TEST_F(CdlDocument, ThatIsMissingChangesNothingInSilence) {
    CdlDef record = odd_record();
    manager.read_CDL_from_XML(path_of("absent.xml").c_str(), record, false);
    manager.read_CDL_from_XML("", record, true);
    expect_values(record, {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40);
    EXPECT_TRUE(record.is_builtin);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, ThatIsDamagedChangesNothingAndIsReported) {
    for (const char* damaged : {"<ColorCorrection><SOPNode>", "", "no markup at all, just words in a row"}) {
        testing::internal::CaptureStdout();
        const CdlDef record = read(damaged);
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_THAT(printed, StartsWith("XML Parsing error inside file '" + path + "'.\n"));
        EXPECT_THAT(take_log(), ElementsAre(LogLine{1, "XML Error with file '" + path + "'.\n"})) << damaged;
        expect_values(record, {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40);
        EXPECT_TRUE(record.is_builtin);
    }
}

TEST_F(CdlDocument, WithoutSopNodeKeepsItsValuesAndReadsTheSaturation) {
    const CdlDef record =
        read("<ColorCorrection><SATNode><Saturation>0.5</Saturation></SATNode></ColorCorrection>");
    EXPECT_THAT(take_log(), ElementsAre(missing("SOPNode")));
    expect_values(record, {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 0.5f);
    EXPECT_FALSE(record.is_builtin);
}

TEST_F(CdlDocument, WithoutOneSopElementReadsTheOthers) {
    const std::string saturation = "<SATNode><Saturation>0.5</Saturation></SATNode>";
    const CdlDef no_slope =
        read("<ColorCorrection><SOPNode><Offset>1 2 3</Offset><Power>4 5 6</Power></SOPNode>" + saturation +
             "</ColorCorrection>");
    EXPECT_THAT(take_log(), ElementsAre(missing("Slope")));
    expect_values(no_slope, {10, 11, 12}, {1, 2, 3}, {4, 5, 6}, 0.5f);
    const CdlDef no_offset =
        read("<ColorCorrection><SOPNode><Slope>1 2 3</Slope><Power>4 5 6</Power></SOPNode>" + saturation +
             "</ColorCorrection>");
    EXPECT_THAT(take_log(), ElementsAre(missing("Offset")));
    expect_values(no_offset, {1, 2, 3}, {20, 21, 22}, {4, 5, 6}, 0.5f);
    const CdlDef nothing = read("<ColorCorrection><SOPNode></SOPNode>" + saturation + "</ColorCorrection>");
    EXPECT_THAT(take_log(), ElementsAre(missing("Slope"), missing("Offset"), missing("Power")));
    expect_values(nothing, {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 0.5f);
}

TEST_F(CdlDocument, WithoutASaturationKeepsItAndTheBuiltInMark) {
    const std::string sop =
        "<SOPNode><Slope>1 2 3</Slope><Offset>4 5 6</Offset><Power>7 8 9</Power></SOPNode>";
    for (const std::string& ending :
         {std::string(), std::string("<SATNode></SATNode>"), std::string("<SATNode/>")}) {
        const CdlDef record = read("<ColorCorrection>" + sop + ending + "</ColorCorrection>");
        EXPECT_THAT(take_log(), ElementsAre(missing("Saturation")));
        expect_values(record, {1, 2, 3}, {4, 5, 6}, {7, 8, 9}, 40);
        EXPECT_TRUE(record.is_builtin);
    }
}

TEST_F(CdlDocument, ReportsEverythingThatIsMissingInOrder) {
    read("<ColorCorrection><Description>empty</Description></ColorCorrection>");
    EXPECT_THAT(take_log(), ElementsAre(missing("SOPNode"), missing("Saturation")));
    log.set_level(0);
    read("<ColorCorrection><Description>empty</Description></ColorCorrection>");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, WithFewerNumbersKeepsTheOtherChannels) {
    expect_values(
        read("<ColorCorrection><SOPNode><Slope>1 2</Slope><Offset>3</Offset><Power></Power></SOPNode>"
             "<SATNode><Saturation>0.5</Saturation></SATNode></ColorCorrection>"),
        {1, 2, 12}, {3, 21, 22}, {30, 31, 32}, 0.5f);
}

TEST_F(CdlDocument, WithMoreNumbersRunsOnIntoTheNextFields) {
    EXPECT_EQ(read("<ColorCorrection><SOPNode><Slope>1 2 3 4</Slope></SOPNode></ColorCorrection>").offset[0],
              4);
    expect_values(
        read("<ColorCorrection><SOPNode><Slope>1 2 3 4 5 6 7 8 9</Slope></SOPNode></ColorCorrection>"),
        {1, 2, 3}, {4, 5, 6}, {7, 8, 9}, 40);
    expect_values(read("<ColorCorrection><SOPNode><Offset>1 2 3 4</Offset></SOPNode></ColorCorrection>"),
                  {10, 11, 12}, {1, 2, 3}, {4, 31, 32}, 40);
    expect_values(read("<ColorCorrection><SOPNode><Power>1 2 3 4</Power></SOPNode></ColorCorrection>"),
                  {10, 11, 12}, {20, 21, 22}, {1, 2, 3}, 4);
}

TEST_F(CdlDocument, ReadsElementsInTheirOrderSoThatLaterOnesOverrideWhatRanOn) {
    expect_values(read("<ColorCorrection><SOPNode><Slope>1 2 3 4 5 6 7</Slope><Offset>0.1 0.2</Offset>"
                       "<Power>8 8 8 8</Power></SOPNode><SATNode><Saturation>0.5</Saturation></SATNode>"
                       "</ColorCorrection>"),
                  {1, 2, 3}, {0.1f, 0.2f, 6}, {8, 8, 8}, 0.5f);
}

TEST_F(CdlDocument, NeverRunsOnPastTheRecord) {
    std::string many;
    for (int i = 0; i < 1000; ++i)
        many += "7 ";
    for (const char* element : {"Slope", "Offset", "Power"}) {
        const CdlDef record = read("<ColorCorrection><SOPNode><" + std::string(element) + ">" + many + "</" +
                                   element + "></SOPNode></ColorCorrection>");
        EXPECT_EQ(record.power[2], 7) << element;
    }
    EXPECT_EQ(read("<ColorCorrection><SATNode><Saturation>0.5 7 7 7</Saturation></SATNode></ColorCorrection>")
                  .saturation,
              0.5f);
}

TEST_F(CdlDocument, ReadsWordsThatAreNoNumbersAs0) {
    expect_values(
        read("<ColorCorrection><SOPNode><Slope>one 2 1.5x</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power>"
             "</SOPNode><SATNode><Saturation>much</Saturation></SATNode></ColorCorrection>"),
        {0, 2, 1.5f}, {0, 0, 0}, {1, 1, 1}, 0);
}

// Reading a collection

TEST_F(CdlDocument, OfACollectionFillsARecordFromItsLastCorrection) {
    expect_values(
        read(collection_text(correction_text("a", "2") + correction_text("b", "4", "0.5", "3", "0.25")),
             true),
        {4, 4, 4}, {0.5f, 0.5f, 0.5f}, {3, 3, 3}, 0.25f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, OfACollectionMixesWhatItsCorrectionsHold) {
    expect_values(
        read(collection_text(correction_text("a", "2", "0.5", "3", "0.25") +
                             "<ColorCorrection><SOPNode><Slope>4 4 4</Slope></SOPNode></ColorCorrection>"),
             true),
        {4, 4, 4}, {0.5f, 0.5f, 0.5f}, {3, 3, 3}, 0.25f);
    EXPECT_THAT(take_log(), ElementsAre(missing("Offset"), missing("Power"), missing("Saturation")));
}

TEST_F(CdlDocument, OfACollectionCountsCorrectionsButTakesChildrenByPosition) {
    const CdlDef record = read(collection_text("<Description>two grades</Description>" +
                                               correction_text("a", "2") + correction_text("b", "4")),
                               true);
    EXPECT_THAT(take_log(), ElementsAre(missing("SOPNode"), missing("Saturation")));
    EXPECT_EQ(record.slope[0], 2) << "the second correction is never read";
}

TEST_F(CdlDocument, OfACollectionDoesNotCountComments) {
    expect_values(read(collection_text("<!-- two grades -->" + correction_text("a", "2") + "<!-- and -->" +
                                       correction_text("b", "4")),
                       true),
                  {4, 4, 4}, {0, 0, 0}, {1, 1, 1}, 1);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, OfACollectionWithoutCorrectionsChangesNothing) {
    const CdlDef record = read(collection_text("<Description>none yet</Description>"), true);
    expect_values(record, {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, OfOneCorrectionReadAsACollectionChangesNothing) {
    expect_values(read(correction_text("a", "2"), true), {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, OfACollectionReadAsOneCorrectionLacksEverything) {
    expect_values(read(collection_text(correction_text("a", "2"))), {10, 11, 12}, {20, 21, 22}, {30, 31, 32},
                  40);
    EXPECT_THAT(take_log(), ElementsAre(missing("SOPNode"), missing("Saturation")));
}

// Awkward documents

TEST_F(CdlDocument, OfADeclarationAloneHasNoCorrection) {
    expect_values(read("<?xml version=\"1.0\"?>\n"), {10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40);
    EXPECT_THAT(take_log(), ElementsAre(missing("ColorCorrection")));
}

TEST_F(CdlDocument, WhoseTopElementIsNamedLikeADeclarationIsReadInside) {
    read("<xmlgrade/>");
    EXPECT_THAT(take_log(), ElementsAre(missing("ColorCorrection")));
    EXPECT_EQ(read("<xmlGrade>" + correction_text("x", "2") + "</xmlGrade>").slope[0], 2);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, TakesTheFirstRunOfATextThatAnElementParts) {
    const CdlDef record = read("<ColorCorrection><SOPNode><Slope>1 2<x/>3</Slope><Offset>0 0 0</Offset>"
                               "<Power>1 1 1</Power></SOPNode><SATNode><Saturation>1</Saturation></SATNode>"
                               "</ColorCorrection>");
    EXPECT_THAT(record.slope, ElementsAre(1, 2, 12));
}

TEST_F(CdlDocument, WithAnEmptySaturationIsReadAllTheSame) {
    const CdlDef record = read("<ColorCorrection><SOPNode><Slope>1 1 1</Slope><Offset>0 0 0</Offset>"
                               "<Power>1 1 1</Power></SOPNode><SATNode><Saturation/></SATNode>"
                               "</ColorCorrection>");
    EXPECT_EQ(record.saturation, 40);
    EXPECT_FALSE(record.is_builtin);
    EXPECT_THAT(take_log(), IsEmpty());
}

} // namespace
