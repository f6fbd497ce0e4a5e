#include "xml/characters.h"

#include <cstring>
#include <iterator>

#include "tests/xml/xml_test.h"

namespace {

using xml::CharacterTable;

struct LengthRange {
    int first;
    int last;
    int length;
};

template <std::size_t COUNT>
void expect_lengths(XmlEncoding encoding, const LengthRange (&ranges)[COUNT]) {
    const XmlLengthTable& table = get_length_table(encoding);
    int next = 0;
    for (const LengthRange& range : ranges) {
        ASSERT_EQ(range.first, next);
        for (int byte = range.first; byte <= range.last; ++byte)
            EXPECT_EQ(table[static_cast<std::size_t>(byte)], range.length) << byte;
        next = range.last + 1;
    }
    EXPECT_EQ(next, 256);
}

std::size_t length_of(XmlEncoding encoding, const char* text) {
    return CharacterTable::of(encoding).character_length(text, text + std::strlen(text));
}

std::string name_in(XmlEncoding encoding, const std::string& text) {
    const char* const begin = text.c_str();
    return {begin, CharacterTable::of(encoding).name_end(begin, begin + text.size())};
}

TEST(XmlLengthTables, Utf8HasUpToFourBytes) {
    expect_lengths(
        XmlEncoding::UTF_8,
        {{0, 0, 0}, {0x01, 0xC1, 1}, {0xC2, 0xDF, 2}, {0xE0, 0xEF, 3}, {0xF0, 0xF4, 4}, {0xF5, 0xFF, 1}});
}

TEST(XmlLengthTables, SingleByteHasOneEach) {
    expect_lengths(XmlEncoding::SINGLE_BYTE, {{0, 0, 0}, {1, 0xFF, 1}});
}

TEST(XmlLengthTables, ShiftJisHasTwoRangesOfLeadBytes) {
    expect_lengths(
        XmlEncoding::SHIFT_JIS,
        {{0, 0, 0}, {1, 0x80, 1}, {0x81, 0x9F, 2}, {0xA0, 0xDF, 1}, {0xE0, 0xEF, 2}, {0xF0, 0xFF, 1}});
}

TEST(XmlLengthTables, Gb2312LeadsFromA1ToF7) {
    expect_lengths(XmlEncoding::GB2312, {{0, 0, 0}, {1, 0xA0, 1}, {0xA1, 0xF7, 2}, {0xF8, 0xFF, 1}});
}

TEST(XmlLengthTables, GbkAndBig5ShareOne) {
    expect_lengths(XmlEncoding::GBK, {{0, 0, 0}, {1, 0x80, 1}, {0x81, 0xFE, 2}, {0xFF, 0xFF, 1}});
    EXPECT_EQ(&get_length_table(XmlEncoding::GBK), &get_length_table(XmlEncoding::BIG5));
}

TEST(XmlCharacters, Utf8ExcludesIllFormedSequencesSurrogatesAndNonCharacters) {
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\xC3\xA9"), 2u);
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\xE2\x82\xAC"), 3u);
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\xF0\x9F\x8E\xA8"), 4u);
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\xEF\xBF\xBD"), 3u);
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\xF4\x8F\xBF\xBF"), 4u);
    for (const char* bad :
         {"\x80", "\xC3", "\xC3(", "\xC1\xA1", "\xE0\x80\x80", "\xE2\x82", "\xF0\x80\x80\x80", "\xED\xA0\x80",
          "\xED\xBF\xBF", "\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF4\x90\x80\x80", "\xFF"})
        EXPECT_EQ(length_of(XmlEncoding::UTF_8, bad), 0u) << ::testing::PrintToString(bad);
}

TEST(XmlCharacters, ControlCharactersAreNoneButTheFourBlanks) {
    for (char c = 1; c < 0x20; ++c) {
        const char text[] = {c, '\0'};
        const bool is_blank = c == '\t' || c == '\n' || c == '\r';
        EXPECT_EQ(length_of(XmlEncoding::SINGLE_BYTE, text), is_blank ? 1u : 0u) << static_cast<int>(c);
    }
    EXPECT_EQ(length_of(XmlEncoding::UTF_8, "\x7F"), 1u);
}

TEST(XmlCharacters, ATwoByteCharacterNeverSwallowsMarkup) {
    EXPECT_EQ(length_of(XmlEncoding::SHIFT_JIS, "\x83\x5D"), 2u);
    EXPECT_EQ(length_of(XmlEncoding::SHIFT_JIS, "\x83<"), 0u);
    EXPECT_EQ(length_of(XmlEncoding::GBK, "\x81\"x"), 0u);
    EXPECT_EQ(length_of(XmlEncoding::GBK, "\x81"), 0u);
    EXPECT_EQ(length_of(XmlEncoding::GBK, "\x81\x30"), 2u);
    EXPECT_EQ(length_of(XmlEncoding::SHIFT_JIS, "\xB1"), 1u);
}

TEST(XmlCharacters, NamesFollowTheFifthEdition) {
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "a-1.b:_ c"), "a-1.b:_");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "\xC3\xA9t\xC3\xA9="), "\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "a\xCC\x80>"), "a\xCC\x80");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "\xCC\x80"), "");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "a\xC3\x97"), "a");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "\xF0\x90\x80\x80\xF0\x90\x80\x80x"),
              "\xF0\x90\x80\x80\xF0\x90\x80\x80x");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "9a"), "");
    EXPECT_EQ(name_in(XmlEncoding::UTF_8, "-a"), "");
}

std::string utf8(char32_t code) {
    const auto tail = [](char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
    if (code < 0x800)
        return {static_cast<char>(0xC0 | code >> 6), tail(code)};
    if (code < 0x10000)
        return {static_cast<char>(0xE0 | code >> 12), tail(code >> 6), tail(code)};
    return {static_cast<char>(0xF0 | code >> 18), tail(code >> 12), tail(code >> 6), tail(code)};
}

enum class Use { NONE, NAME, NAME_START };

struct UseFrom {
    char32_t first;
    Use use;
};

/// NameStartChar and NameChar of XML 1.0, fifth edition, as the codes where the result changes.
constexpr UseFrom USES[] = {
    {0x80, Use::NONE},    {0xB7, Use::NAME},         {0xB8, Use::NONE},   {0xC0, Use::NAME_START},
    {0xD7, Use::NONE},    {0xD8, Use::NAME_START},   {0xF7, Use::NONE},   {0xF8, Use::NAME_START},
    {0x300, Use::NAME},   {0x370, Use::NAME_START},  {0x37E, Use::NONE},  {0x37F, Use::NAME_START},
    {0x2000, Use::NONE},  {0x200C, Use::NAME_START}, {0x200E, Use::NONE}, {0x203F, Use::NAME},
    {0x2041, Use::NONE},  {0x2070, Use::NAME_START}, {0x2190, Use::NONE}, {0x2C00, Use::NAME_START},
    {0x2FF0, Use::NONE},  {0x3001, Use::NAME_START}, {0xD800, Use::NONE}, {0xF900, Use::NAME_START},
    {0xFDD0, Use::NONE},  {0xFDF0, Use::NAME_START}, {0xFFFE, Use::NONE}, {0x10000, Use::NAME_START},
    {0xF0000, Use::NONE},
};

TEST(XmlCharacters, EveryCodeBeyondAsciiIsUsedAsTheFifthEditionSays) {
    const UseFrom* use = USES;
    for (unsigned code = 0x80; code <= 0x10FFFF; ++code) {
        if (use + 1 != std::end(USES) && use[1].first == code)
            ++use;
        const std::string text = utf8(code);
        const bool excluded = (code >= 0xD800 && code < 0xE000) || code == 0xFFFE || code == 0xFFFF;
        ASSERT_EQ(length_of(XmlEncoding::UTF_8, text.c_str()), excluded ? 0 : text.size()) << code;
        ASSERT_EQ(!name_in(XmlEncoding::UTF_8, text).empty(), use->use == Use::NAME_START) << code;
        ASSERT_EQ(name_in(XmlEncoding::UTF_8, "a" + text).size() > 1, use->use != Use::NONE) << code;
    }
}

TEST(XmlCharacters, OutsideUtf8EveryCharacterBeyondAsciiIsALetter) {
    EXPECT_EQ(name_in(XmlEncoding::SINGLE_BYTE, "\xE9t\xE9>"), "\xE9t\xE9");
    EXPECT_EQ(name_in(XmlEncoding::SHIFT_JIS, "\x83\x5D\xB1>"), "\x83\x5D\xB1");
    EXPECT_EQ(name_in(XmlEncoding::GBK, "a\x81>"), "a");
}

} // namespace
