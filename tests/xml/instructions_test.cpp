// Processing instructions and the XML declaration.

#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, AnInstructionTakesWhatFollowsUpToTheEndOfItsParent) {
    EXPECT_EQ(tree("<a>1<?p?>2<b/><?q?><c/></a>"), "a(\"1\" ?p(\"2\" b ?q(c)))");
    EXPECT_EQ(tree("<a><?p?></a>"), "a(?p)");
    EXPECT_EQ(tree("<?p?><a/>"), "?p(a)");
    EXPECT_EQ(tree("<?xml version='1.0'?><?p?><a/><!--c-->"), "?xml[version=1.0](?p(a <!--c-->))");
    EXPECT_EQ(tree("<a/><?p?>"), "#root(a ?p)");
}

TEST_F(XmlTest, PseudoAttributesAreOrdinaryAttributes) {
    EXPECT_EQ(tree("<?p a=\"1\" b = '2'\nc='&lt;&#65;'?><a/>"), "?p[a=1 b=2 c=<A](a)");
}

TEST_F(XmlTest, WordsOfAnInstructionAreAttributesWithoutValue) {
    EXPECT_EQ(tree("<?p some words=x 'here' ?><a/>"), "?p[some words=x 'here'](a)");
    const XmlNode node = XmlNode::parse_string("<?p a='1' word b='2'?><a/>");
    EXPECT_EQ(node.count_attributes(), 3);
    EXPECT_STREQ(node.get_attribute_value(0), "1");
    EXPECT_STREQ(node.get_attribute_name(1), "word");
    EXPECT_EQ(node.get_attribute_value(1), nullptr);
    EXPECT_STREQ(node.get_attribute_name(2), "b='2'");
    EXPECT_EQ(node.get_attribute_value(2), nullptr);
}

TEST_F(XmlTest, AnInstructionMayHoldAnythingButItsEnd) {
    EXPECT_EQ(tree("<?p \"?><a/>"), "?p[\"](a)");
    EXPECT_EQ(tree("<?p a='x?><a/>"), "?p[a='x](a)");
    EXPECT_EQ(tree("<?p ='x' = <b>&foo; &?><a/>"), "?p[='x' = <b>&foo; &](a)");
    EXPECT_EQ(tree("<?p a='&foo; &#999;' ?\?><a/>"), "?p[a=&foo; &#999; ?](a)");
    EXPECT_EQ(tree("<?p a='1'b='2'c?><a/>"), "?p[a=1 b=2 c](a)");
    EXPECT_EQ(tree("<?p a a?><a/>"), "?p[a a](a)");
}

TEST_F(XmlTest, AnInstructionNeedsAName) {
    EXPECT_EQ(fault("<a><? p?></a>"), "4 at 1:6");
    EXPECT_EQ(fault("<a><?\?></a>"), "4 at 1:6");
    EXPECT_EQ(fault("<a><?p+ ?></a>"), "8 at 1:7");
}

TEST_F(XmlTest, AnInstructionThatNeverEndsIsUnexpectedAtItsOpening) {
    EXPECT_EQ(fault("<a>\n<?p ></a>"), "8 at 2:1");
    EXPECT_EQ(fault("<a><?p \x02?></a>"), "8 at 1:8");
}

TEST_F(XmlTest, TheDeclarationStandsAtTheVeryBegin) {
    EXPECT_EQ(fault(" <?xml version='1.0'?><a/>"), "8 at 1:2");
    EXPECT_EQ(fault("<!--c--><?xml version='1.0'?><a/>"), "8 at 1:9");
    EXPECT_EQ(fault("<a><?xml version='1.0'?></a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a><?XmL?></a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a><?xml-stylesheet href='x'?></a>"), "none");
}

TEST_F(XmlTest, TheDeclarationFollowsItsGrammar) {
    for (const char* good :
         {"<?xml version='1.0'?><a/>", "<?xml version = \"1.1\" ?><a/>",
          "<?xml\tversion='1.0'\r\nencoding=\"utf-8\"  standalone='yes' ?><a/>",
          "<?xml version='1.0' standalone='no'?><a/>", "<?xml version='1.0' encoding='x-A.1_b-c'?><a/>"})
        EXPECT_EQ(fault(good), "none") << good;
}

TEST_F(XmlTest, ADeclarationOffItsGrammarIsRefusedWhereItStopsFitting) {
    const struct {
        const char* text;
        const char* expected;
    } cases[] = {
        {"<?xml?><a/>", "8 at 1:6"},
        {"<?xml encoding='utf-8'?><a/>", "8 at 1:7"},
        {"<?xml version='2.0'?><a/>", "8 at 1:16"},
        {"<?xml version='1.'?><a/>", "8 at 1:18"},
        {"<?xml version='1.0\"?><a/>", "8 at 1:19"},
        {"<?xml version=1.0?><a/>", "8 at 1:15"},
        {"<?xml version='1.0'encoding='utf-8'?><a/>", "8 at 1:20"},
        {"<?xml version='1.0' encoding=' utf-8'?><a/>", "8 at 1:31"},
        {"<?xml version='1.0' encoding='1'?><a/>", "8 at 1:31"},
        {"<?xml version='1.0' standalone='maybe'?><a/>", "8 at 1:33"},
        {"<?xml version='1.0' standalone='yes' encoding='utf-8'?><a/>", "8 at 1:38"},
        {"<?xml version='1.0' valid='no'?><a/>", "8 at 1:21"},
        {"<?XML version='1.0'?><a/>", "8 at 1:1"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(fault(one.text), one.expected) << one.text;
}

} // namespace
