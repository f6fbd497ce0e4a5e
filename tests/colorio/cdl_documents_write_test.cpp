#include "colorio/color_io_manager.h"

#include <unistd.h>

#include <clocale>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/cdl_document_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

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
    EXPECT_FALSE(manager.create_XML_from_CDL(grades, "/dev/full", true)) << "opens, and takes nothing";
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(CdlDocument, IsWrittenInTheEncodingOfTheLastOneRead) {
    read("<?xml version=\"1.0\" encoding=\"Shift-JIS\"?>" + correction_text("x", "2"));
    EXPECT_THAT(written({cdl_record("grade", {})}, true),
                StartsWith("<?xml version=\"1.0\" encoding=\"SHIFT-JIS\"?>\n<ColorCorrectionCollection"));
}

TEST_F(CdlDocument, UsesAPointForDecimalsUnderEveryLocale) {
    const std::string before = setlocale(LC_ALL, nullptr);
    if (!setlocale(LC_ALL, "de_DE.UTF-8") && !setlocale(LC_ALL, "fr_FR.UTF-8"))
        GTEST_SKIP() << "no locale with a decimal comma on this machine";
    const std::string bytes = written({cdl_record("x", {{1.5, 2.5, 3.5}})}, true);
    const CdlDef record = read(correction_text("x", "1.25", "-0.5", "1.5", "0.75"));
    setlocale(LC_ALL, before.c_str());
    EXPECT_THAT(bytes, HasSubstr("1.5 2.5 3.5\n"));
    expect_values(record, {1.25f, 1.25f, 1.25f}, {-0.5f, -0.5f, -0.5f}, {1.5f, 1.5f, 1.5f}, 0.75f);
}

} // namespace
