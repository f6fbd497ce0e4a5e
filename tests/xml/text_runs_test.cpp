// Cutting, decoding and joining of text runs, and the normalization of line ends.

#include "tests/xml/xml_test.h"

namespace {

class TextRuns : public XmlTest {
protected:
    static void keep_white_space() {
        XmlSettings settings = get_xml_settings();
        settings.drop_white_space = false;
        set_xml_settings(settings);
    }
    static void keep_comments() {
        XmlSettings settings = get_xml_settings();
        settings.join_text_around_comments = false;
        set_xml_settings(settings);
    }
};

TEST_F(TextRuns, BlanksAroundARunAreCut) {
    EXPECT_EQ(tree("<a> \t\r\n one  two \t\r\n </a>"), "a(\"one  two\")");
}

TEST_F(TextRuns, ARunOfBlanksAloneIsNotStored) {
    EXPECT_EQ(tree("<a> \n <b/> \t </a>"), "a(b)");
}

TEST_F(TextRuns, BlanksWrittenAsReferencesAreNotCut) {
    EXPECT_EQ(tree("<a> &#32;x&#x9; </a>"), "a(\" x\t\")");
    EXPECT_EQ(tree("<a>&#32;</a>"), "a(\" \")");
}

TEST_F(TextRuns, AllBlanksStayWhenTheyAreNotDropped) {
    keep_white_space();
    EXPECT_EQ(tree("<a> \n<b/> x </a>"), "a(\" \n\" b \" x \")");
    EXPECT_EQ(tree("<?xml version='1.0'?>\n<a/>\n"), "?xml[version=1.0](\"\n\" a \"\n\")");
}

TEST_F(TextRuns, LineEndsBecomeLineFeeds) {
    EXPECT_EQ(tree("<a>one\r\ntwo\rthree\nfour\r\r\nfive</a>"), "a(\"one\ntwo\nthree\nfour\n\nfive\")");
    keep_white_space();
    EXPECT_EQ(tree("<a>\r\n x &amp;\r</a>"), "a(\"\n x &\n\")");
    EXPECT_EQ(tree("<a>\r\n</a>"), "a(\"\n\")");
}

TEST_F(TextRuns, ACarriageReturnWrittenAsAReferenceStays) {
    EXPECT_EQ(tree("<a>x&#13;&#xa;y</a>"), "a(\"x\r\ny\")");
}

TEST_F(TextRuns, BlanksInAnAttributeValueBecomeSpaces) {
    EXPECT_EQ(tree("<a b=' 1\t2\n3\r\n4\r5 '/>"), "a[b= 1 2 3 4 5 ]");
    EXPECT_EQ(tree("<a b='1&#9;2&#10;3&#13;4'/>"), "a[b=1\t2\n3\r4]");
}

TEST_F(TextRuns, AnAttributeValueMayHoldTheOtherQuoteAndAGreaterThanSign) {
    EXPECT_EQ(tree("<a b='\"' c=\"'>\" d=''/>"), "a[b=\" c='> d=]");
}

TEST_F(TextRuns, ARunAfterACommentContinuesTheRunBeforeIt) {
    EXPECT_EQ(tree("<a>one<!--c-->two</a>"), "a(\"onetwo\")");
    EXPECT_EQ(tree("<a>one <!--c--> two <!--d--> three</a>"), "a(\"onetwothree\")");
    EXPECT_EQ(tree("<a>1&amp;<!--c-->&lt;2<!--d-->3<b/>4</a>"), "a(\"1&<23\" b \"4\")");
}

TEST_F(TextRuns, ACommentStaysWhereNoRunsMeet) {
    EXPECT_EQ(tree("<a><!--c-->one</a>"), "a(<!--c--> \"one\")");
    EXPECT_EQ(tree("<a>one<!--c--></a>"), "a(\"one\" <!--c-->)");
    EXPECT_EQ(tree("<a>one<!--c-->  <b/></a>"), "a(\"one\" <!--c--> b)");
    EXPECT_EQ(tree("<a>one<!--c--><!--d-->two</a>"), "a(\"one\" <!--c--> <!--d--> \"two\")");
    EXPECT_EQ(tree("<a>one<b/><!--c-->two</a>"), "a(\"one\" b <!--c--> \"two\")");
    EXPECT_EQ(tree("<a>one<b><!--c-->two</b></a>"), "a(\"one\" b(<!--c--> \"two\"))");
    EXPECT_EQ(tree("<a>one<![CDATA[c]]>two</a>"), "a(\"one\" <![CDATA[c]]> \"two\")");
}

TEST_F(TextRuns, RunsStayApartWhenTheyAreNotJoined) {
    keep_comments();
    EXPECT_EQ(tree("<a>one<!--c-->two</a>"), "a(\"one\" <!--c--> \"two\")");
}

TEST_F(TextRuns, JoinedRunsAreOneTextOfTheNode) {
    const XmlNode node = XmlNode::parse_string("<a>one<!--c-->two<b/>three</a>");
    EXPECT_EQ(node.count_texts(), 2);
    EXPECT_EQ(node.count_clears(), 0);
    EXPECT_STREQ(node.get_text(0), "onetwo");
    EXPECT_STREQ(node.get_text(1), "three");
}

TEST_F(TextRuns, KeptBlanksAreJoinedToo) {
    keep_white_space();
    EXPECT_EQ(tree("<a>one <!--c--> </a>"), "a(\"one  \")");
}

TEST_F(TextRuns, SquareBracketsAreOrdinaryTextUnlessTheyCloseASection) {
    EXPECT_EQ(tree("<a>x]y]]z]>]</a>"), "a(\"x]y]]z]>]\")");
    EXPECT_EQ(tree("<a>]]&gt;</a>"), "a(\"]]>\")");
    EXPECT_EQ(fault("<a>x]]></a>"), "7 at 1:5");
}

TEST_F(TextRuns, TheSecondByteOfACharacterIsNoBracket) {
    use_encoding(XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(tree("<a>\x83\x5D]\x3E</a>"), "a(\"\x83\x5D]>\")");
    EXPECT_EQ(tree("<a><![CDATA[\x83\x5D]>]]></a>"), "a(<![CDATA[\x83\x5D]>]]>)");
}

TEST_F(TextRuns, BytesOfTheCurrentEncodingAreCopiedAsTheyAre) {
    EXPECT_EQ(tree("<a b='\xC3\xA9'>\xE2\x82\xAC &amp; \xF0\x9F\x8E\xA8</a>"),
              "a[b=\xC3\xA9](\"\xE2\x82\xAC & \xF0\x9F\x8E\xA8\")");
    use_encoding(XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(tree("<a>\xE9\x80\xFF</a>"), "a(\"\xE9\x80\xFF\")");
}

TEST_F(TextRuns, BytesThatMakeNoCharacterAreCopiedWholeByTheLengthTable) {
    EXPECT_EQ(tree("<a b='\xE9t\xE9'>\xE9t\xE9 au lait</a>"), "a[b=\xE9t\xE9](\"\xE9t\xE9 au lait\")");
    EXPECT_EQ(tree("<a>\xC0\xAF \xED\xA0\xBC \xF4\x90\x80\x80 \xEF\xBF\xBF \xFF</a>"),
              "a(\"\xC0\xAF \xED\xA0\xBC \xF4\x90\x80\x80 \xEF\xBF\xBF \xFF\")");
    EXPECT_EQ(tree("<a>&lt;\xC3&amp;&amp;</a>"), "a(\"<\xC3&amp;&\")");
    EXPECT_EQ(tree("<a>\xE9]]></a>"), "a(\"\xE9]]>\")");
    use_encoding(XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(tree("<a>\x83&lt;\x83\r\n</a>"), "a(\"\x83&lt;\x83\")");
}

TEST_F(TextRuns, ACharacterThatLacksBytesHidesNoMarkup) {
    EXPECT_EQ(tree("<a b='\xF0' c=\"\xE9'\">\xF0<b>\xE2\x82</b>\xE9<!--c-->\xC3</a>"),
              "a[b=\xF0 c=\xE9'](\"\xF0\" b(\"\xE2\x82\") \"\xE9\xC3\")");
    EXPECT_EQ(fault("<a b='\xF0<'/>"), "8 at 1:8");
    EXPECT_EQ(fault("<a>\xF0"), "1 at 1:5");
}

} // namespace
