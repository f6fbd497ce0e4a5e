#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, ATopNodeHasACopyOfItsName) {
    std::string name = "doc";
    const XmlNode top = XmlNode::create_top_node(name.c_str());
    name[0] = 'x';
    EXPECT_STREQ(top.get_name(), "doc");
    EXPECT_FALSE(top.is_empty());
    EXPECT_FALSE(top.is_declaration());
    EXPECT_EQ(top.count_contents(), 0);
    EXPECT_TRUE(XmlNode::create_top_node("xml", true).is_declaration());
}

TEST_F(XmlTest, ANullNameMakesAnUnnamedRoot) {
    const XmlNode top = XmlNode::create_top_node(nullptr);
    EXPECT_EQ(top.get_name(), nullptr);
    EXPECT_FALSE(top.is_empty());
}

TEST_F(XmlTest, ACorrectionIsBuiltNodeByNode) {
    XmlNode top = XmlNode::create_top_node("ColorCorrection");
    top.add_attribute("id", "grade");
    XmlNode sop = top.add_child("SOPNode");
    sop.add_child("Slope").add_text("1.2 1.0 0.9");
    sop.add_child("Offset").add_text("0.0 0.0 0.0");
    top.add_child("SATNode").add_child("Saturation").add_text("0.8");
    EXPECT_EQ(describe(top),
              "ColorCorrection[id=grade](SOPNode(Slope(\"1.2 1.0 0.9\") Offset(\"0.0 0.0 0.0\")) "
              "SATNode(Saturation(\"0.8\")))");
}

TEST_F(XmlTest, AddedStringsAreCopies) {
    XmlNode top = XmlNode::create_top_node("a");
    std::string name = "name";
    std::string value = "value";
    std::string text = "text";
    const XmlAttribute pair = top.add_attribute(name.c_str(), value.c_str());
    const char* stored = top.add_text(text.c_str());
    name = value = text = "gone";
    EXPECT_STREQ(pair.name, "name");
    EXPECT_STREQ(pair.value, "value");
    EXPECT_STREQ(stored, "text");
    EXPECT_EQ(stored, top.get_text(0));
    EXPECT_EQ(pair.value, top.get_attribute_value(0));
}

TEST_F(XmlTest, AnAttributeNeedsANameButNoValue) {
    XmlNode top = XmlNode::create_top_node("a");
    const XmlAttribute none = top.add_attribute(nullptr, "value");
    EXPECT_EQ(none.name, nullptr);
    EXPECT_EQ(none.value, nullptr);
    EXPECT_EQ(top.count_attributes(), 0);
    const XmlAttribute bare = top.add_attribute("bare", nullptr);
    EXPECT_STREQ(bare.name, "bare");
    EXPECT_EQ(bare.value, nullptr);
    EXPECT_EQ(top.count_attributes(), 1);
}

TEST_F(XmlTest, AttributesOfOneNameAreAllKept) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_attribute("b", "1");
    top.add_attribute("b", "2");
    EXPECT_EQ(describe(top), "a[b=1 b=2]");
}

TEST_F(XmlTest, ANullTextIsNotAdded) {
    XmlNode top = XmlNode::create_top_node("a");
    EXPECT_EQ(top.add_text(nullptr), nullptr);
    EXPECT_EQ(top.count_texts(), 0);
    EXPECT_STREQ(top.add_text(""), "");
    EXPECT_EQ(top.count_texts(), 1);
}

TEST_F(XmlTest, ContentGoesWhereItsPositionSays) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_child("b");
    top.add_text("one", 0);
    top.add_child("c", false, 1);
    top.add_text("two", 99);
    top.add_child("d", false, -1);
    EXPECT_EQ(describe(top), "a(\"one\" c b \"two\" d)");
}

TEST_F(XmlTest, ChildrenAndTextsAreNumberedAsTheyWereAdded) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_child("b");
    top.add_child("c", false, 0);
    top.add_text("one");
    top.add_text("two", 0);
    EXPECT_EQ(describe(top), "a(\"two\" c b \"one\")");
    EXPECT_STREQ(top.get_child(0).get_name(), "b");
    EXPECT_STREQ(top.get_child(1).get_name(), "c");
    EXPECT_STREQ(top.get_text(0), "one");
    EXPECT_STREQ(top.get_text(1), "two");
}

TEST_F(XmlTest, AReadTreeMayBeAddedTo) {
    XmlNode top = XmlNode::parse_string("<a x='1' y='2' z='3'>t<b/>u<c/><!--v--></a>");
    top.add_attribute("w", "4");
    top.add_text("end");
    top.add_child("first", false, 0);
    top.get_child("b").add_child("inner").add_text("deep");
    EXPECT_EQ(describe(top), "a[x=1 y=2 z=3 w=4](first \"t\" b(inner(\"deep\")) \"u\" c <!--v--> \"end\")");
}

TEST_F(XmlTest, AddingToAChildKeepsItsWholeTree) {
    XmlNode child = XmlNode::parse_string("<a><b/><c/></a>").get_child("b");
    for (int i = 0; i < 100; ++i)
        child.add_child("d").add_text("text");
    EXPECT_EQ(child.count_children("d"), 100);
    EXPECT_STREQ(child.get_child(99).get_text(0), "text");
}

TEST_F(XmlTest, MixedContentKeepsItsOrderThroughManyAdditions) {
    XmlNode top = XmlNode::create_top_node("a");
    std::string expected = "a(";
    for (int i = 0; i < 50; ++i) {
        top.add_text(std::to_string(i).c_str());
        top.add_child("b");
        expected += (i > 0 ? " \"" : "\"") + std::to_string(i) + "\" b";
    }
    EXPECT_EQ(describe(top), expected + ")");
}

} // namespace
