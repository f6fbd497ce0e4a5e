#include "host/core/core_string.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> to_texts(const CoreVector<CoreString>& strings) {
    std::vector<std::string> texts;
    for (const CoreString& text : strings)
        texts.emplace_back(text.view());
    return texts;
}

using Texts = std::vector<std::string>;

TEST(CoreString, NullPointersAreEmptyStrings) {
    CoreString text(static_cast<const char*>(nullptr));
    EXPECT_TRUE(text.is_empty());
    EXPECT_STREQ(text.get_data(), "");
    text = "old";
    text.set_data(nullptr);
    EXPECT_TRUE(text.is_empty());
}

TEST(CoreString, HashIsJenkinsOneAtATime) {
    EXPECT_EQ(CoreString("sRGB").get_hash(), 0x2EF9EC0Cu);
    EXPECT_EQ(CoreString("").get_hash(), 0u);
    EXPECT_EQ(CoreString(CoreStringView::from_literal("linear")).get_hash(), 0x39327DA3u);
}

TEST(CoreString, FindAnswersThePositionOrAllOnes) {
    const CoreString text("a|b|c");
    EXPECT_EQ(text.find('|'), 1u);
    EXPECT_EQ(text.find('|', 2), 3u);
    EXPECT_EQ(text.find('|', 4), 0xFFFFFFFFu);
    EXPECT_EQ(text.find('a', 100), 0xFFFFFFFFu);
}

TEST(CoreString, StartWithComparesThePrefixOnly) {
    EXPECT_TRUE(CoreString("ACES - ACEScg").start_with("ACES"));
    EXPECT_TRUE(CoreString("ACES").start_with(""));
    EXPECT_FALSE(CoreString("ACE").start_with("ACES"));
    EXPECT_FALSE(CoreString("aces").start_with("ACES"));
}

TEST(CoreString, LowerCaseChangesAsciiLettersOnly) {
    EXPECT_EQ(CoreString("Rec.709 \xC3\x84Z[@").get_lower_case(), "rec.709 \xC3\x84z[@");
}

TEST(CoreString, SplitKeepsEmptyPieces) {
    EXPECT_EQ(to_texts(CoreString(",exr,,hdr,").split(',')), (Texts{"", "exr", "", "hdr", ""}));
    EXPECT_EQ(to_texts(CoreString("exr").split(',')), (Texts{"exr"}));
    EXPECT_EQ(to_texts(CoreString("").split(',')), Texts{});
}

TEST(CoreString, SplitWordTakesAnyRunOfBlanksTabsAndLineEndsAsOneSeparator) {
    EXPECT_EQ(to_texts(CoreString(" \t1.0  0.5\r\n\n0.25\v\f").split_word(" ")),
              (Texts{"1.0", "0.5", "0.25"}));
    EXPECT_EQ(to_texts(CoreString(" \n\t").split_word(" ")), Texts{});
    EXPECT_EQ(to_texts(CoreString("").split_word(" ")), Texts{});
}

TEST(CoreString, SplitWordTakesOtherSeparatorsCharacterByCharacter) {
    EXPECT_EQ(to_texts(CoreString(";a b,;c,").split_word(",;")), (Texts{"a b", "c"}));
}

TEST(CoreString, AfterFirstAndBeforeFirstSplitAtTheFirstSeparator) {
    EXPECT_EQ(CoreString::after_first("Tavelion|a|b", '|'), "a|b");
    EXPECT_EQ(CoreString::before_first("Tavelion|a|b", '|'), "Tavelion");
    EXPECT_EQ(CoreString::after_first("last|", '|'), "");
    EXPECT_EQ(CoreString::before_first("|first", '|'), "");
}

TEST(CoreString, AfterFirstAndBeforeFirstAnswerTheWholeTextWithoutASeparator) {
    EXPECT_EQ(CoreString::after_first("sRGB", '|'), "sRGB");
    EXPECT_EQ(CoreString::before_first("sRGB", '|'), "sRGB");
    EXPECT_EQ(CoreString::after_first("", '|'), "");
}

TEST(CoreString, ReplaceWorksOnCharactersAndOnTexts) {
    CoreString text("a\\b\\c");
    text.replace('\\', '/');
    EXPECT_EQ(text, "a/b/c");
    text.replace("/", "::", false);
    EXPECT_EQ(text, "a::b/c");
    text.replace(":", "::", true);
    EXPECT_EQ(text, "a::::b/c");
    text.replace("", "x", true);
    EXPECT_EQ(text, "a::::b/c");
    text.replace("::", "", true);
    EXPECT_EQ(text, "ab/c");
}

TEST(CoreString, SumsKeepBothSides) {
    CoreString text = CoreString("Use ") + "scene_linear" + '\n';
    EXPECT_EQ(text, "Use scene_linear\n");
    text += '!';
    text += text;
    EXPECT_EQ(text, "Use scene_linear\n!Use scene_linear\n!");
}

TEST(CoreString, BytesThatAreNoTextAreKept) {
    const CoreString text(std::string_view("a\0b\xFF", 4));
    EXPECT_EQ(text.get_count(), 4u);
    EXPECT_EQ(CoreString::after_first(text, '\0').view(), "b\xFF");
}

} // namespace
