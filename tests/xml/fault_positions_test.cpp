// Where each code is raised within a text, and how lines and columns are counted.

#include "tests/xml/xml_test.h"

namespace {

TEST_F(XmlTest, AMissingStartTagNameIsCode4BehindTheLessThanSign) {
    EXPECT_EQ(fault("<a>< b/></a>"), "4 at 1:5");
    EXPECT_EQ(fault("<a><></a>"), "4 at 1:5");
    EXPECT_EQ(fault("<a><3b/></a>"), "4 at 1:5");
    EXPECT_EQ(fault("<a>1 < 2</a>"), "4 at 1:7");
    EXPECT_EQ(fault("<a><"), "4 at 1:5");
}

TEST_F(XmlTest, AMissingEndTagNameIsCode5BehindTheSlash) {
    EXPECT_EQ(fault("<a></></a>"), "5 at 1:6");
    EXPECT_EQ(fault("<a></ a>"), "5 at 1:6");
}

TEST_F(XmlTest, AnEndTagThatMatchesNothingOpenIsCode6AtItsBegin) {
    EXPECT_EQ(fault("<a>\n <b></c></a>"), "6 at 2:5");
    EXPECT_EQ(fault("<a></a></a>"), "6 at 1:8");
    EXPECT_EQ(fault("<a><b/></b></a>"), "6 at 1:8");
    EXPECT_EQ(fault("<a></A>"), "6 at 1:4");
    EXPECT_EQ(fault("<ab></a>"), "6 at 1:5");
    EXPECT_EQ(fault("<a></ab>"), "6 at 1:4");
}

TEST_F(XmlTest, AnEndTagThatClosesAnOuterElementIsTheWarningAtItsBegin) {
    EXPECT_EQ(fault("<a>\n<b>\n</a>"), "1 at 3:1");
    EXPECT_EQ(fault("<a><?p?></a>"), "none");
}

TEST_F(XmlTest, AnElementThatNeverEndsIsTheWarningAtTheEndOfTheText) {
    EXPECT_EQ(fault("<a>\n"), "1 at 2:1");
    EXPECT_EQ(fault("<a><b></b>"), "1 at 1:11");
}

TEST_F(XmlTest, TheFirstOfSeveralWarningsIsReported) {
    EXPECT_EQ(fault("<a><b><c></b><d></a>"), "1 at 1:10");
    EXPECT_EQ(fault("<a><b><c></b>"), "1 at 1:10");
}

TEST_F(XmlTest, AnErrorAfterAWarningIsTheOneReported) {
    EXPECT_EQ(fault("<a><b></a> &x;"), "12 at 1:12");
    EXPECT_EQ(fault("<a><b></a><c/>"), "8 at 1:11");
}

TEST_F(XmlTest, ATagThatFitsNoGrammarIsCode8AtItsFirstMisfit) {
    EXPECT_EQ(fault("<a b></a>"), "8 at 1:5");
    EXPECT_EQ(fault("<a b=></a>"), "8 at 1:6");
    EXPECT_EQ(fault("<a b=1></a>"), "8 at 1:6");
    EXPECT_EQ(fault("<a b \"1\"></a>"), "8 at 1:6");
    EXPECT_EQ(fault("<a b=\"1\"c=\"2\"></a>"), "8 at 1:9");
    EXPECT_EQ(fault("<a b=\"1'></a>"), "8 at 1:10");
    EXPECT_EQ(fault("<a b=\"1"), "8 at 1:8");
    EXPECT_EQ(fault("<a b=\"1<2\"/>"), "8 at 1:8");
    EXPECT_EQ(fault("<a 1=\"2\"/>"), "8 at 1:4");
    EXPECT_EQ(fault("<a / >"), "8 at 1:5");
    EXPECT_EQ(fault("<a@/>"), "8 at 1:3");
    EXPECT_EQ(fault("<a b@='1'/>"), "8 at 1:5");
    EXPECT_EQ(fault("<a"), "8 at 1:3");
    EXPECT_EQ(fault("<a </a>"), "8 at 1:4");
    EXPECT_EQ(fault("<a></a/>"), "8 at 1:7");
    EXPECT_EQ(fault("<a></a b='1'>"), "8 at 1:8");
    EXPECT_EQ(fault("<a></a"), "8 at 1:7");
}

TEST_F(XmlTest, ARepeatedAttributeIsCode8AtItsSecondName) {
    EXPECT_EQ(fault("<a b='1' c='2' b='3'/>"), "8 at 1:16");
    EXPECT_EQ(fault("<a b='1' B='2'/>"), "none");
    std::string text = "<a";
    for (int i = 0; i < 40; ++i)
        text += " n" + std::to_string(i) + "=''";
    EXPECT_EQ(fault((text + "/>").c_str()), "none");
    EXPECT_EQ(fault((text + "\nn7='' n3=''/>").c_str()), "8 at 2:1");
}

TEST_F(XmlTest, ContentBesideTheDocumentElementIsCode8) {
    EXPECT_EQ(fault("<a/>\ntext"), "8 at 2:1");
    EXPECT_EQ(fault("<a/>&#32;"), "8 at 1:5");
    EXPECT_EQ(fault("<a/><b/>"), "8 at 1:5");
    EXPECT_EQ(fault("text <a/>"), "8 at 1:1");
    EXPECT_EQ(fault("text <?p?>"), "8 at 1:1");
    EXPECT_EQ(fault("\n &#32;<a/>"), "8 at 2:2");
    EXPECT_EQ(fault("<?xml version='1.0'?> x <!--c--> y <a/>"), "8 at 1:23");
}

TEST_F(XmlTest, CharactersThatXmlExcludesAreCode8) {
    EXPECT_EQ(fault("<a>x\x0C</a>"), "8 at 1:5");
    EXPECT_EQ(fault("<a b='\x01'/>"), "8 at 1:7");
    EXPECT_EQ(fault("<a><?p \x0C?></a>"), "8 at 1:8");
    EXPECT_EQ(fault("<a \xC3\x97='1'/>"), "8 at 1:4");
}

TEST_F(XmlTest, LinesEndAtLineFeedsOnly) {
    EXPECT_EQ(fault("<a>\n\n  &x;</a>"), "12 at 3:3");
    EXPECT_EQ(fault("<a>\r\n\r\n  &x;</a>"), "12 at 3:3");
    EXPECT_EQ(fault("<a>\r&x;</a>"), "12 at 1:5");
    EXPECT_EQ(fault("<a>\t&x;</a>"), "12 at 1:5");
}

TEST_F(XmlTest, AMultiByteCharacterIsOneColumn) {
    EXPECT_EQ(fault("<\xC3\xA9>\xE2\x82\xAC\xF0\x9F\x8E\xA8&x;</\xC3\xA9>"), "12 at 1:6");
    use_encoding(XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(fault("<\xC3\xA9>\xE2\x82\xAC&x;</\xC3\xA9>"), "12 at 1:8");
    use_encoding(XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(fault("<a>\x83\x5D\xB1&x;</a>"), "12 at 1:6");
    use_encoding(XmlEncoding::GBK);
    EXPECT_EQ(fault("<a>\x83\x5D\xB1\xB1&x;</a>"), "12 at 1:6");
}

// The first byte of a character that lacks the others takes their columns all the same.
TEST_F(XmlTest, APlaceBehindBytesThatMakeNoCharacterIsCountedByTheLengthTable) {
    EXPECT_EQ(fault("<a>\xC3(&x;</a>"), "12 at 1:5");
    EXPECT_EQ(fault("<a>\xE9\n<b>x\n</b>\n&x;</a>"), "12 at 3:1");
}

// Each line before the fault ends in a place where a string of the tree ends: the parser must not lose it.
TEST_F(XmlTest, LinesAreCountedAcrossTextThatWasAlreadyRead) {
    EXPECT_EQ(fault("<?xml version='1.0'\n?><a\nb\n=\n'1'\nc='2'\n>x\n<b\n/>y\n<!--\n-->z\n</a\n>\n&"),
              "12 at 14:1");
    EXPECT_EQ(fault("<a>\none\ntwo &amp;\nthree\n<!--c-->\nfour\n</a>\n<b/>"), "8 at 8:1");
    EXPECT_EQ(fault("<?p\nword\nb='1'\n?><a>x\n&"), "12 at 5:1");
    EXPECT_EQ(fault("<a b='1\n2\n&amp;'\n c\n=''>\n&"), "12 at 6:1");
}

TEST_F(XmlTest, TheEndOfTheTextIsItsFirstZeroByte) {
    const TempDir folder;
    XmlResults results;
    XmlNode::parse_file(folder.file("zero.xml", std::string("<a b=\"1\0 2\"/>", 13)).c_str(), nullptr,
                        &results);
    EXPECT_EQ(outcome(results), "8 at 1:8");
}

} // namespace
