#include "colorio/color_io_manager.h"

#include <unistd.h>

#include <clocale>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using CdlDef = ColorIOManager::ColorDecisionListDef;

std::string content_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Documents read and written by a manager without a host.
class CdlDocument : public ManagerTest {
protected:
    void SetUp() override {
        // The XML library writes in the encoding of the last file it read.
        read(correction_text("x", "1"));
        take_log();
    }

    /// A record of odd values, to see which of them are replaced.
    static CdlDef odd_record() {
        CdlDef record = cdl_record("odd", {{10, 11, 12}, {20, 21, 22}, {30, 31, 32}, 40});
        record.file = "some file";
        record.cccid = "some id";
        record.is_builtin = true;
        return record;
    }
    CdlDef read(const std::string& text, bool collection = false) {
        path = write_file("cdl.xml", text);
        CdlDef record = odd_record();
        manager.read_CDL_from_XML(path.c_str(), record, collection);
        EXPECT_EQ(str(record.name), "odd");
        EXPECT_EQ(str(record.file), "some file");
        EXPECT_EQ(str(record.cccid), "some id");
        return record;
    }
    LogLine missing(const std::string& element) const {
        return {1, "Node '" + element + "' not find in '" + path + "'.\n"};
    }

    static CoreVector<CdlDef> list(std::initializer_list<CdlDef> records) {
        CoreVector<CdlDef> result;
        for (const CdlDef& record : records)
            result.append(record);
        return result;
    }
    /// Writes a document and answers its bytes.
    std::string written(std::initializer_list<CdlDef> records, bool collection) {
        const std::string target = path_of("written.xml");
        EXPECT_TRUE(manager.create_XML_from_CDL(list(records), target.c_str(), collection));
        return content_of(target);
    }

    ColorIOManager manager{nullptr};
    std::string path;
};

void expect_values(const CdlDef& record, const std::vector<float>& slope, const std::vector<float>& offset,
                   const std::vector<float>& power, float saturation) {
    EXPECT_THAT(record.slope, testing::ElementsAreArray(slope));
    EXPECT_THAT(record.offset, testing::ElementsAreArray(offset));
    EXPECT_THAT(record.power, testing::ElementsAreArray(power));
    EXPECT_EQ(record.saturation, saturation);
}

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

// Writing

const char* const HEADER = "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";

TEST_F(CdlDocument, IsWrittenAsACollectionIndentedByTabs) {
    EXPECT_EQ(written({cdl_record("grade", {{1.2, 1.0, 0.9}, {0, 0, 0}, {1, 1, 1}, 0.8})}, true),
              std::string(HEADER) + "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">\n"
                                    "\t<ColorCorrection id=\"grade\">\n"
                                    "\t\t<SOPNode>\n"
                                    "\t\t\t<Slope>\n"
                                    "\t\t\t\t1.2 1.0 0.9\n"
                                    "\t\t\t</Slope>\n"
                                    "\t\t\t<Offset>\n"
                                    "\t\t\t\t0.0 0.0 0.0\n"
                                    "\t\t\t</Offset>\n"
                                    "\t\t\t<Power>\n"
                                    "\t\t\t\t1.0 1.0 1.0\n"
                                    "\t\t\t</Power>\n"
                                    "\t\t</SOPNode>\n"
                                    "\t\t<SATNode>\n"
                                    "\t\t\t<Saturation>\n"
                                    "\t\t\t\t0.8\n"
                                    "\t\t\t</Saturation>\n"
                                    "\t\t</SATNode>\n"
                                    "\t</ColorCorrection>\n"
                                    "</ColorCorrectionCollection>\n");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, IsWrittenAsOneCorrection) {
    const std::string bytes = written({cdl_record("grade", {{1.2, 1.0, 0.9}})}, false);
    EXPECT_THAT(bytes, StartsWith(std::string(HEADER) +
                                  "<ColorCorrection id=\"grade\">\n\t<SOPNode>\n\t\t<Slope>\n"));
}

TEST_F(CdlDocument, WithoutCdlsIsAnEmptyCollection) {
    const std::string empty =
        std::string(HEADER) + "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\"/>\n";
    EXPECT_EQ(written({}, true), empty);
    EXPECT_EQ(written({cdl_record("No CDL", {})}, true), empty);
}

TEST_F(CdlDocument, WithoutCdlsIsNoFileAtAllOutsideACollection) {
    const std::string target = path_of("written.xml");
    EXPECT_TRUE(manager.create_XML_from_CDL({}, target.c_str(), false));
    EXPECT_NE(access(target.c_str(), F_OK), 0);
    write_file("written.xml", "kept");
    EXPECT_TRUE(manager.create_XML_from_CDL({}, target.c_str(), false));
    EXPECT_EQ(content_of(target), "kept");
}

TEST_F(CdlDocument, OfACollectionLeavesNoCdlOut) {
    const std::string bytes =
        written({cdl_record("No CDL", {}), cdl_record("grade", {}), cdl_record("no cdl", {})}, true);
    EXPECT_THAT(bytes, Not(HasSubstr("\"No CDL\"")));
    EXPECT_THAT(bytes, HasSubstr("id=\"grade\""));
    EXPECT_THAT(bytes, HasSubstr("id=\"no cdl\""));
}

TEST_F(CdlDocument, OfOneCorrectionHoldsTheLastOfTheListEvenNoCdl) {
    const std::string bytes = written({cdl_record("grade", {}), cdl_record("No CDL", {})}, false);
    EXPECT_THAT(bytes, HasSubstr("<ColorCorrection id=\"No CDL\">"));
    EXPECT_THAT(bytes, Not(HasSubstr("grade")));
}

TEST_F(CdlDocument, HoldsNumbersWithOneDecimal) {
    const std::string bytes =
        written({cdl_record("x", {{1.234, 0.96, 12345.678}, {-0.06, -1.25, 0.04}, {0.5, 10, 100}, 1})}, true);
    EXPECT_THAT(bytes, HasSubstr("1.2 1.0 12345.7\n"));
    EXPECT_THAT(bytes, HasSubstr("-0.1 -1.2 0.0\n"));
    EXPECT_THAT(bytes, HasSubstr("0.5 10.0 100.0\n"));
}

TEST_F(CdlDocument, EscapesNamesAndGivesThemBack) {
    const std::string bytes = written({cdl_record("<a & \"b\" 'c'> \xC3\xA9", {})}, true);
    EXPECT_THAT(bytes, HasSubstr("id=\"&lt;a &amp; &quot;b&quot; &apos;c&apos;&gt; \xC3\xA9\""));

    start_manager();
    app.cdl_library_file_path = path_of("written.xml").c_str();
    ColorIOManager::get_instance()->update_file_cdl_library_path();
    EXPECT_THAT(strings(ColorIOManager::get_instance()->get_CDL_names()),
                ElementsAre("No CDL", "<a & \"b\" 'c'> \xC3\xA9"));
}

TEST_F(CdlDocument, WrittenAndReadGivesNumbersOfOneDecimal) {
    written({cdl_record("x", {{1.23, 0.96, 2}, {-0.06, 0, 0.5}, {0.5, 1, 1.5}, 0.87})}, true);
    CdlDef record = odd_record();
    manager.read_CDL_from_XML(path_of("written.xml").c_str(), record, true);
    expect_values(record, {1.2f, 1, 2}, {-0.1f, 0, 0.5f}, {0.5f, 1, 1.5f}, 0.9f);
    EXPECT_FALSE(record.is_builtin);
}

TEST_F(CdlDocument, ReplacesAnEarlierFile) {
    write_file("written.xml", std::string(100000, 'x'));
    EXPECT_THAT(written({cdl_record("grade", {})}, true),
                StartsWith(std::string(HEADER) + "<ColorCorrectionCollection"));
}

TEST_F(CdlDocument, ThatCannotBeWrittenIsAFailureInSilence) {
    const CoreVector<CdlDef> grades = list({cdl_record("grade", {})});
    EXPECT_FALSE(manager.create_XML_from_CDL(grades, path_of("absent/written.xml").c_str(), true));
    EXPECT_FALSE(manager.create_XML_from_CDL(grades, path_of("").c_str(), true));
    EXPECT_FALSE(manager.create_XML_from_CDL(grades, "", false));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, UsesAPointForDecimalsUnderEveryLocale) {
    const std::string before = setlocale(LC_ALL, nullptr);
    if (!setlocale(LC_ALL, "de_DE.UTF-8") && !setlocale(LC_ALL, "fr_FR.UTF-8"))
        GTEST_SKIP() << "no locale with a decimal comma on this machine";
    const std::string bytes = written({cdl_record("x", {{1.5, 2.5, 3.5}})}, true);
    const CdlDef record = read(WHOLE);
    setlocale(LC_ALL, before.c_str());
    EXPECT_THAT(bytes, HasSubstr("1.5 2.5 3.5\n"));
    expect_values(record, {1.1f, 1.2f, 1.3f}, {-0.1f, 0, 0.1f}, {0.9f, 1, 1.5f}, 0.8f);
}

} // namespace
