#include "xml/xml_settings.h"

#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, SettingsBeginWithUtf8AndAllFlagsOn) {
    const XmlSettings initial;
    EXPECT_EQ(initial.encoding, XmlEncoding::UTF_8);
    EXPECT_TRUE(initial.guess_wide_characters);
    EXPECT_TRUE(initial.drop_white_space);
    EXPECT_TRUE(initial.join_text_around_comments);
}

TEST_F(XmlTest, SettingsAreKeptUntilTheyAreReplaced) {
    set_xml_settings({XmlEncoding::GBK, false, false, false});
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::GBK);
    EXPECT_FALSE(get_xml_settings().guess_wide_characters);
    EXPECT_FALSE(get_xml_settings().drop_white_space);
    EXPECT_FALSE(get_xml_settings().join_text_around_comments);
}

TEST_F(XmlTest, AnUnknownEncodingLeavesTheCurrentOne) {
    use_encoding(XmlEncoding::SHIFT_JIS);
    use_encoding(XmlEncoding::UNKNOWN);
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::SHIFT_JIS);
}

TEST_F(XmlTest, ParsingATextOrFileDoesNotChangeTheSettings) {
    const TempDir folder;
    const std::string path = folder.file("sjis.xml", "<?xml version=\"1.0\" encoding=\"Shift_JIS\"?><doc/>");
    XmlNode::parse_string("<?xml version=\"1.0\" encoding=\"Shift-JIS\"?><doc/>");
    XmlNode::parse_file(path.c_str());
    EXPECT_EQ(get_xml_settings().encoding, XmlEncoding::UTF_8);
}

} // namespace
