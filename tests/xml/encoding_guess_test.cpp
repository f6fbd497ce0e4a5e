#include <string>
#include <vector>

#include "tests/xml/xml_test.h"
#include "xml/xml_encoding.h"

namespace {

XmlEncoding guess(const std::string& bytes, bool use_declaration = true) {
    return guess_encoding(bytes.data(), bytes.size(), use_declaration);
}

std::string declared(const std::string& value) {
    return "<?xml version=\"1.0\" encoding=\"" + value + "\"?><doc/>";
}

const std::string PADDING(30, ' ');

TEST_F(XmlTest, GuessNeedsTwentyFiveBytes) {
    EXPECT_EQ(guess(std::string(24, 'a')), XmlEncoding::UNKNOWN);
    EXPECT_EQ(guess(std::string(25, 'a')), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("\xEF\xBB\xBF<doc/>"), XmlEncoding::UNKNOWN);
    EXPECT_EQ(guess_encoding(nullptr, 100, true), XmlEncoding::UNKNOWN);
}

TEST_F(XmlTest, GuessLeavesUtf16ToItsConversion) {
    const std::string wide = "\xFF\xFE" + PADDING;
    EXPECT_EQ(guess(wide), XmlEncoding::UNKNOWN);
    XmlSettings settings;
    settings.guess_wide_characters = false;
    set_xml_settings(settings);
    EXPECT_EQ(guess(wide), XmlEncoding::UTF_8);
}

TEST_F(XmlTest, GuessTakesAUtf8MarkForUtf8WhateverFollows) {
    EXPECT_EQ(guess("\xEF\xBB\xBF" + declared("GBK")), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("\xEF\xBB\xBF\xC3(" + PADDING), XmlEncoding::UTF_8);
}

TEST_F(XmlTest, GuessChecksOnlyTheBytesThatContinueACharacter) {
    EXPECT_EQ(guess("\xC3\xA9" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("\xF0\x9F\x8E\xA8" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("caf\xE9 " + PADDING), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess("\xE2\x82(" + PADDING), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess("\xF0\x9F\x8E(" + PADDING), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess("5600\xB0 \xFF" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("\xED\xA0\x80" + PADDING), XmlEncoding::UTF_8);
}

TEST_F(XmlTest, GuessForgivesACharacterThatTheBufferCuts) {
    EXPECT_EQ(guess(PADDING + "\xF0\x9F\x8E"), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(PADDING + "\xC3"), XmlEncoding::UTF_8);
}

TEST_F(XmlTest, GuessReadsNothingBehindTheBuffer) {
    for (const std::string& end :
         {std::string("\xF0"), std::string("\xC3\xA9"), std::string("encoding = \"gbk")}) {
        const std::string text = PADDING + end;
        const std::vector<char> exact(text.begin(), text.end());
        EXPECT_EQ(guess_encoding(exact.data(), exact.size(), true),
                  end.back() == 'k' ? XmlEncoding::GBK : XmlEncoding::UTF_8);
    }
}

TEST_F(XmlTest, GuessStopsItsCheckAtAZeroByte) {
    EXPECT_EQ(guess(PADDING + std::string(1, '\0') + "\xE9("), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("\xC3" + std::string(1, '\0') + PADDING), XmlEncoding::SINGLE_BYTE);
}

TEST_F(XmlTest, GuessReadsTheDeclaredNameByItsPrefix) {
    EXPECT_EQ(guess(declared("UTF-8")), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(declared("utf8")), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(declared("Utf-8-variant")), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(declared("ShiftJIS")), XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(guess(declared("SHIFT-JIS")), XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(guess(declared("sjis")), XmlEncoding::SHIFT_JIS);
    EXPECT_EQ(guess(declared("gb2312")), XmlEncoding::GB2312);
    EXPECT_EQ(guess(declared("BIG5-HKSCS")), XmlEncoding::BIG5);
    EXPECT_EQ(guess(declared("gbk")), XmlEncoding::GBK);
    EXPECT_EQ(guess(declared("ISO-8859-1")), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess(declared("Shift_JIS")), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess(declared("")), XmlEncoding::SINGLE_BYTE);
}

TEST_F(XmlTest, GuessIsUndecidedWhenTheBytesBelieADeclaredUtf8) {
    EXPECT_EQ(guess(declared("utf-8") + "\xE9("), XmlEncoding::UNKNOWN);
    EXPECT_EQ(guess(declared("gbk") + "\xE9("), XmlEncoding::GBK);
}

TEST_F(XmlTest, GuessAllowsBlanksAndEitherQuoteInTheDeclaration) {
    EXPECT_EQ(guess("<?xml encoding \t\r\n = \n ' gbk'?>" + PADDING), XmlEncoding::GBK);
    EXPECT_EQ(guess("<?xml encoding=\"\tsjis\"?>" + PADDING), XmlEncoding::SHIFT_JIS);
}

TEST_F(XmlTest, GuessFallsBackOnTheBytesWhenTheDeclarationIsIncomplete) {
    EXPECT_EQ(guess("<doc>encoding</doc>" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("<doc encoding=gbk/>" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("<doc encoding:\"gbk\"/>" + PADDING), XmlEncoding::UTF_8);
    EXPECT_EQ(guess("<doc encoding=gbk/>\xE9(" + PADDING), XmlEncoding::SINGLE_BYTE);
    EXPECT_EQ(guess(PADDING + "encoding"), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(PADDING + "encoding="), XmlEncoding::UTF_8);
}

TEST_F(XmlTest, GuessIgnoresTheDeclarationWhenNotAsked) {
    EXPECT_EQ(guess(declared("gbk"), false), XmlEncoding::UTF_8);
    EXPECT_EQ(guess(declared("gbk") + "\xE9(", false), XmlEncoding::SINGLE_BYTE);
}

TEST_F(XmlTest, GuessLooksForTheDeclarationInTheFirst200BytesOnly) {
    const std::string declaration = "encoding='gbk'";
    EXPECT_EQ(guess(std::string(200 - declaration.size(), ' ') + declaration + PADDING), XmlEncoding::GBK);
    EXPECT_EQ(guess(std::string(193, ' ') + declaration + PADDING), XmlEncoding::UTF_8);
}

} // namespace
