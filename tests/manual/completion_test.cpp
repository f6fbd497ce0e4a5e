#include "manual/completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using manual::CommandDescription;
using manual::Completion;
using manual::OptionDescription;
using manual::ValueKind;
using testing::ElementsAre;
using testing::IsEmpty;

OptionDescription make_value(std::vector<std::string> names, std::string value,
                             std::vector<std::string> choices = {}) {
    OptionDescription option;
    option.names = std::move(names);
    option.value = std::move(value);
    option.choices = std::move(choices);
    option.takes_value = true;
    return option;
}

OptionDescription make_flag(const std::string& name) {
    OptionDescription option;
    option.names = {name};
    return option;
}

OptionDescription make_argument(const std::string& name, bool is_repeatable = false) {
    OptionDescription option;
    option.names = {name};
    option.is_positional = option.takes_value = true;
    option.is_repeatable = is_repeatable;
    return option;
}

/// A program with some of the commands of colorio.
CommandDescription make_program() {
    const CommandDescription convert{"convert",
                                     "Convert images",
                                     "",
                                     {make_argument("input"), make_argument("output"),
                                      make_value({"--from"}, "NAME"), make_value({"--look"}, "LOOKS"),
                                      make_value({"-d", "--depth"}, "", {"half", "uint8"}),
                                      make_value({"-o", "--output"}, "FOLDER"), make_flag("--dither")},
                                     {}};
    const CommandDescription explain{
        "explain", "", "", {make_argument("source"), make_argument("destination")}, {}};
    const CommandDescription view{"view", "", "", {make_argument("images", true)}, {}};
    const CommandDescription add{"add", "", "", {make_argument("name"), make_argument("file")}, {}};
    return {"colorio",
            "",
            "",
            {make_flag("--help"), make_flag("--version")},
            {convert, explain, view, {"cdl", "", "", {}, {add}}}};
}

std::vector<std::string> get_texts(const Completion& completion) {
    std::vector<std::string> texts;
    for (const manual::Candidate& candidate : completion.candidates)
        texts.push_back(candidate.text);
    return texts;
}

std::vector<std::string> complete(const std::vector<std::string>& words, const std::string& current) {
    return get_texts(manual::complete(make_program(), words, current));
}

ValueKind find_kind(const std::vector<std::string>& words, const std::string& current = "") {
    return manual::complete(make_program(), words, current).kind;
}

TEST(Completion, OffersCommandsAndTheirCommands) {
    EXPECT_THAT(complete({}, ""), ElementsAre("convert", "explain", "view", "cdl"));
    EXPECT_THAT(complete({}, "c"), ElementsAre("convert", "cdl"));
    EXPECT_THAT(complete({"cdl"}, ""), ElementsAre("add"));
    EXPECT_THAT(complete({}, "x"), IsEmpty());
}

TEST(Completion, OffersOptionsThatAreNotUsedYet) {
    EXPECT_THAT(complete({}, "--"), ElementsAre("--help", "--version"));
    EXPECT_THAT(complete({"convert", "--from", "a", "--dither"}, "--"),
                ElementsAre("--look", "--depth", "--output"));
    EXPECT_THAT(complete({"convert"}, "--d"), ElementsAre("--depth", "--dither"));
    EXPECT_THAT(complete({"convert", "--"}, "--d"), IsEmpty()) << "behind -- there are arguments only";
}

TEST(Completion, OffersTheChoicesOfAnOption) {
    EXPECT_THAT(complete({"convert", "-d"}, ""), ElementsAre("half", "uint8"));
    EXPECT_THAT(complete({"convert", "--depth"}, "u"), ElementsAre("uint8"));
    EXPECT_THAT(complete({"convert"}, "--depth=u"), ElementsAre("--depth=uint8"));
}

TEST(Completion, NamesTheKindOfTheValue) {
    EXPECT_EQ(find_kind({"convert", "--from"}), ValueKind::COLOR_SPACE);
    EXPECT_EQ(find_kind({"convert"}, "--from=l"), ValueKind::COLOR_SPACE);
    EXPECT_EQ(find_kind({"convert", "-o"}), ValueKind::FOLDER);
    EXPECT_EQ(find_kind({"convert", "--from", "a"}), ValueKind::FILE) << "the first argument";
    EXPECT_EQ(find_kind({"convert", "a.exr", "b.exr"}), ValueKind::OTHER) << "convert takes two";
    EXPECT_EQ(find_kind({"explain", "a"}), ValueKind::COLOR_SPACE);
    EXPECT_EQ(find_kind({"view", "a", "b", "c"}), ValueKind::FILE);
    EXPECT_EQ(find_kind({"cdl", "add"}), ValueKind::OTHER) << "a new name";
    EXPECT_EQ(find_kind({"cdl", "add", "warm"}), ValueKind::FILE);
}

TEST(Completion, PutsNamesBehindWhatWasTyped) {
    const auto add = [](const std::vector<std::string>& words, const std::string& current) {
        Completion completion = manual::complete(make_program(), words, current);
        add_names(completion, {{"film", ""}, {"film two", ""}, {"warm", ""}});
        return get_texts(completion);
    };
    EXPECT_THAT(add({"convert", "--from"}, "film"), ElementsAre("film", "film two"));
    EXPECT_THAT(add({"convert"}, "--from=w"), ElementsAre("--from=warm"));
    EXPECT_THAT(add({"convert", "--look"}, "film, -w"), ElementsAre("film, -warm"));
    EXPECT_THAT(add({"convert", "--look"}, "warm,"), ElementsAre("warm,film", "warm,film two", "warm,warm"));
    EXPECT_THAT(add({"convert"}, "--look=-f"), ElementsAre("--look=-film", "--look=-film two"));
}

TEST(Completion, FindsTheValuesOfOtherOptions) {
    const Completion completion =
        manual::complete(make_program(), {"convert", "--from", "a", "--look=b", "--from=c", "-d"}, "");
    EXPECT_EQ(find_value(completion, "--from"), "c");
    EXPECT_THAT(find_values(completion, "--from"), ElementsAre("a", "c"));
    EXPECT_EQ(find_value(completion, "--look"), "b");
    EXPECT_EQ(find_value(completion, "--depth"), "");
}

} // namespace
