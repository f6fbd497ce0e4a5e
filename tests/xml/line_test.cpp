// The lines that start tags begin on.

#include <string>

#include "tests/xml/xml_test.h"

namespace {

/// "name:line" of a node and of all below it, in document order.
std::string list_lines(const XmlNode& node) {
    std::string list;
    if (const char* name = node.get_name())
        list = std::string(name) + ":" + std::to_string(node.get_line()) + " ";
    for (int i = 0; i < node.count_children(); ++i)
        list += list_lines(node.get_child(i));
    return list;
}

std::string lines(const char* text) {
    return list_lines(XmlNode::parse_string(text));
}

TEST_F(XmlTest, StartTagsKnowTheirLine) {
    EXPECT_EQ(lines("<a><b/>\n<c>\n\n</c><d/></a>"), "a:1 b:1 c:2 d:4 ");
    EXPECT_EQ(lines("\n\n<a/>"), "a:3 ");
    EXPECT_EQ(lines("<a>\r\n<b/>\r\n<c/></a>"), "a:1 b:2 c:3 ");
}

TEST_F(XmlTest, LinesAreCountedWithinTagsAndTextsThatWereCutThere) {
    EXPECT_EQ(lines("<a\n>\n<b\nx='1'\ny='2'\n/><c\n/></a>"), "a:1 b:3 c:6 ");
    EXPECT_EQ(lines("<a>one\ntwo &amp;\nthree\n<b x='\n'/><c/></a>"), "a:1 b:4 c:5 ");
    EXPECT_EQ(lines("<a><!--\n\n--><b/><![CDATA[\n]]><c/></a>"), "a:1 b:3 c:4 ");
}

TEST_F(XmlTest, DeclarationsAndWhatFollowsThemHaveLines) {
    EXPECT_EQ(lines("<?xml version='1.0'?>\n<?p\n q?>\n<a/>"), "xml:1 p:2 a:4 ");
}

TEST_F(XmlTest, NodesThatWereNotParsedHaveNoLine) {
    XmlNode top = XmlNode::create_top_node("a");
    EXPECT_EQ(top.get_line(), 0);
    EXPECT_EQ(top.add_child("b").get_line(), 0);
    EXPECT_EQ(XmlNode().get_line(), 0);
    EXPECT_EQ(top.get_child("none").get_line(), 0);
    EXPECT_EQ(XmlNode::parse_string("<a/><b/>").get_line(), 0) << "an unnamed root";
}

} // namespace
