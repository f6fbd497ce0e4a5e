#include "manual/bash_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using manual::BashLine;
using manual::quote_for_bash;
using manual::read_bash_line;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char BREAKS[] = " \t\n\"'><=;|&(:";

TEST(BashWords, AreReadWithoutQuotes) {
    const BashLine line = read_bash_line(R"(colorio convert 'a b.exr' c\ d.exr "it\"s $x" --to)", BREAKS);
    EXPECT_THAT(line.words, ElementsAre("convert", "a b.exr", "c d.exr", "it\"s $x"));
    EXPECT_EQ(line.current, "--to");
    EXPECT_EQ(line.quote, 0);
}

TEST(BashWords, LeaveOutAssignmentsBeforeTheProgram) {
    EXPECT_THAT(read_bash_line("OCIO=show.ocio A='b c' ./colorio list ", BREAKS).words, ElementsAre("list"));
    EXPECT_THAT(read_bash_line("colorio ", BREAKS).words, IsEmpty());
    EXPECT_THAT(read_bash_line("", BREAKS).words, IsEmpty());
}

/// What bash puts in for a candidate, when this line is typed.
std::string put_in(const std::string& line, const std::string& candidate) {
    return quote_for_bash(candidate, read_bash_line(line, BREAKS));
}

TEST(BashWords, AreQuotedAsTheWordAtTheCursor) {
    EXPECT_EQ(put_in("colorio list Fil", "Film log"), "Film\\ log");
    EXPECT_EQ(put_in("colorio list \"Fil", "Film \"B\" $1"), "Film \\\"B\\\" \\$1");
    EXPECT_EQ(put_in("colorio list 'Fil", "Film's log"), "Film'\\''s log");
    EXPECT_EQ(put_in("colorio list Film\\ l", "Film's log"), "Film\\'s\\ log");
}

TEST(BashWords, KeepWhatBashKeeps) {
    EXPECT_EQ(put_in("colorio convert --from=Fil", "--from=Film log"), "Film\\ log");
    EXPECT_EQ(put_in("colorio convert --from='Film l", "--from=Film log"), "Film log");
    EXPECT_EQ(put_in("colorio convert --cdl grades.ccc:sh", "grades.ccc:shot a"), "shot\\ a");
    EXPECT_EQ(put_in("colorio convert 'a:b", "a:bc"), "a:bc") << "quoted characters break no word";
    EXPECT_EQ(quote_for_bash("a:bc", read_bash_line("colorio convert a:b", " =")), "a:bc");
}

} // namespace
