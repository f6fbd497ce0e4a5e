#include "host/parser/parser_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/standalone/described_entries.h"
#include "tests/support/temp_dir.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

class ReadParserFile : public testing::Test {
protected:
    bool read(const std::string& content) {
        return file.read(folder.write("file.yaml", content).c_str(), "", "");
    }
    std::string read_and_describe(const std::string& content) {
        return read(content) ? describe(file.get_root())
                             : std::string("error: ") + file.get_error().get_data();
    }
    const ParserEntry& entry(unsigned int index) { return *file.get_root().get_entry(index); }

    TempDir folder;
    ParserFile file;
};

TEST_F(ReadParserFile, AMappingFileIsGroupsOfStrings) {
    EXPECT_EQ(read_and_describe("# Our show\n"
                                "OpenEXR:\n"
                                "  extensions: exr,sxr\n"
                                "  color_space: ACES - ACEScg\n"
                                "default: {extensions: Other, color_space: 'sRGB'}\n"),
              "OpenEXR={extensions=s\"exr,sxr\"; color_space=s\"ACES - ACEScg\"}; "
              "default={extensions=s\"Other\"; color_space=s\"sRGB\"}");
    EXPECT_EQ(file.get_error(), "");
}

TEST_F(ReadParserFile, PlainScalarsAreIntegersRealsOrStrings) {
    EXPECT_EQ(read_and_describe("[{i: [0, -12, +7, 0x1F, 0o17, 2147483647, -2147483648,"
                                " 0x7fffffff, 0o17777777777]},"
                                " {s: [abc, 1.2.3, 1e, 0x, 0xG, '1', \"2.5\", true, 1_000, -, 12h]}]"),
              "i=i0 i-12 i7 i31 i15 i2147483647 i-2147483648 i2147483647 i2147483647; "
              "s=s\"abc\" s\"1.2.3\" s\"1e\" s\"0x\" s\"0xG\" s\"1\" s\"2.5\" s\"true\" s\"1_000\" s\"-\" "
              "s\"12h\"");
}

TEST_F(ReadParserFile, WhatOnlyBeginsLikeANumberIsAString) {
    EXPECT_EQ(read_and_describe("s: [1e+, 1e5x, 1.5x, +, ., 0x1G, 0o18, 0b1, 0y12, .infx, +.Inf]\n"),
              "s=s\"1e+\" s\"1e5x\" s\"1.5x\" s\"+\" s\".\" s\"0x1G\" s\"0o18\" s\"0b1\" s\"0y12\" "
              "s\".infx\" d7ff0000000000000");
}

TEST_F(ReadParserFile, ANullNameIsAnEmptyOne) {
    for (const char* text :
         {"? \n: x\n", "? ~\n: x\n", "~: x\n", "null: x\n", ": x\n", "{~: x}\n", "{? : x}\n"})
        EXPECT_EQ(read_and_describe(text), "=s\"x\"") << text;
    EXPECT_EQ(read_and_describe("a: 1\n? # none\n: {? : [2, 3], b: 4}\n? \n: 5\nc: 6\n?\n"),
              "a=i1; ={=i2 i3; b=i4}; =i5; c=i6; =");
    EXPECT_EQ(read_and_describe("a: &k 1\n? \n: x\n: y\n: {z: 1}\n: [2, 3]\n: *k\nb: 4\n"),
              "a=i1; =s\"x\"; =s\"y\"; ={z=i1}; =i2 i3; =i1; b=i4");
}

TEST_F(ReadParserFile, OneDigitIsEnough) {
    EXPECT_EQ(read_and_describe("n: [0x7, 0o7, 0xF, 8, +8, -8]\n"), "n=i7 i7 i15 i8 i8 i-8");
    ASSERT_TRUE(read("r: [1e-5, 1E+5, 2E3, -2e-3, .5e1, 5.e1]\n"));
    const double expected[] = {1e-5, 1e5, 2000, -0.002, 5, 50};
    for (unsigned int i = 0; i < 6; ++i) {
        EXPECT_TRUE(entry(0).is_value_double(i)) << i;
        EXPECT_EQ(entry(0).get_double(i), expected[i]) << i;
    }
}

TEST_F(ReadParserFile, RealsAreExact) {
    ASSERT_TRUE(
        read("r: [1.0, -0.0, .5, 5., 1e3, 2147483648, 0xFFFFFFFF, .inf, -.INF, 1e400, 0x80000000, .nan]"));
    const double expected[] = {1.0,          -0.0,     0.5,       5.0,      1000.0,      2147483648.0,
                               4294967295.0, HUGE_VAL, -HUGE_VAL, HUGE_VAL, 2147483648.0};
    for (unsigned int i = 0; i < 11; ++i) {
        EXPECT_TRUE(entry(0).is_value_double(i)) << i;
        EXPECT_EQ(entry(0).get_double(i), expected[i]) << i;
        EXPECT_EQ(std::signbit(entry(0).get_double(i)), std::signbit(expected[i])) << i;
    }
    EXPECT_TRUE(std::isnan(entry(0).get_double(11)));
}

TEST_F(ReadParserFile, ExplicitTagsDecideTheKind) {
    EXPECT_EQ(read_and_describe("{a: !!str 5, b: !!int \"5\", c: !!binary \"/wA=\", d: !custom 7}"),
              std::string("a=s\"5\"; b=i5; c=s\"\xFF") + '\0' + "\"; d=s\"7\"");
}

// The examples of RFC 4648, section 10, and one in lines as YAML files have them.
TEST_F(ReadParserFile, BinaryDataIsBase64) {
    EXPECT_EQ(read_and_describe(
                  "a: !!binary [\"\"]\nb: [!!binary \"\", !!binary Zg==, !!binary Zm8=, !!binary Zm9v,"
                  " !!binary Zm9vYg==, !!binary Zm9vYmE=, !!binary Zm9vYmFy]\n"
                  "c: !!binary |\n  Zm9v\n  YmFy\n"),
              "a=s\"\"; b=s\"\" s\"f\" s\"fo\" s\"foo\" s\"foob\" s\"fooba\" s\"foobar\"; c=s\"foobar\"");
}

TEST_F(ReadParserFile, NullIsAnEntryWithoutValueAndEmptyInAList) {
    EXPECT_EQ(read_and_describe("{a: , b: ~, c: null, d: [], e: [1, ~, x]}"),
              "a=; b=; c=; d=; e=i1 s\"\" s\"x\"");
}

TEST_F(ReadParserFile, AListOfMapsIsSeveralGroups) {
    EXPECT_EQ(read_and_describe("a:\n- {x: 1}\n- {x: 2, y: 3}\n- 4\n"), "a={x=i1} {x=i2; y=i3} i4");
}

TEST_F(ReadParserFile, NamesMayRepeatInMapsAndInListsOfPairs) {
    EXPECT_EQ(read_and_describe("a: {x: 1, x: 2}\nb: !!pairs [x: 1, x: 2]\nc: !!omap\n- x: 1\n- y: 2\n"),
              "a={x=i1; x=i2}; b={x=i1; x=i2}; c={x=i1; y=i2}");
    EXPECT_EQ(read_and_describe("- x: 1\n- x: 2\n"), "x=i1; x=i2");
    EXPECT_EQ(read_and_describe("!!pairs\n- x: 1\n- x: 2\n"), "x=i1; x=i2");
}

TEST_F(ReadParserFile, EmptyFilesHaveNoEntries) {
    for (const char* content :
         {"", "\n\n", "# only words\n", "---\n", "---\n...\n", "{}", "[]", "\xEF\xBB\xBF", "~"})
        EXPECT_EQ(read_and_describe(content), "") << content;
}

TEST_F(ReadParserFile, TheEndOfTheFileIsTheEndOfALiteral) {
    EXPECT_EQ(read_and_describe("a: |\n  x\n"), "a=s\"x\n\"");
    EXPECT_EQ(read_and_describe("a: |+\n  x\n\n"), "a=s\"x\n\n\"");
    EXPECT_EQ(read_and_describe("a: |-\n  x\n\n"), "a=s\"x\"");
    EXPECT_EQ(read_and_describe("a: >\n  x\n  y\n"), "a=s\"x y\n\"");
}

TEST_F(ReadParserFile, AByteOrderMarkIsSkipped) {
    EXPECT_EQ(read_and_describe("\xEF\xBB\xBF"
                                "a: 1\n"),
              "a=i1");
}

TEST_F(ReadParserFile, WindowsLineEndsAreLineEnds) {
    EXPECT_EQ(read_and_describe("a: x\r\nb:\r\n  c: 2\r\n"), "a=s\"x\"; b={c=i2}");
}

TEST_F(ReadParserFile, BytesThatAreNotUtf8StayAsTheyAre) {
    EXPECT_EQ(read_and_describe("a: caf\xE9\nb: \"caf\xE9\"\n"), "a=s\"caf\xE9\"; b=s\"caf\xE9\"");
}

TEST_F(ReadParserFile, EntriesKnowTheirLineAndTheirEnclosingGroup) {
    ASSERT_TRUE(read("# words\na:\n  b: 1\n"));
    EXPECT_EQ(entry(0).get_line(), 2u);
    const ParserGroup& inner = *entry(0).get_group(0);
    EXPECT_EQ(inner.get_entry(0)->get_line(), 3u);
    EXPECT_EQ(inner.get_parent(), &file.get_root());
}

TEST_F(ReadParserFile, AliasesStandForTheirValues) {
    EXPECT_EQ(read_and_describe("a: &x {p: [1, two]}\nb: *x\nc: &y 5\nd: [*y, *y]\n"),
              "a={p=i1 s\"two\"}; b={p=i1 s\"two\"}; c=i5; d=i5 i5");
}

TEST_F(ReadParserFile, TypeAndVersionAreComparedWhenTheyAreRequired) {
    const std::string path = folder.write("typed.yaml", "file_type: mapping\nfile_version: 2\n");
    EXPECT_TRUE(file.read(path.c_str(), "mapping", "2"));
    EXPECT_FALSE(file.read(path.c_str(), "preferences", ""));
    EXPECT_EQ(file.get_error(),
              CoreString(path.c_str()) + ": file_type is 'mapping', expected 'preferences'");
    EXPECT_FALSE(file.read(path.c_str(), "", "3"));
    EXPECT_FALSE(file.read(folder.write("bare.yaml", "a: 1\n").c_str(), "mapping", ""));
}

// What a file that is refused looks like, and the end of the message about it.
struct Refused {
    const char* content;
    const char* place_and_reason;
};

class RefusedParserFile : public ReadParserFile, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedParserFile, IsNamedWithPlaceAndReason) {
    ASSERT_TRUE(read("before: 1\n"));
    EXPECT_FALSE(read(GetParam().content));
    const std::string error(file.get_error().view());
    EXPECT_THAT(error, StartsWith(folder.file("file.yaml") + GetParam().place_and_reason));
    EXPECT_EQ(file.get_root().get_entry_count(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RefusedParserFile,
    testing::Values(Refused{"just words\n", ":1:1: a value where the file's entries are expected"},
                    Refused{"a: 1\nb: [1, [2]]\n", ":2:8: a list inside a list"},
                    Refused{"a: 1\n---\nb: 2\n", ":2:1: a second document in the file"},
                    Refused{"a: {\n", ":2:1: end of map flow not found"},
                    Refused{"a: [1, 2\n", ":2:1: end of sequence flow not found"},
                    Refused{"{a: 1\n",
                            ":1:1: a list or map in the place of a name; is a bracket not closed?"},
                    Refused{"a: 'x\n", ":2:2: illegal EOF in scalar"},
                    Refused{"a: \"x\n  \n  ", ":4:2: illegal EOF in scalar"},
                    Refused{"a: 1\n b: 2\n", ":2:3: "},
                    Refused{"a: \"\\q\"\n", ":1:7: unknown escape character: q"},
                    Refused{"a: \x04\nb: 1\n", ":1:4: a control character; this is not a YAML text in UTF-8"},
                    Refused{"a: 1\nb: x\x7Fy\x01\n", ":2:7: a control character"},
                    Refused{"{a: 1, [b]: 2}\n", ":1:8: a list or map in the place of a name"},
                    Refused{"? : x\n", ":1:3: a list or map in the place of a name"},
                    Refused{"a: &x 1\n*x : 2\n", ":2:1: an alias in the place of a name"},
                    Refused{"a: *unknown\n", ":1:4: "},
                    Refused{"a: &x [1, {b: *x}]\n", ":1:15: an alias of a value that contains it"},
                    Refused{"a: !!pairs [x: 1, 2]\n", ":1:19: something else than one name with its value"},
                    Refused{"- {a: 1, b: 2}\n", ":1:3: something else than one name with its value"},
                    Refused{"a: !!binary \"\xFF\xFF\xFF\xFF\"\n", ":1:4: binary data that is not base64"},
                    Refused{"a: !!binary AAA\n", ":1:4: binary data that is not base64"},
                    Refused{"a: !!binary A===\n", ":1:4: binary data that is not base64"},
                    Refused{"a: !!binary AA=A\n", ":1:4: binary data that is not base64"},
                    Refused{"a: !!binary \"=*=\"\n", ":1:4: binary data that is not base64"}));

TEST_F(ReadParserFile, AZeroByteIsRefused) {
    EXPECT_FALSE(read(std::string("a: \0\n", 5)));
    EXPECT_THAT(file.get_error().get_data(), HasSubstr("file.yaml:1:4: a control character"));
}

TEST_F(ReadParserFile, FilesThatCannotBeReadAreNamedWithTheReason) {
    EXPECT_FALSE(file.read(folder.file("absent.yaml").c_str(), "", ""));
    EXPECT_EQ(file.get_error(),
              CoreString(folder.file("absent.yaml").c_str()) + ": No such file or directory");
    EXPECT_FALSE(file.read(folder.get_path().c_str(), "", ""));
    EXPECT_THAT(file.get_error().get_data(), EndsWith(": Is a directory"));
}

TEST_F(ReadParserFile, AFileBeyondTheSizeLimitIsRefused) {
    const std::string line = "# a comment of 32 bytes to fill it\n";
    std::string content;
    while (content.size() <= (8u << 20))
        content += line;
    EXPECT_FALSE(read(content));
    EXPECT_THAT(file.get_error().get_data(), EndsWith(": longer than 8388608 bytes"));
}

std::string repeat(const std::string& text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i)
        repeated += text;
    return repeated;
}

TEST_F(ReadParserFile, DeepNestingIsRefusedWhateverItsForm) {
    struct Level {
        const char* begin;
        const char* end;
    };
    for (const Level level :
         {Level{"[", "]"}, {"{a: ", "}"}, {"- ", ""}, {"[{a: ", "}]"}, {"!!pairs [a: ", "]"}}) {
        EXPECT_FALSE(read(repeat(level.begin, 10'000) + "1" + repeat(level.end, 10'000))) << level.begin;
        EXPECT_THAT(file.get_error().get_data(), HasSubstr("nested deeper than 256 levels")) << level.begin;
    }
}

TEST_F(ReadParserFile, DeepNestingThatIsNeverClosedIsRefused) {
    for (const char* level : {"[", "{a: ", "? ", "- ? ", "[{a: ", "{", "[?", "&a [", "!t ["})
        EXPECT_FALSE(read(repeat(level, 10'000))) << level;
}

TEST_F(ReadParserFile, GroupsNestAsDeepAsTheyCanBeWritten) {
    EXPECT_TRUE(read(repeat("{a: ", 64) + "1" + repeat("}", 64)));
    EXPECT_TRUE(file.write(folder.file("again.yaml").c_str()));
    EXPECT_FALSE(read(repeat("{a: ", 65) + "1" + repeat("}", 65)));
    EXPECT_THAT(file.get_error().get_data(), EndsWith(":1:257: groups nested deeper than 64 levels"));
}

TEST_F(ReadParserFile, DeepNestingThroughAliasesIsRefused) {
    std::string content = "a0: &a0 {x: 1}\n";
    for (int i = 1; i < 20'000; ++i) {
        const std::string number = std::to_string(i);
        content += "a" + number + ": &a" + number + " {x: *a" + std::to_string(i - 1) + "}\n";
    }
    EXPECT_FALSE(read(content));
    EXPECT_THAT(file.get_error().get_data(), HasSubstr("nested deeper than 256 levels"));
}

TEST_F(ReadParserFile, AliasesThatMultiplyTheirValuesAreRefused) {
    std::string values = "a0: &a0 {x: 1, y: 2}\n";
    std::string texts = "a0: &a0 \"" + std::string(1 << 20, 'x') + "\"\nb: [" + repeat("*a0, ", 100) + "1]\n";
    for (int i = 1; i < 30; ++i) {
        const std::string before = "*a" + std::to_string(i - 1);
        const std::string name = "a" + std::to_string(i);
        values += name + ": &" + name + " {x: " + before + ", y: " + before + ", z: " + before + "}\n";
    }
    EXPECT_FALSE(read(values));
    EXPECT_THAT(file.get_error().get_data(),
                HasSubstr("too many values once every alias is replaced by its value"));
    EXPECT_FALSE(read(texts));
    EXPECT_THAT(file.get_error().get_data(),
                HasSubstr("too much text once every alias is replaced by its value"));
}

} // namespace
