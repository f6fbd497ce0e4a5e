#include <utility>

#include "tests/xml/xml_test.h"

namespace {

const char* const COLLECTION =
    "<Top a='1' B='2'>first<Item n='0'/><other/>second<ITEM n='2'/><item n='3'/></Top>";

TEST_F(XmlTest, ANullHandleHasNothing) {
    XmlNode null;
    EXPECT_TRUE(null.is_empty());
    EXPECT_FALSE(null.is_declaration());
    EXPECT_EQ(null.get_name(), nullptr);
    EXPECT_EQ(null.count_children(), 0);
    EXPECT_EQ(null.count_children("a"), 0);
    EXPECT_TRUE(null.get_child(0).is_empty());
    EXPECT_TRUE(null.get_child("a").is_empty());
    EXPECT_EQ(null.count_texts(), 0);
    EXPECT_EQ(null.get_text(0), nullptr);
    EXPECT_EQ(null.count_clears(), 0);
    EXPECT_EQ(null.get_clear(0).value, nullptr);
    EXPECT_EQ(null.count_attributes(), 0);
    EXPECT_EQ(null.get_attribute_name(0), nullptr);
    EXPECT_EQ(null.get_attribute_value(0), nullptr);
    EXPECT_EQ(null.count_contents(), 0);
    EXPECT_EQ(null.get_content(0).kind, XmlContentKind::NONE);
    EXPECT_TRUE(null.add_child("a").is_empty());
    EXPECT_EQ(null.add_attribute("a", "b").name, nullptr);
    EXPECT_EQ(null.add_text("a"), nullptr);
    EXPECT_EQ(null.create_string(0), "");
    EXPECT_EQ(null.create_string(nullptr, 0), 0u);
}

TEST_F(XmlTest, TheEmptyNodeHasNothingAndTakesNothing) {
    XmlNode empty = XmlNode::parse_string("<a/>").get_child("b");
    EXPECT_TRUE(empty.is_empty());
    EXPECT_TRUE(empty.add_child("a").is_empty());
    EXPECT_EQ(empty.add_attribute("a", "b").name, nullptr);
    EXPECT_EQ(empty.add_text("a"), nullptr);
    EXPECT_EQ(empty.count_contents(), 0);
    EXPECT_EQ(empty.count_attributes(), 0);
    EXPECT_EQ(empty.create_string(0), "");
    EXPECT_EQ(XmlNode::parse_string("<a/>").get_child("b").count_contents(), 0);
}

TEST_F(XmlTest, LookUpsChainThroughMissingNodes) {
    const XmlNode top = XmlNode::parse_string("<cc><SOPNode><Slope>1 2 3</Slope></SOPNode></cc>");
    EXPECT_STREQ(top.get_child("sopnode").get_child("SLOPE").get_text(0), "1 2 3");
    EXPECT_EQ(top.get_child("SATNode").get_child("Saturation").get_text(0), nullptr);
}

TEST_F(XmlTest, ChildrenAreCountedByNameIgnoringCase) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    EXPECT_EQ(top.count_children(), 4);
    EXPECT_EQ(top.count_children("Item"), 3);
    EXPECT_EQ(top.count_children("OTHER"), 1);
    EXPECT_EQ(top.count_children("ite"), 0);
    EXPECT_EQ(top.count_children("items"), 0);
    EXPECT_EQ(top.count_children(""), 0);
    EXPECT_EQ(top.count_children(nullptr), 0);
}

TEST_F(XmlTest, AChildByPositionIsTakenWhateverItsName) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    EXPECT_STREQ(top.get_child(0).get_name(), "Item");
    EXPECT_STREQ(top.get_child(1).get_name(), "other");
    EXPECT_STREQ(top.get_child(3).get_name(), "item");
    EXPECT_TRUE(top.get_child(4).is_empty());
    EXPECT_TRUE(top.get_child(-1).is_empty());
}

TEST_F(XmlTest, AChildByNameIsTheFirstAtOrAfterThePosition) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    EXPECT_STREQ(top.get_child("item").get_attribute_value(0), "0");
    int index = 1;
    EXPECT_STREQ(top.get_child("item", &index).get_attribute_value(0), "2");
    EXPECT_EQ(index, 3);
    EXPECT_STREQ(top.get_child("item", &index).get_attribute_value(0), "3");
    EXPECT_EQ(index, 4);
    EXPECT_TRUE(top.get_child("item", &index).is_empty());
    EXPECT_EQ(index, 4);
    index = 2;
    EXPECT_TRUE(top.get_child("other", &index).is_empty());
    EXPECT_EQ(index, 2);
}

TEST_F(XmlTest, PositionsBeforeTheFirstChildCountAsTheFirst) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    int index = -5;
    EXPECT_STREQ(top.get_child("item", &index).get_attribute_value(0), "0");
    EXPECT_EQ(index, 1);
    index = 0x7FFFFFFF;
    EXPECT_TRUE(top.get_child("item", &index).is_empty());
}

TEST_F(XmlTest, TextsAndAttributesAreTakenByPosition) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    EXPECT_STREQ(top.get_text(), "first");
    EXPECT_STREQ(top.get_text(1), "second");
    EXPECT_EQ(top.get_text(2), nullptr);
    EXPECT_EQ(top.get_text(-1), nullptr);
    EXPECT_EQ(top.count_attributes(), 2);
    EXPECT_STREQ(top.get_attribute_name(1), "B");
    EXPECT_STREQ(top.get_attribute_value(1), "2");
    EXPECT_EQ(top.get_attribute_name(2), nullptr);
    EXPECT_EQ(top.get_attribute_value(2), nullptr);
    EXPECT_EQ(top.get_attribute_name(-1), nullptr);
}

TEST_F(XmlTest, ContentIsListedInDocumentOrder) {
    const XmlNode top = XmlNode::parse_string(COLLECTION);
    EXPECT_EQ(top.count_contents(), 6);
    EXPECT_EQ(top.get_content(0).kind, XmlContentKind::TEXT);
    EXPECT_EQ(top.get_content(1).kind, XmlContentKind::CHILD);
    EXPECT_EQ(top.get_content(3).kind, XmlContentKind::TEXT);
    EXPECT_EQ(top.get_content(3).index, 1);
    EXPECT_EQ(top.get_content(5).kind, XmlContentKind::CHILD);
    EXPECT_EQ(top.get_content(5).index, 3);
    EXPECT_EQ(top.get_content(6).kind, XmlContentKind::NONE);
    EXPECT_EQ(top.get_content(-1).kind, XmlContentKind::NONE);
}

TEST_F(XmlTest, AChildOutlivesTheHandleOfItsParent) {
    XmlNode child;
    const char* name = nullptr;
    {
        const XmlNode top = XmlNode::parse_string("<a><b c='1'><d>text</d></b></a>");
        child = top.get_child(0);
        name = child.get_name();
    }
    EXPECT_STREQ(name, "b");
    EXPECT_EQ(describe(child), "b[c=1](d(\"text\"))");
}

TEST_F(XmlTest, ATextOutlivesAllButOneHandle) {
    XmlNode kept;
    const char* text = nullptr;
    {
        const XmlNode top = XmlNode::parse_string("<a><b>some &amp; text</b><c/></a>");
        text = top.get_child("b").get_text(0);
        kept = top.get_child("c");
    }
    EXPECT_STREQ(text, "some & text");
}

TEST_F(XmlTest, CopiesOfAHandleShareTheNode) {
    XmlNode first = XmlNode::create_top_node("a");
    XmlNode second = first;
    second.add_attribute("b", "1");
    EXPECT_EQ(describe(first), "a[b=1]");
    first = XmlNode();
    EXPECT_EQ(describe(second), "a[b=1]");
}

TEST_F(XmlTest, HandlesMoveAndAssignToThemselves) {
    XmlNode node = XmlNode::parse_string("<a><b/></a>");
    XmlNode moved = std::move(node);
    EXPECT_EQ(describe(moved), "a(b)");
    const XmlNode& alias = moved;
    moved = alias;
    EXPECT_EQ(describe(moved), "a(b)");
    moved = moved.get_child(0);
    EXPECT_EQ(describe(moved), "b");
}

TEST_F(XmlTest, EmptyHandlesComeAndGoWithoutEnd) {
    const XmlNode top = XmlNode::parse_string("<a/>");
    for (int i = 0; i < 1000; ++i)
        EXPECT_TRUE(top.get_child("none").get_child("none").is_empty());
}

} // namespace
