// A parse of what was written gives an equal tree.

#include "tests/xml/xml_test.h"

namespace {

class RoundTrip : public XmlTest {
protected:
    static void expect_equal_after_writing(const XmlNode& top) {
        const std::string before = describe(top);
        for (int format : {-1, 0})
            EXPECT_EQ(describe(XmlNode::parse_string(top.create_string(format).c_str())), before) << format;
    }
    static void expect_equal_after_writing(const char* text) {
        XmlResults results;
        const XmlNode top = XmlNode::parse_string(text, nullptr, &results);
        ASSERT_EQ(outcome(results), "none") << text;
        expect_equal_after_writing(top);
    }
};

TEST_F(RoundTrip, ElementsAttributesAndMixedContent) {
    expect_equal_after_writing("<a/>");
    expect_equal_after_writing("<a b='1' c=''><d>one<e/>two</d> three <f/></a>");
    expect_equal_after_writing("<a> two\n lines <b/> and\r\nmore </a>");
}

TEST_F(RoundTrip, DeclarationsAndInstructions) {
    expect_equal_after_writing("<?xml version='1.0' encoding='utf-8'?><a/>");
    expect_equal_after_writing("<?go a='x>y' \"words\" ='?> <?stop?><a>x<?in?>y<b/></a>");
    expect_equal_after_writing("<?go w c=\" c='\n>'[?><a/>");
    expect_equal_after_writing("<?go a='&quot;' b='&foo;' c = d e='?><a/>");
}

TEST_F(RoundTrip, SectionsInTheirOrder) {
    expect_equal_after_writing(
        "<a>x<!-- one --><!-- two -->y<![CDATA[ <z> & ]]><PRE> q </PRE>w<b/><!----></a>");
    expect_equal_after_writing("<!-- one --><!DOCTYPE a><a/><!-- two -->");
    expect_equal_after_writing("<!DOCTYPE a [<!ENTITY b 'c'>]><a/>");
    expect_equal_after_writing("<!DOCTYPE a SYSTEM 'b>c'><a/>");
    expect_equal_after_writing("<!DOCTYPE a [<!ENTITY b 'c'> ] > <!-- d --><a/>");
}

TEST_F(RoundTrip, TextThatWasJoinedAroundComments) {
    expect_equal_after_writing("<a>one<!-- x -->two<b/>three<!-- y --></a>");
}

TEST_F(RoundTrip, CharactersThatNeedAReference) {
    expect_equal_after_writing("<a b='&#9;&#10;&#13;&#32;&#1;&lt;&quot;'>&#32;x&#13;&#10;&#7;&#9;</a>");
    expect_equal_after_writing("<a>&#32;</a>");
    expect_equal_after_writing("<a>]]&gt; &amp;amp; &#233; &#195;&#169; \xC3\xA9 &#239;&#191;&#190;</a>");
}

TEST_F(RoundTrip, BytesThatMakeNoCharacter) {
    expect_equal_after_writing("<a b='\xE9\xC3'>\xE9&amp;\r\n\xC0<c/>\xF0</a>");
    expect_equal_after_writing("<?go \xE9 ?><a><?in b='\xE9&#65;' \xC3?>x</a>");
    expect_equal_after_writing("<a>\xC3<!--c-->\xA9</a>");
}

TEST_F(RoundTrip, SectionsOfAnyBytes) {
    expect_equal_after_writing("<a><!-- \x01 -- \xE9--><![CDATA[\r\n\xF0]]></a>");
    expect_equal_after_writing("<!DOCTYPE a [\xE9><a/>");
}

TEST_F(RoundTrip, TextsInTwoByteEncodings) {
    use_encoding(XmlEncoding::SHIFT_JIS);
    expect_equal_after_writing("<a b='\x83\x5D'>\x83\x5D&#131;&lt;\xB1&#129;</a>");
    use_encoding(XmlEncoding::GBK);
    expect_equal_after_writing("<\xC9\xAB b='\x81\x30'>\xFE\x40&#254;</\xC9\xAB>");
}

TEST_F(RoundTrip, WithWhiteSpaceKept) {
    XmlSettings settings;
    settings.drop_white_space = false;
    settings.join_text_around_comments = false;
    set_xml_settings(settings);
    const XmlNode top = XmlNode::parse_string("<a>\n\t<b> x </b>\n<!--c-->\n</a>");
    EXPECT_EQ(top.create_string(-1), "<a>\n\t<b> x </b>\n<!--c-->\n</a>");
    EXPECT_EQ(describe(XmlNode::parse_string(top.create_string(-1).c_str())), describe(top));
}

TEST_F(RoundTrip, AnElementCalledLikeAPreformattedSection) {
    expect_equal_after_writing("<a><PRE >q<b/></PRE><PRE/><PRE x='1'>q</PRE><pre>q</pre></a>");
    EXPECT_EQ(XmlNode::parse_string("<PRE >q</PRE>").create_string(-1), "<PRE >q</PRE>");
}

TEST_F(RoundTrip, ABuiltTree) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_attribute("b", " \n\xE9 ");
    top.add_child("c").add_text(" <text> ");
    top.add_text("first", 0);
    top.add_child("d", false, 1);
    expect_equal_after_writing(top);
}

TEST_F(RoundTrip, ThroughAFileInEveryEncoding) {
    const TempDir folder;
    const std::string path = folder.path("a.xml");
    for (XmlEncoding encoding : {XmlEncoding::UTF_8, XmlEncoding::SINGLE_BYTE, XmlEncoding::SHIFT_JIS}) {
        for (bool format : {false, true}) {
            use_encoding(encoding);
            const XmlNode top = XmlNode::parse_string("<a b='1'>x<c/>\xC2\xB1<!--d--><e>&#1;</e></a>");
            ASSERT_EQ(top.write_to_file(path.c_str(), nullptr, format), XmlError::NONE);
            const XmlNode again = XmlNode::parse_file_or_report(path.c_str());
            EXPECT_EQ(describe(again.get_child(0)), describe(top));
            EXPECT_EQ(again.count_children(), 1);
        }
    }
}

// What the text of a document cannot hold, or what only a document can: these are the trees that are read
// back.
TEST_F(RoundTrip, ExceptionsAreTheseFour) {
    XmlNode top = XmlNode::create_top_node("a");
    top.add_text("one");
    top.add_text("");
    top.add_text("two");
    EXPECT_EQ(tree(top.create_string(-1).c_str()), "a(\"onetwo\")");

    XmlNode bare = XmlNode::create_top_node("a");
    bare.add_attribute("b", nullptr);
    EXPECT_EQ(tree(bare.create_string(-1).c_str()), "a[b=]");

    XmlNode beside = XmlNode::create_top_node("a");
    beside.add_child("p", true);
    beside.add_child("b");
    EXPECT_EQ(tree(beside.create_string(-1).c_str()), "a(?p(b))");

    XmlNode unnamed = XmlNode::create_top_node(nullptr);
    unnamed.add_child("a");
    EXPECT_EQ(tree(unnamed.create_string(-1).c_str()), "a");
}

} // namespace
