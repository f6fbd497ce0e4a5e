#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/standalone/written_file_fixture.h"
#include "tests/support/comma_locale.h"

namespace {

TEST_F(WriteParserFile, ThePreferencesLookLikeThis) {
    add("color_space_file_path").add_string("/shows/a \"b\"/config.ocio");
    add("use_color_space_file").add_int(1);
    add("nothing");
    ParserGroup& group = *add("color_management").add_group(nullptr);
    for (const char* name : {"plate", "film"}) {
        ParserEntry& space = *group.add_entry("space", 0, 0);
        space.add_string(name);
        space.add_int(3);
        space.add_double(1.0);
    }
    add("empty group").add_group(nullptr);
    EXPECT_EQ(write(), R"(color_space_file_path: "/shows/a \"b\"/config.ocio"
use_color_space_file: 1
nothing:
color_management: !!pairs
  - space: ["plate", 3, 1.0]
  - space: ["film", 3, 1.0]
"empty group": {}
)");
    expect_round_trip();
}

TEST_F(WriteParserFile, GroupsNestInEveryForm) {
    ParserEntry& several = add("several");
    several.add_int(1);
    several.add_group(nullptr)->add_entry("x", 0, 0)->add_string("y");
    ParserGroup& repeated = *several.add_group(nullptr);
    repeated.add_entry("m", 0, 0)->add_group(&repeated)->add_entry("deep", 0, 0)->add_double(2);
    repeated.add_entry("m", 0, 0);
    several.add_group(nullptr);
    EXPECT_EQ(write(), R"(several:
  - 1
  -
    x: "y"
  - !!pairs
    - m:
        deep: 2.0
    - m:
  - {}
)");
    expect_round_trip();
}

TEST_F(WriteParserFile, RepeatedNamesAtTheTopReadBack) {
    add("CDL").add_int(1);
    add("CDL").add_int(2);
    EXPECT_EQ(write(), "!!pairs\n- CDL: 1\n- CDL: 2\n");
    expect_round_trip();
}

TEST_F(WriteParserFile, AnEmptyRootReadsBack) {
    EXPECT_EQ(write(), "{}\n");
    expect_round_trip();
}

TEST_F(WriteParserFile, StringsReadBackByteForByte) {
    const std::string texts[] = {"",
                                 " ",
                                 " leading and trailing ",
                                 "12",
                                 "1.5",
                                 ".nan",
                                 "~",
                                 "null",
                                 "true",
                                 "- x",
                                 "a: b",
                                 "# c",
                                 "&a",
                                 "*a",
                                 "!!int 5",
                                 "%TAG",
                                 "line\nline\n",
                                 "\r\n\t\v",
                                 std::string("a\0b", 3),
                                 "\x01\x04\x1B\x7F",
                                 "quote\" back\\slash 'single'",
                                 "\\n \\x41",
                                 "gr\xC3\xBC\xC3\x9F \xE8\x89\xB2 \xF0\x9F\x8E\xA8",
                                 "\xC2\x85\xC2\xA0\xE2\x80\xA8\xE2\x80\xA9\xEF\xBB\xBF",
                                 "\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xB7\x90\xF4\x8F\xBF\xBF",
                                 "latin \xE9",
                                 "\xFF",
                                 "\xED\xA0\x80",
                                 "\xC0\x80",
                                 "\xC3(",
                                 "\xE8\x89(",
                                 "\xF4\x90\x80\x80",
                                 "\xE0\x9F\xBF",
                                 "\xF0\x9F\x8E",
                                 std::string(100'000, 'x'),
                                 std::string(5000, '\xFE')};
    ParserEntry& all = add("all");
    for (const std::string& text : texts) {
        add(text).add_string(CoreString(std::string_view(text)));
        all.add_string(CoreString(std::string_view(text)));
    }
    write();
    ParserFile other;
    ASSERT_TRUE(other.read(folder.file("file.yaml").c_str(), "", "")) << other.get_error().get_data();
    unsigned int index = 0;
    for (const std::string& text : texts) {
        EXPECT_EQ(other.get_root().get_entry(0)->get_string(index).view(), text);
        const ParserEntry& entry = *other.get_root().get_entry(++index);
        EXPECT_EQ(entry.get_name().view(), text);
        EXPECT_EQ(entry.get_string(0).view(), text);
        EXPECT_TRUE(entry.is_value_string(0));
    }
}

TEST_F(WriteParserFile, NamesThatOtherReadersTakeForSomethingElseAreQuoted) {
    for (const char* name : {"n", "Yes", "FALSE", "null", "12", "a b", "-", "x-1"})
        add(name);
    EXPECT_EQ(write(), "\"n\":\n\"Yes\":\n\"FALSE\":\n\"null\":\n\"12\":\n\"a b\":\n\"-\":\nx-1:\n");
    expect_round_trip();
}

TEST_F(WriteParserFile, NamesOfLettersDigitsAndDashesStandPlain) {
    for (const char* name : {"a0", "a9", "z_Z", "_a-b", "A-A"})
        add(name);
    EXPECT_EQ(write(), "a0:\na9:\nz_Z:\n_a-b:\nA-A:\n");
}

TEST_F(WriteParserFile, WhatIsUtf8IsWrittenAsTextAndOtherBytesAsBinaryData) {
    for (const char* text : {"\xED\x9F\xBF", "\xEE\x80\x80", "\xED\xA0\x80", "\xED\xBF\xBF"})
        add("a").add_string(text);
    add("b").add_string(CoreString(std::string_view("x\0y", 3)));
    EXPECT_EQ(write(), "!!pairs\n- a: \"\xED\x9F\xBF\"\n- a: \"\xEE\x80\x80\"\n- a: !!binary \"7aCA\"\n"
                       "- a: !!binary \"7b+/\"\n- b: \"x\\x00y\"\n");
}

// The first and the last character of each length, and the neighbors of those that are escaped.
TEST_F(WriteParserFile, CharactersThatDoNotPrintAreEscaped) {
    for (const char* text :
         {"~\x7F", "\xC2\x80", "\xC2\x85\xC2\x9F\xC2\xA0", "\xC3\xA9\xDF\xBF", "\xE0\xA0\x80",
          "\xE2\x80\xA7\xE2\x80\xA8\xE2\x80\xA9\xE2\x80\xAA", "\xEF\xBB\xBE\xEF\xBB\xBF\xEF\xBC\x80",
          "\xEF\xBF\xBD\xEF\xBF\xBE\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF1\x80\x80\x81", "\xF0\x9F\xBF\xBE",
          "\xF4\x8F\xBF\xBD\xF4\x8F\xBF\xBF", "\xF4\x90\x80\x80"})
        add("a").add_string(text);
    EXPECT_EQ(write(), "!!pairs\n- a: \"~\\x7F\"\n- a: \"\\x80\"\n- a: \"\\x85\\x9F\xC2\xA0\"\n"
                       "- a: \"\xC3\xA9\xDF\xBF\"\n- a: \"\xE0\xA0\x80\"\n"
                       "- a: \"\xE2\x80\xA7\\u2028\\u2029\xE2\x80\xAA\"\n"
                       "- a: \"\xEF\xBB\xBE\\uFEFF\xEF\xBC\x80\"\n- a: \"\xEF\xBF\xBD\\uFFFE\\uFFFF\"\n"
                       "- a: \"\xF0\x90\x80\x80\"\n- a: \"\xF1\x80\x80\x81\"\n- a: \"\\U0001FFFE\"\n"
                       "- a: \"\xF4\x8F\xBF\xBD\\U0010FFFF\"\n- a: !!binary \"9JCAgA==\"\n");
}

TEST_F(WriteParserFile, EveryByteReadsBackInANameAndAValue) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        add("n" + text).add_string(CoreString(std::string_view("v" + text)));
    }
    expect_round_trip();
}

TEST_F(WriteParserFile, NumbersKeepTheirKindAndBits) {
    ParserEntry& numbers = add("numbers");
    for (const int integer : {0, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        numbers.add_int(integer);
    using Limits = std::numeric_limits<double>;
    for (const double real :
         {0.0, -0.0, 1.0, -5.0, 0.1, 1e22, 1e23, 1e300, 2147483648.0, Limits::max(), Limits::min(),
          Limits::denorm_min(), Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()})
        numbers.add_double(real);
    std::mt19937_64 random(2020);
    for (int i = 0; i < 5000; ++i) {
        const unsigned long long bits = random();
        double real;
        std::memcpy(&real, &bits, sizeof real);
        numbers.add_double(std::isnan(real) ? 0 : real);
        numbers.add_double(static_cast<float>(i) / 7);
    }
    expect_round_trip();
}

TEST_F(WriteParserFile, TheProcessLocaleChangesNothing) {
    ParserEntry& numbers = add("numbers");
    numbers.add_double(0.5);
    numbers.add_double(-1.25e-30);
    const CommaLocale locale;
    if (!locale.is_set)
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    EXPECT_EQ(write(), "numbers: [0.5, -1.25e-30]\n");
    expect_round_trip();
}

TEST_F(WriteParserFile, NotANumberOfAnyBitsStaysOne) {
    add("n").add_double(-std::nan("0x7"));
    write();
    EXPECT_EQ(read_back(), "n=d7ff8000000000000");
}

} // namespace
