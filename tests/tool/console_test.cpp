#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "tests/support/env_guard.h"
#include "tool/console.h"
#include "tool/progress_bar.h"
#include "tool/text_table.h"

namespace {

using tool::Console;
using tool::ConsoleTraits;

constexpr tool::ConsoleTraits PIPES = {};
constexpr tool::ConsoleTraits TERMINALS = {true, true, true};
constexpr tool::ConsoleTraits TERMINALS_WITHOUT_COLOR = {true, true, false};

class ConsoleOutput : public testing::Test {
protected:
    std::ostringstream out, err;
};

TEST_F(ConsoleOutput, KeepsResultsAndMessagesApart) {
    tool::Console console(out, err, PIPES);
    console.print("a result");
    console.print_heading("a heading");
    console.report(diagnostics::make_note(diagnostics::Code::USAGE, "a note"));
    console.report(diagnostics::make_warning(diagnostics::Code::USAGE, "a doubt"));
    console.report(diagnostics::make_error(diagnostics::Code::USAGE, "a failure"));
    EXPECT_EQ(out.str(), "a result\na heading\n");
    EXPECT_EQ(err.str(), "a note\ncolorio: warning: a doubt\ncolorio: error: a failure\n");
}

TEST_F(ConsoleOutput, ShowsPlaceAndHintOfADiagnostic) {
    diagnostics::Diagnostic fault = diagnostics::make_file_error(diagnostics::Code::XML_MALFORMED,
                                                                 "Unexpected token found", "grades.ccc");
    fault.line = 3;
    fault.column = 17;
    tool::Console(out, err, PIPES).report(with_hint(fault, "close the element"));
    EXPECT_EQ(err.str(),
              "colorio: error: grades.ccc:3:17: Unexpected token found\nhint: close the element\n");
}

TEST_F(ConsoleOutput, EscapesControlCharactersInText) {
    tool::Console console(out, err, TERMINALS);
    console.print("a\x1b[2J\nb\x7f");
    console.print_heading("c\r");
    console.print("\xc2\x9b"
                  "2J \xc2\xa9 \xe2\x82\xac");
    console.report(with_hint(diagnostics::make_note(diagnostics::Code::USAGE, "no \x1b\nfile"), "\tname it"));
    console.show_log("one\x07\ntwo");
    EXPECT_EQ(out.str(), "a\\x1b[2J\\x0ab\\x7f\n\033[1mc\\x0d\033[0m\n\\xc2\\x9b2J \xc2\xa9 \xe2\x82\xac\n");
    EXPECT_EQ(err.str(), "no \\x1b\\x0afile\nhint: \\x09name it\none\\x07\ntwo\n");
}

TEST_F(ConsoleOutput, EscapesControlCharactersInAlignedTables) {
    tool::Console console(out, err, PIPES);
    tool::TextTable table({"name", "role"});
    table.add_row({"a\x1b", "x"});
    table.add_row({"longer", "y"});
    table.print(console);
    EXPECT_EQ(out.str(), "name    role\na\\x1b   x\nlonger  y\n");
}

TEST_F(ConsoleOutput, WritesDiagnosticsAsJsonWhereThatIsWanted) {
    tool::Console console(out, err, PIPES);
    console.set_json_diagnostics(true);
    console.report(diagnostics::make_error(diagnostics::Code::LUT_MISSING, "the file 'a' is missing", "a"));
    EXPECT_EQ(err.str(), "{\"code\":\"lut-missing\",\"severity\":\"error\",\"subject\":\"a\",\"file\":\"\","
                         "\"line\":0,\"column\":0,\"message\":\"the file 'a' is missing\",\"hint\":\"\"}\n");
}

TEST_F(ConsoleOutput, HoldsWarningsBackUntilTheNextResult) {
    tool::Console console(out, err, PIPES);
    console.hold({diagnostics::make_warning(diagnostics::Code::CDL_UNKNOWN, "held", "own")});
    console.report(diagnostics::make_note(diagnostics::Code::USAGE, "a note"));
    EXPECT_EQ(err.str(), "a note\n");
    console.print("a result");
    console.print("another");
    EXPECT_EQ(err.str(), "a note\ncolorio: warning: held\n");
}

TEST_F(ConsoleOutput, LeavesOutHeldWarningsWithTheCauseOfAnError) {
    tool::Console console(out, err, PIPES);
    console.hold({diagnostics::make_warning(diagnostics::Code::CDL_UNKNOWN, "held", "own"),
                  diagnostics::make_warning(diagnostics::Code::CDL_UNKNOWN, "held too", "other")});
    console.report(diagnostics::make_error(diagnostics::Code::CDL_UNKNOWN, "an error", "own"));
    console.finish();
    EXPECT_EQ(err.str(), "colorio: warning: held too\ncolorio: error: an error\n");
}

TEST_F(ConsoleOutput, HasColorOnlyOnATerminal) {
    tool::Console terminal(out, err, TERMINALS);
    terminal.print_heading("h");
    terminal.report(diagnostics::make_error(diagnostics::Code::USAGE, "e"));
    EXPECT_EQ(out.str(), "\033[1mh\033[0m\n");
    EXPECT_EQ(err.str(), "\033[1;31mcolorio: error:\033[0m e\n");
}

TEST_F(ConsoleOutput, HasNoColorWhereNoneIsWanted) {
    tool::Console console(out, err, TERMINALS_WITHOUT_COLOR);
    console.print_heading("h");
    console.report(diagnostics::make_error(diagnostics::Code::USAGE, "e"));
    EXPECT_EQ(out.str() + err.str(), "h\ncolorio: error: e\n");
}

TEST_F(ConsoleOutput, RespectsNoColorAndDumbTerminals) {
    EnvGuard no_color("NO_COLOR");
    EnvGuard term("TERM", "xterm");
    EXPECT_TRUE(tool::detect_console_traits().wants_color);
    no_color.set("1");
    EXPECT_FALSE(tool::detect_console_traits().wants_color);
    no_color.set("");
    term.set("dumb");
    EXPECT_FALSE(tool::detect_console_traits().wants_color);
}

TEST_F(ConsoleOutput, KeepsTheStatusBelowTheMessages) {
    tool::Console console(out, err, TERMINALS_WITHOUT_COLOR);
    console.set_status("half way");
    console.report(diagnostics::make_note(diagnostics::Code::USAGE, "a note"));
    console.set_status("");
    EXPECT_EQ(err.str(), "\r\033[Khalf way\r\033[Ka note\nhalf way\r\033[K");
}

TEST_F(ConsoleOutput, ShowsNoProgressWithoutATerminal) {
    tool::Console console(out, err, PIPES);
    {
        tool::ProgressBar bar(console, 2);
        bar.advance(tool::ProgressBar::Step::CONVERTED);
    }
    EXPECT_EQ(err.str(), "");
}

TEST_F(ConsoleOutput, ShowsProgressOnATerminalAndTakesItAwayAtTheEnd) {
    tool::Console console(out, err, TERMINALS_WITHOUT_COLOR);
    {
        tool::ProgressBar bar(console, 2);
        bar.advance(tool::ProgressBar::Step::CONVERTED);
    }
    EXPECT_NE(err.str().find("0/2 frames"), std::string::npos);
    EXPECT_NE(err.str().find("1/2 frames"), std::string::npos);
    EXPECT_EQ(err.str().substr(err.str().size() - 4), "\r\033[K");
}

/// After `converted` frames in `seconds`.
tool::Progress make_progress(unsigned int converted, unsigned int total, double seconds) {
    return {converted, total, converted, 0, seconds};
}

TEST(Progress, TellsTheRateAndWhatIsLeft) {
    EXPECT_EQ(tool::format_progress({0, 4}, 79), "[..............................] 0/4 frames");
    EXPECT_EQ(tool::format_progress(make_progress(1, 4, 2), 79),
              "[#######.......................] 1/4 frames  0.5 frames/s  0:06 left");
    EXPECT_EQ(tool::format_progress(make_progress(4, 4, 65), 79),
              "[##############################] 4/4 frames  16.2 s/frame  0:00 left");
    EXPECT_EQ(tool::format_progress(make_progress(1, 101, 1), 79),
              "[..............................] 1/101 frames  1.0 frames/s  1:40 left");
    EXPECT_EQ(tool::format_progress(make_progress(1, 101, 45), 79),
              "[..............................] 1/101 frames  45.0 s/frame  1:15:00 left");
}

TEST(Progress, CountsFailuresAndOnlyTheRateOfWhatWasConverted) {
    EXPECT_EQ(tool::format_progress({92, 100, 2, 1, 1}, 79),
              "[#########################...] 92/100 frames, 1 failed  2.0 frames/s  0:04 left");
}

TEST(Progress, FitsEveryWidth) {
    const tool::Progress progress = make_progress(12, 24, 4);
    EXPECT_EQ(tool::format_progress(progress, 60),
              "[##########..........] 12/24 frames  3.0 frames/s  0:04 left");
    EXPECT_EQ(tool::format_progress(progress, 40), "12/24 frames  3.0 frames/s  0:04 left");
    EXPECT_EQ(tool::format_progress(progress, 30), "12/24 frames  0:04 left");
    EXPECT_EQ(tool::format_progress(progress, 20), "12/24  0:04 left");
    EXPECT_EQ(tool::format_progress(progress, 10), "12/24");
    EXPECT_EQ(tool::format_progress(progress, 4), "");
    for (unsigned int width = 0; width < 100; ++width)
        EXPECT_LE(tool::format_progress(progress, width).size(), width);
}

TEST_F(ConsoleOutput, LeavesTheLastColumnOfTheTerminalFree) {
    const tool::Console console(out, err, {true, true, false, 40});
    EXPECT_EQ(console.get_status_width(), 39u);
}

TEST_F(ConsoleOutput, LeavesOutNotesAndProgressWhereItIsQuiet) {
    tool::Console console(out, err, TERMINALS_WITHOUT_COLOR);
    console.set_quiet(true);
    {
        tool::ProgressBar bar(console, 2);
        bar.advance(tool::ProgressBar::Step::CONVERTED);
    }
    console.report(diagnostics::make_note(diagnostics::Code::USAGE, "a note"));
    EXPECT_EQ(err.str(), "");
    console.report(diagnostics::make_warning(diagnostics::Code::USAGE, "a warning"));
    EXPECT_EQ(err.str(), "colorio: warning: a warning\n");
}

TEST_F(ConsoleOutput, AlignsTablesByCharactersNotBytes) {
    tool::Console console(out, err, PIPES);
    tool::TextTable table({"name", "use"});
    table.add_row({"Grün", "a"});
    table.add_row({"longer", ""});
    table.print(console);
    EXPECT_EQ(out.str(), "name    use\nGrün    a\nlonger\n");
}

} // namespace
