// What a text becomes as a tree: top node, declaration, first tag, order of mixed content.

#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, ADocumentOfOneEmptyElementIsThatElement) {
    EXPECT_EQ(tree("<doc/>"), "doc");
    EXPECT_EQ(tree("<doc></doc>"), "doc");
    EXPECT_EQ(tree(" \r\n\t<doc />\n"), "doc");
}

TEST_F(XmlTest, ADeclarationHoldsTheDocumentElement) {
    EXPECT_EQ(tree("<?xml version=\"1.0\" encoding='utf-8'?>\n<doc/>\n"),
              "?xml[version=1.0 encoding=utf-8](doc)");
}

TEST_F(XmlTest, CommentsAndDocumentTypeBesideTheElementLeaveAnUnnamedRoot) {
    EXPECT_EQ(tree("<!-- c --><doc/>"), "#root(<!-- c --> doc)");
    EXPECT_EQ(tree("<doc/><!-- c -->"), "#root(doc <!-- c -->)");
    EXPECT_EQ(tree("<!DOCTYPE doc><doc/>"), "#root(<!DOCTYPE doc> doc)");
    EXPECT_EQ(tree("<?xml version='1.0'?><!--c--><doc/>"), "?xml[version=1.0](<!--c--> doc)");
}

TEST_F(XmlTest, ElementsAttributesAndTextsKeepTheirOrder) {
    EXPECT_EQ(tree("<a z='1' b=\"2\" m = '3'>one<b/>two<c>three</c><!--four--><d/>five</a>"),
              "a[z=1 b=2 m=3](\"one\" b \"two\" c(\"three\") <!--four--> d \"five\")");
}

TEST_F(XmlTest, AnElementWithoutTextHasNoFirstText) {
    EXPECT_EQ(XmlNode::parse_string("<doc/>").get_text(0), nullptr);
    EXPECT_EQ(XmlNode::parse_string("<doc>  </doc>").get_text(0), nullptr);
}

TEST_F(XmlTest, FirstTagPicksTheTopElementOrOneOfItsChildren) {
    const char* const text = "<?xml version='1.0'?><Top><Inner/></Top>";
    EXPECT_EQ(tree("<Top><Inner/></Top>", "Top"), "Top(Inner)");
    EXPECT_EQ(tree("<Top><Inner/></Top>", "Inner"), "Inner");
    EXPECT_EQ(tree(text, "Top"), "Top(Inner)");
    EXPECT_EQ(tree(text, "Inner"), "empty");
    EXPECT_EQ(tree("<!--c--><Top/>", "Top"), "Top");
}

TEST_F(XmlTest, FirstTagInLowerCaseFindsAnElementInMixedCase) {
    EXPECT_EQ(tree("<ColorCorrection/>", "colorcorrection"), "ColorCorrection");
    EXPECT_EQ(tree("<a><ColorCorrection/></a>", "COLORCORRECTION"), "ColorCorrection");
    EXPECT_EQ(tree("<ColorCorrection/>", "colorcorrectio"), "empty");
    EXPECT_EQ(tree("<ColorCorrection/>", "colorcorrections"), "empty");
}

TEST_F(XmlTest, AnEmptyFirstTagAsksForNone) {
    EXPECT_EQ(tree("<doc/>", ""), "doc");
    EXPECT_EQ(tree("<doc/>", nullptr), "doc");
}

TEST_F(XmlTest, TheFirstOfSeveralMatchingChildrenIsTaken) {
    EXPECT_EQ(tree("<a><b n='1'/><B n='2'/></a>", "b"), "b[n=1]");
}

TEST_F(XmlTest, AMissingFirstTagIsCode11WithoutAPlace) {
    EXPECT_EQ(fault("<a>\n<b/></a>", "c"), "11 at 0:0");
    EXPECT_EQ(fault("", "c"), "11 at 0:0");
    EXPECT_EQ(fault("<a><b></a>", "c"), "11 at 0:0");
}

TEST_F(XmlTest, AFaultyTextIsReportedBeforeTheFirstTagIsSought) {
    EXPECT_EQ(fault("<a>&x;</a>", "c"), "12 at 1:4");
}

TEST_F(XmlTest, AWarningLeavesTheTree) {
    EXPECT_EQ(fault("<a><b>text</a>"), "1 at 1:11");
    EXPECT_EQ(tree("<a><b>text</a>"), "a(b(\"text\"))");
    EXPECT_EQ(tree("<a><b><c><d/></a>", "b"), "b(c(d))");
    EXPECT_EQ(tree("<a><b>open"), "a(b(\"open\"))");
}

TEST_F(XmlTest, AnElementLeftOpenTakesTheRestOfItsParent) {
    EXPECT_EQ(tree("<a><b><c/><d>x</d></a>"), "a(b(c d(\"x\")))");
}

TEST_F(XmlTest, ATextWithoutAnyElementIsItsUnnamedRoot) {
    EXPECT_EQ(fault(""), "2 at 1:1");
    EXPECT_EQ(tree(""), "#root");
    EXPECT_FALSE(XmlNode::parse_string("").is_empty());
    EXPECT_EQ(tree("just text"), "#root(\"just text\")");
    EXPECT_EQ(fault("just text"), "2 at 1:10");
    EXPECT_EQ(tree("<!--c-->"), "#root(<!--c-->)");
}

TEST_F(XmlTest, ARootWithoutChildrenTurnsAnyFaultIntoTheWarning) {
    EXPECT_EQ(fault("</>"), "2 at 1:3");
    EXPECT_EQ(fault(" <!-- never closed"), "2 at 1:2");
    EXPECT_EQ(fault("text &unknown;"), "2 at 1:6");
}

TEST_F(XmlTest, ADeclarationAloneIsATree) {
    EXPECT_EQ(tree("<?xml version='1.0'?>\n"), "?xml[version=1.0]");
    EXPECT_EQ(tree("<?xml version='1.0'?><!--c-->"), "?xml[version=1.0](<!--c-->)");
}

TEST_F(XmlTest, TextBehindADeclarationAloneHasNoPlace) {
    EXPECT_EQ(fault("<?xml version='1.0'?>\n text"), "8 at 2:2");
}

TEST_F(XmlTest, ANullTextIsCode9WithoutAPlace) {
    XmlResults results{XmlError::NONE, 5, 5};
    EXPECT_TRUE(XmlNode::parse_string(nullptr, nullptr, &results).is_empty());
    EXPECT_EQ(outcome(results), "9 at 0:0");
}

TEST_F(XmlTest, ResultsMayBeLeftOut) {
    EXPECT_EQ(describe(XmlNode::parse_string("<a>&x;</a>")), "empty");
    EXPECT_EQ(describe(XmlNode::parse_string(nullptr)), "empty");
}

TEST_F(XmlTest, SuccessHasNoPlace) {
    XmlResults results{XmlError::UNEXPECTED_TOKEN, 5, 5};
    XmlNode::parse_string("<a/>", nullptr, &results);
    EXPECT_EQ(results.error, XmlError::NONE);
    EXPECT_EQ(results.line, 0);
    EXPECT_EQ(results.column, 0);
}

TEST_F(XmlTest, AParseLeavesTheCallersTextAlone) {
    const std::string text = "<a b='c'>one &amp;<!--x--> two\r\n</a>";
    const std::string before = text;
    XmlNode::parse_string(text.c_str());
    EXPECT_EQ(text, before);
}

TEST_F(XmlTest, AUtf8MarkBeforeATextIsSkipped) {
    EXPECT_EQ(tree("\xEF\xBB\xBF<?xml version='1.0'?><a/>"), "?xml[version=1.0](a)");
    EXPECT_EQ(fault("\xEF\xBB\xBF<a>&x;</a>"), "12 at 1:4");
}

TEST_F(XmlTest, NamesBeyondAsciiAreNames) {
    EXPECT_EQ(tree("<\xC3\xA9t\xC3\xA9 \xE6\x97\xA5='1'/>"), "\xC3\xA9t\xC3\xA9[\xE6\x97\xA5=1]");
}

} // namespace
