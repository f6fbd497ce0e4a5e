#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, SectionsAreKeptVerbatimWithTheirTags) {
    EXPECT_EQ(tree("<a><![CDATA[<b>&amp;</b>]]></a>"), "a(<![CDATA[<b>&amp;</b>]]>)");
    EXPECT_EQ(tree("<a><!-- <b> &x; </c> --></a>"), "a(<!-- <b> &x; </c> -->)");
    EXPECT_EQ(tree("<a><PRE> <b> &x; ]]></PRE></a>"), "a(<PRE> <b> &x; ]]></PRE>)");
    const XmlNode node = XmlNode::parse_string("<a><![CDATA[x]]></a>");
    EXPECT_STREQ(node.get_clear(0).value, "x");
    EXPECT_STREQ(node.get_clear(0).open_tag, "<![CDATA[");
    EXPECT_STREQ(node.get_clear(0).close_tag, "]]>");
    EXPECT_EQ(node.get_text(0), nullptr);
}

TEST_F(XmlTest, SectionsMayBeEmptyOrHoldTheBeginOfTheirEnd) {
    EXPECT_EQ(tree("<a><![CDATA[]]><!----><PRE></PRE></a>"), "a(<![CDATA[]]> <!----> <PRE></PRE>)");
    EXPECT_EQ(tree("<a><![CDATA[]]]]></a>"), "a(<![CDATA[]]]]>)");
    EXPECT_EQ(tree("<a><![CDATA[x]>]]></a>"), "a(<![CDATA[x]>]]>)");
    EXPECT_EQ(tree("<a><!-- - -> --></a>"), "a(<!-- - -> -->)");
    EXPECT_EQ(tree("<a><PRE></PRE </P></PRE></a>"), "a(<PRE></PRE </P></PRE>)");
}

TEST_F(XmlTest, ADocumentTypeEndsAtItsFirstGreaterThanSign) {
    EXPECT_EQ(tree("<!DOCTYPE a SYSTEM \"a.dtd\"><a/>"), "#root(<!DOCTYPE a SYSTEM \"a.dtd\"> a)");
    EXPECT_EQ(tree("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>"), "#root(<!DOCTYPE a [<!ELEMENT a ANY> \"]>\" a)");
}

TEST_F(XmlTest, ADocumentTypeThatIsWholeAtItsFirstGreaterThanSignNeedsNoMore) {
    EXPECT_EQ(tree("<!DOCTYPE a []><a/>"), "#root(<!DOCTYPE a []> a)");
    EXPECT_EQ(fault("<!DOCTYPE a []><a/>"), "none");
    EXPECT_EQ(fault("<!DOCTYPE a PUBLIC 'x' \"y\" [ ] ><a/>"), "none");
    EXPECT_EQ(tree("<!DOCTYPE a [><a/>"), "#root(<!DOCTYPE a [> a)");
    EXPECT_EQ(fault("<!DOCTYPE a [><a/>"), "none");
}

TEST_F(XmlTest, OnlyTheEndOfASubsetMayFollowADocumentTypeThatWasCutInIt) {
    EXPECT_EQ(fault("<!DOCTYPE a [<!ELEMENT a ANY>\n] > <a/>"), "none");
    EXPECT_EQ(fault("<!DOCTYPE a [<!ELEMENT a ANY>]&gt;<a/>"), "none");
    EXPECT_EQ(fault("<!DOCTYPE a [<!ELEMENT a ANY>] x ><a/>"), "8 at 1:30");
    EXPECT_EQ(fault("<!DOCTYPE a [<!ELEMENT a ANY>]> x<a/>"), "8 at 1:30");
    EXPECT_EQ(fault("<!DOCTYPE a [<!ELEMENT a ANY>]><!--c-->]><a/>"), "8 at 1:40");
    EXPECT_EQ(fault("<!DOCTYPE a []>]><a/>"), "8 at 1:16");
    EXPECT_EQ(fault("<!DOCTYPE a>]><a/>"), "8 at 1:13");
    EXPECT_EQ(fault("<!DOCTYPE a SYSTEM 'x[1]\"'><a/>"), "none");
}

TEST_F(XmlTest, TheRestOfADocumentTypeThatWasCutInALiteralIsText) {
    EXPECT_EQ(tree("<!DOCTYPE a SYSTEM 'x>y' ><a/>"), "#root(<!DOCTYPE a SYSTEM 'x> \"y' >\" a)");
    EXPECT_EQ(fault("<!DOCTYPE a SYSTEM 'x>y' ><a/>"), "none");
    EXPECT_EQ(fault("<!DOCTYPE a PUBLIC \"x'>\" \"y\">\n<a/>"), "none");
    EXPECT_EQ(fault("<!DOCTYPE a SYSTEM 'x>y\"><a/>"), "8 at 1:23");
    EXPECT_EQ(fault("<!DOCTYPE a SYSTEM 'x>y'<a/>"), "8 at 1:23");
    EXPECT_EQ(fault("<!DOCTYPE a SYSTEM 'x>y'> z<a/>"), "8 at 1:23");
    EXPECT_EQ(fault("<!DOCTYPE a [<!-- it's -->]><a/>"), "none");
}

TEST_F(XmlTest, NoEntityOfADocumentTypeIsKnownOrOpened) {
    EXPECT_EQ(fault("<!DOCTYPE a [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><a>&e;</a>"), "12 at 1:58");
    EXPECT_EQ(fault("<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>"), "12 at 1:34");
}

TEST_F(XmlTest, OnlyTheExactTagOpensAPreformattedSection) {
    EXPECT_EQ(tree("<a><pre><b/></pre></a>"), "a(pre(b))");
    EXPECT_EQ(tree("<a><PRE x='1'><b/></PRE></a>"), "a(PRE[x=1](b))");
    EXPECT_EQ(tree("<a><PRE/></a>"), "a(PRE)");
    EXPECT_EQ(tree("<a><PREFIX>x</PREFIX></a>"), "a(PREFIX(\"x\"))");
}

TEST_F(XmlTest, ASectionThatNeverEndsIsCode7AtItsOpening) {
    EXPECT_EQ(fault("<a>\n <![CDATA[x]]</a>"), "7 at 2:2");
    EXPECT_EQ(fault("<a>\n  <!-- x -></a>"), "7 at 2:3");
    EXPECT_EQ(fault("<a><PRE></a>"), "7 at 1:4");
    EXPECT_EQ(fault("<?xml version='1.0'?><!DOCTYPE a"), "7 at 1:22");
}

TEST_F(XmlTest, ASectionEndWithoutASectionIsCode7) {
    EXPECT_EQ(fault("<a>]]></a>"), "7 at 1:4");
}

class Sections : public XmlTest {
protected:
    // The value of the one section in a, which must be read without a fault.
    static std::string value_of(const std::string& section) {
        const std::string text = "<a>" + section + "</a>";
        EXPECT_EQ(fault(text.c_str()), "none") << section;
        const XmlNode node = XmlNode::parse_string(text.c_str());
        EXPECT_EQ(node.count_contents(), 1) << section;
        return node.count_clears() > 0 ? node.get_clear(0).value : "no section";
    }
};

TEST_F(Sections, EndOnlyAtTheirCloseTag) {
    EXPECT_EQ(value_of("<!-- a -- b -->"), " a -- b ");
    EXPECT_EQ(value_of("<!--a--->"), "a-");
    EXPECT_EQ(value_of("<!----->"), "-");
    EXPECT_EQ(value_of("<!-- <!-- -->"), " <!-- ");
    EXPECT_EQ(value_of("<![CDATA[<![CDATA[ -- ]] >]]>"), "<![CDATA[ -- ]] >");
}

TEST_F(Sections, KeepEveryByteAsItIs) {
    EXPECT_EQ(value_of("<!-- \x01\x1B\x7F -->"), " \x01\x1B\x7F ");
    EXPECT_EQ(value_of("<![CDATA[\xEF\xBF\xBF]]>"), "\xEF\xBF\xBF");
    EXPECT_EQ(value_of("<![CDATA[\xE9t\xE9]]>"), "\xE9t\xE9");
    EXPECT_EQ(value_of("<!--\xF0-->"), "\xF0");
    EXPECT_EQ(value_of("<PRE>\xC3</PRE>"), "\xC3");
    EXPECT_EQ(value_of("<![CDATA[one\r\ntwo\rthree]]>"), "one\r\ntwo\rthree");
}

TEST_F(Sections, TakeTheSecondByteOfACharacterForNoPartOfTheirEnd) {
    use_encoding(XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(value_of("<![CDATA[\x83\x5D]>x]]>"), "\x83\x5D]>x");
    EXPECT_EQ(value_of("<!--\x83-->"), "\x83");
}

TEST_F(XmlTest, SectionsStandOnlyWhereXmlHasThem) {
    EXPECT_EQ(fault("<?xml version='1.0'?><![CDATA[x]]><a/>"), "8 at 1:22");
    EXPECT_EQ(fault("<a/><![CDATA[x]]>"), "8 at 1:5");
    EXPECT_EQ(fault("<a><!DOCTYPE a></a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a/><!DOCTYPE a>"), "8 at 1:5");
    EXPECT_EQ(fault("<?xml version='1.0'?><!DOCTYPE a><!DOCTYPE a><a/>"), "8 at 1:34");
    EXPECT_EQ(fault("<a/><PRE></PRE>"), "8 at 1:5");
    EXPECT_EQ(fault("<?xml version='1.0'?><PRE></PRE>"), "none");
}

TEST_F(XmlTest, OtherMarkupDeclarationsAreUnexpected) {
    EXPECT_EQ(fault("<a><!ELEMENT a ANY></a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a><![cdata[x]]></a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a><!- x --></a>"), "8 at 1:4");
}

} // namespace
