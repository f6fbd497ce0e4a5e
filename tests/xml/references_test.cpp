#include "xml/references.h"

#include <cstring>

#include "tests/xml/xml_test.h"

namespace {

std::string text_of(const char* content) {
    const XmlNode node = XmlNode::parse_string(("<a>" + std::string(content) + "</a>").c_str());
    return node.get_text(0) != nullptr ? node.get_text(0) : "(null)";
}

TEST_F(XmlTest, EntitiesAreDecoded) {
    EXPECT_EQ(text_of("&amp;&lt;&gt;&quot;&apos;"), "&<>\"'");
    EXPECT_EQ(tree("<a b='&amp;&lt;&gt;&quot;&apos;'/>"), "a[b=&<>\"']");
}

TEST_F(XmlTest, EntitiesMatchIgnoringCase) {
    EXPECT_EQ(text_of("&AMP;&Lt;&gT;&QUOT;&aPoS;"), "&<>\"'");
}

TEST_F(XmlTest, DecodedTextIsNotDecodedAgain) {
    EXPECT_EQ(text_of("&amp;lt;"), "&lt;");
    EXPECT_EQ(text_of("&#38;amp;"), "&amp;");
    EXPECT_EQ(text_of("&#60;b/&#62;"), "<b/>");
}

TEST_F(XmlTest, CharacterReferencesStandForOneByte) {
    EXPECT_EQ(text_of("&#x41;&#X4a;&#x4A;&#65;&#00065;"), "AJJAA");
    EXPECT_EQ(text_of("&#xE9;&#255;&#1;"), "\xE9\xFF\x01");
}

TEST_F(XmlTest, ACharacterReferenceAbove255IsCode13) {
    EXPECT_EQ(fault("<a>x&#256;</a>"), "13 at 1:5");
    EXPECT_EQ(fault("<a>&#x100;</a>"), "13 at 1:4");
    EXPECT_EQ(fault("<a>&#2550;</a>"), "13 at 1:4");
    EXPECT_EQ(fault("<a>&#xFF0;</a>"), "13 at 1:4");
    EXPECT_EQ(fault("<a b='&#8364;'/>"), "13 at 1:7");
    EXPECT_EQ(fault("<a>&#99999999999999999999999999;</a>"), "13 at 1:4");
}

TEST_F(XmlTest, AReferenceWithoutDigitsIsAZeroByte) {
    EXPECT_EQ(text_of("x&#;y"), "x");
    EXPECT_EQ(text_of("x&#x;y"), "x");
    EXPECT_EQ(text_of("x&#0;y"), "x");
    EXPECT_EQ(fault("<a>&#;</a>"), "none");
}

TEST_F(XmlTest, AnythingElseAfterAnAmpersandIsCode12) {
    for (const char* content : {"&unknown;", "&", "& ", "&amp", "&;", "&lt x", "&#1a;", "&#x4G;", "&# 65;",
                                "&#65", "&#65 ;", "&#-1;", "&ampere;", "&#300", "&#x12g"})
        EXPECT_EQ(fault(("<a>" + std::string(content) + "</a>").c_str()), "12 at 1:4") << content;
}

TEST_F(XmlTest, AnUnknownEntityInAnAttributeIsCode12) {
    EXPECT_EQ(fault("<a b='1&nbsp;2'/>"), "12 at 1:8");
}

TEST_F(XmlTest, TheFirstOfSeveralFaultsIsReported) {
    EXPECT_EQ(fault("<a>ok &amp; &one; \x01 &#999;</a>"), "12 at 1:13");
    EXPECT_EQ(fault("<a>ok &#999; &one;</a>"), "13 at 1:7");
    EXPECT_EQ(fault("<a>ok \x01 &one;</a>"), "8 at 1:7");
}

TEST_F(XmlTest, AReferenceReportsItsLengthAndByte) {
    const xml::Reference entity = xml::read_reference("&quot;tail");
    EXPECT_EQ(entity.length, 6u);
    EXPECT_EQ(entity.byte, '"');
    const xml::Reference number = xml::read_reference("&#x41;tail");
    EXPECT_EQ(number.length, 6u);
    EXPECT_EQ(number.byte, 'A');
}

} // namespace
