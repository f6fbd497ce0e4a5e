#include <gmock/gmock.h>

#include "tests/xml/xml_test.h"

namespace {

class ParseReport : public XmlTest {
protected:
    // What is printed while `path` is parsed; the tree goes to `node`.
    std::string printed(const std::string& path, const char* first_tag = nullptr) {
        ::testing::internal::CaptureStdout();
        node = XmlNode::parse_file_or_report(path.c_str(), first_tag);
        return ::testing::internal::GetCapturedStdout();
    }

    TempDir folder;
    XmlNode node;
};

TEST_F(ParseReport, IsSilentOnSuccess) {
    EXPECT_EQ(printed(folder.file("a.xml", "<a><b/></a>")), "");
    EXPECT_EQ(describe(node), "a(b)");
    EXPECT_EQ(printed(folder.path("a.xml"), "B"), "");
    EXPECT_EQ(describe(node), "b");
}

TEST_F(ParseReport, NamesTheFileTheErrorAndThePlace) {
    const std::string path = folder.file("a.xml", "<a>\n  &x;</a>");
    EXPECT_EQ(printed(path), "XML Parsing error inside file '" + path +
                                 "'.\nError: Unknown character entity\nAt line 2, column 3.\n");
    EXPECT_TRUE(node.is_empty());
}

TEST_F(ParseReport, GuessesTheEncodingByTheFirst200Bytes) {
    const auto guessed = [&](std::size_t position) {
        const std::string text = "<a>" + std::string(position - 3, 'x') + "\xE9(</a>";
        EXPECT_EQ(printed(folder.file("a.xml", text)), "") << position;
        return get_xml_settings().encoding;
    };
    EXPECT_EQ(guessed(198), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guessed(199), XmlEncoding::UTF_8) << "the second byte of that character is not looked at";
}

TEST_F(ParseReport, IsNotMadeByTheSilentParser) {
    const std::string path = folder.file("a.xml", "<a>\n  &x;</a>");
    ::testing::internal::CaptureStdout();
    XmlResults results;
    EXPECT_TRUE(XmlNode::parse_file_as_guessed(path.c_str(), nullptr, &results).is_empty());
    EXPECT_EQ(results.error, XmlError::UNKNOWN_ENTITY);
    EXPECT_EQ(results.line, 2);
    EXPECT_EQ(results.column, 3);
    EXPECT_TRUE(
        XmlNode::parse_file_as_guessed(folder.path("none.xml").c_str(), nullptr, &results).is_empty());
    EXPECT_EQ(results.error, XmlError::FILE_NOT_FOUND);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST_F(ParseReport, LeavesTheEncodingToTheOneThatPrints) {
    // 0x83 0x5c is one character of Shift-JIS.
    const std::string path =
        folder.file("a.xml", "<?xml version=\"1.0\" encoding=\"shift-jis\"?><a>\x83\x5c</a>");
    const XmlEncoding before = get_xml_settings().encoding;
    EXPECT_STREQ(XmlNode::parse_file_as_guessed(path.c_str()).get_child("a").get_text(), "\x83\x5c");
    EXPECT_EQ(get_xml_settings().encoding, before);
    EXPECT_EQ(printed(path), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SHIFT_JIS);
}

TEST_F(ParseReport, NamesAMissingFirstTag) {
    const std::string path = folder.file("a.xml", "<a><b><c/></b></a>");
    EXPECT_EQ(printed(path, "c"),
              "XML Parsing error inside file '" + path +
                  "'.\nError: First Tag not found\nAt line 0, column 0.\nFirst Tag should be 'c'.\n");
    EXPECT_TRUE(node.is_empty());
}

TEST_F(ParseReport, CoversFilesThatCannotBeRead) {
    const std::string path = folder.path("none.xml");
    EXPECT_EQ(printed(path),
              "XML Parsing error inside file '" + path + "'.\nError: File not found\nAt line 0, column 0.\n");
    const std::string empty = folder.file("empty.xml", "");
    EXPECT_EQ(printed(empty),
              "XML Parsing error inside file '" + empty + "'.\nError: No XML data\nAt line 0, column 0.\n");
    ::testing::internal::CaptureStdout();
    EXPECT_TRUE(XmlNode::parse_file_or_report(nullptr).is_empty());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "XML Parsing error inside file ''.\nError: File not found\nAt line 0, column 0.\n");
}

TEST_F(ParseReport, CountsWarningsAsErrorsAndDropsTheirTrees) {
    const std::string path = folder.file("a.xml", "<a>\n<b></a>");
    EXPECT_EQ(printed(path), "XML Parsing error inside file '" + path +
                                 "'.\nWarning: Unmatched end tag\nAt line 2, column 4.\n");
    EXPECT_TRUE(node.is_empty());
    const std::string no_tag = folder.file("b.xml", "\n");
    EXPECT_EQ(printed(no_tag), "XML Parsing error inside file '" + no_tag +
                                   "'.\nWarning: No XML tag found\nAt line 2, column 1.\n");
    EXPECT_TRUE(node.is_empty());
}

TEST_F(ParseReport, PrintsAPathWithPercentSignsAsItIs) {
    const std::string path = folder.path("100%s%n.xml");
    EXPECT_THAT(printed(path), ::testing::HasSubstr("'" + path + "'"));
}

TEST_F(ParseReport, MakesTheGuessedEncodingCurrent) {
    const std::string sjis = folder.file("sjis.xml", "<?xml version='1.0' encoding='sjis'?><a>\x83\x5D</a>");
    EXPECT_EQ(printed(sjis), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SHIFT_JIS);
    EXPECT_STREQ(node.get_child(0).get_text(0), "\x83\x5D");
    EXPECT_EQ(printed(folder.file("big5.xml", "<?xml version='1.0' encoding='big5'?><a/>")), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::BIG5);
    EXPECT_EQ(printed(folder.file("plain.xml", "<a>long enough for a guess</a>")), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::UTF_8);
}

TEST_F(ParseReport, KeepsTheEncodingWhenTheGuessIsUndecided) {
    use_encoding(XmlEncoding::GBK);
    EXPECT_EQ(printed(folder.file("short.xml", "<a/>")), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::GBK);
}

TEST_F(ParseReport, KeepsTheGuessedEncodingThoughTheParseFails) {
    EXPECT_NE(printed(folder.file("bad.xml", "<?xml version='1.0' encoding='sjis'?><a>")), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SHIFT_JIS);
}

TEST_F(ParseReport, GuessesFromTheFirst200BytesOnly) {
    const std::string text = "<a>" + std::string(197, 'x') + "\xE9 </a>";
    EXPECT_EQ(printed(folder.file("late.xml", text)), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::UTF_8);
    EXPECT_EQ(printed(folder.file("early.xml", "<a>\xE9 " + std::string(197, 'x') + "</a>")), "");
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SINGLE_BYTE);
}

} // namespace
