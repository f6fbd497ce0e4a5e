#include "xml/serializer.h"

#include <vector>

#include "tests/xml/xml_test.h"

namespace {

std::string written(const char* text, int format = 0) {
    return XmlNode::parse_string(text).create_string(format);
}

TEST_F(XmlTest, LayoutPutsEveryElementOnItsOwnIndentedLine) {
    EXPECT_EQ(written("<a b='1' c='2'><d/><e><f/></e></a>"), "<a b=\"1\" c=\"2\">\n"
                                                             "\t<d/>\n"
                                                             "\t<e>\n"
                                                             "\t\t<f/>\n"
                                                             "\t</e>\n"
                                                             "</a>\n");
}

TEST_F(XmlTest, LayoutIndentsTextsAndSectionsLikeChildren) {
    EXPECT_EQ(written("<a>one<b>two</b><!-- three --><![CDATA[<four>]]></a>"), "<a>\n"
                                                                               "\tone\n"
                                                                               "\t<b>\n"
                                                                               "\t\ttwo\n"
                                                                               "\t</b>\n"
                                                                               "\t<!-- three -->\n"
                                                                               "\t<![CDATA[<four>]]>\n"
                                                                               "</a>\n");
}

TEST_F(XmlTest, LayoutBeginsAtTheDepthAskedFor) {
    EXPECT_EQ(written("<a><b/></a>", 2), "\t\t<a>\n\t\t\t<b/>\n\t\t</a>\n");
}

TEST_F(XmlTest, WithoutLayoutNoTabsOrLineFeedsAreAdded) {
    EXPECT_EQ(written("<a>\n one <b/>\n<c>two</c></a>", -1), "<a>one<b/><c>two</c></a>");
    EXPECT_EQ(written("<a><b/></a>", -7), "<a><b/></a>");
}

TEST_F(XmlTest, DeclarationsStandAtTheLevelOfTheirContent) {
    EXPECT_EQ(written("<?xml version='1.0'?><a><?p x='1' word?><b/></a>"), "<?xml version=\"1.0\"?>\n"
                                                                           "<a>\n"
                                                                           "\t<?p x=\"1\" word?>\n"
                                                                           "\t<b/>\n"
                                                                           "</a>\n");
    EXPECT_EQ(written("<?xml version='1.0'?><a/>", -1), "<?xml version=\"1.0\"?><a/>");
}

TEST_F(XmlTest, AnUnnamedRootIsItsContent) {
    EXPECT_EQ(written("<!--c--><!DOCTYPE a><a/>"), "<!--c-->\n<!DOCTYPE a>\n<a/>\n");
    EXPECT_EQ(XmlNode::create_top_node(nullptr).create_string(0), "");
}

TEST_F(XmlTest, TheFiveCharactersBecomeEntities) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_attribute("b", "<&>\"'");
    top.add_text("<&>\"'");
    EXPECT_EQ(top.create_string(-1), "<a b=\"&lt;&amp;&gt;&quot;&apos;\">&lt;&amp;&gt;&quot;&apos;</a>");
}

TEST_F(XmlTest, SectionsAreWrittenUnchanged) {
    EXPECT_EQ(written("<a><![CDATA[<&>\x09\"']]><PRE> <b> </PRE></a>", -1),
              "<a><![CDATA[<&>\x09\"']]><PRE> <b> </PRE></a>");
}

TEST_F(XmlTest, BytesThatAReaderWouldChangeBecomeReferences) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_attribute("b", " \t\n\r\x01");
    top.add_text("\tx\r\n\x01 ");
    EXPECT_EQ(top.create_string(-1), "<a b=\" &#9;&#10;&#13;&#1;\">&#9;x&#13;\n&#1;&#32;</a>");
}

TEST_F(XmlTest, BytesThatMakeNoCharacterBecomeReferences) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text("\xC3\xA9\xE9 \xEF\xBF\xBF\x80");
    EXPECT_EQ(top.create_string(-1), "<a>\xC3\xA9&#233; &#239;&#191;&#191;&#128;</a>");
    use_encoding(XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(top.create_string(-1), "<a>\xC3\xA9\xE9 \xEF\xBF\xBF\x80</a>");
    use_encoding(XmlEncoding::SHIFT_JIS);
    XmlNode kana = XmlNode::create_top_node("a");
    kana.add_text("\x83\x5D\x83<\x83");
    EXPECT_EQ(kana.create_string(-1), "<a>\x83\x5D&#131;&lt;&#131;</a>");
}

TEST_F(XmlTest, BlanksAtTheEndsOfATextAreWrittenPlainWhenTheyAreNotDropped) {
    XmlSettings settings;
    settings.drop_white_space = false;
    set_xml_settings(settings);
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text(" x\n");
    EXPECT_EQ(top.create_string(-1), "<a> x\n</a>");
}

TEST_F(XmlTest, ATextOfOneBlankIsOneReference) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text(" ");
    EXPECT_EQ(top.create_string(-1), "<a>&#32;</a>");
}

TEST_F(XmlTest, AnEmptyTextIsContentWithoutALine) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text("");
    EXPECT_EQ(top.create_string(0), "<a>\n</a>\n");
}

TEST_F(XmlTest, AnAttributeWithoutValueIsAWordInADeclarationAndEmptyInAnElement) {
    XmlNode declaration = XmlNode::create_top_node("p", true);
    declaration.add_attribute("word", nullptr);
    EXPECT_EQ(declaration.create_string(-1), "<?p word?>");
    XmlNode element = XmlNode::create_top_node("a");
    element.add_attribute("b", nullptr);
    EXPECT_EQ(element.create_string(-1), "<a b=\"\"/>");
}

TEST_F(XmlTest, AStringIsMeasuredThenFilled) {
    const XmlNode top = XmlNode::parse_string("<a>one &amp; two<b/></a>");
    const std::size_t length = top.create_string(nullptr, 0);
    ASSERT_EQ(length, std::string("<a>\n\tone &amp; two\n\t<b/>\n</a>\n").size());
    std::vector<char> buffer(length + 1, '#');
    EXPECT_EQ(top.create_string(buffer.data(), 0), length);
    EXPECT_EQ(std::string(buffer.data(), length), "<a>\n\tone &amp; two\n\t<b/>\n</a>\n");
    EXPECT_EQ(buffer[length], '#');
}

TEST_F(XmlTest, ASubtreeIsWrittenAlone) {
    EXPECT_EQ(XmlNode::parse_string("<a><b>x</b><c/></a>").get_child("b").create_string(-1), "<b>x</b>");
}

TEST_F(XmlTest, PositionedContentIsWrittenInDocumentOrder) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_child("second");
    top.add_child("first", false, 0);
    EXPECT_EQ(top.create_string(-1), "<a><first/><second/></a>");
}

TEST_F(XmlTest, IndentationGrowsByOneTabPerLevelWithoutBound) {
    constexpr std::size_t DEPTH = 1000;
    XmlNode top = XmlNode::create_top_node("b");
    XmlNode deepest = top;
    for (std::size_t i = 0; i < DEPTH; ++i)
        deepest = deepest.add_child("b");
    std::string expected;
    for (std::size_t depth = 0; depth < DEPTH; ++depth)
        expected += std::string(depth, '\t') + "<b>\n";
    expected += std::string(DEPTH, '\t') + "<b/>\n";
    for (std::size_t depth = DEPTH; depth-- > 0;)
        expected += std::string(depth, '\t') + "</b>\n";
    EXPECT_EQ(top.create_string(0), expected);
    EXPECT_EQ(top.create_string(nullptr, 0), expected.size());
}

} // namespace
