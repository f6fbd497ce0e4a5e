#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/env_guard.h"
#include "tool/console.h"
#include "tool/progress_bar.h"
#include "tool/text_table.h"

namespace {

using tool::Console;
using tool::ConsoleTraits;

constexpr ConsoleTraits PIPES = {};
constexpr ConsoleTraits TERMINALS = {true, true, true};
constexpr ConsoleTraits TERMINALS_WITHOUT_COLOR = {true, true, false};

class ConsoleOutput : public testing::Test {
protected:
    std::ostringstream out, err;
};

TEST_F(ConsoleOutput, KeepsResultsAndMessagesApart) {
    Console console(out, err, PIPES);
    console.print("a result");
    console.print_heading("a heading");
    console.note("a note");
    console.warn("a doubt");
    console.error("a failure");
    EXPECT_EQ(out.str(), "a result\na heading\n");
    EXPECT_EQ(err.str(), "a note\ncolorio: warning: a doubt\ncolorio: a failure\n");
}

TEST_F(ConsoleOutput, HasColorOnlyOnATerminal) {
    Console terminal(out, err, TERMINALS);
    terminal.print_heading("h");
    terminal.error("e");
    EXPECT_EQ(out.str(), "\033[1mh\033[0m\n");
    EXPECT_EQ(err.str(), "\033[1;31mcolorio:\033[0m e\n");
}

TEST_F(ConsoleOutput, HasNoColorWhereNoneIsWanted) {
    Console console(out, err, TERMINALS_WITHOUT_COLOR);
    console.print_heading("h");
    console.error("e");
    EXPECT_EQ(out.str() + err.str(), "h\ncolorio: e\n");
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
    Console console(out, err, TERMINALS_WITHOUT_COLOR);
    console.set_status("half way");
    console.note("a note");
    console.set_status("");
    EXPECT_EQ(err.str(), "\r\033[Khalf way\r\033[Ka note\nhalf way\r\033[K");
}

TEST_F(ConsoleOutput, ShowsNoProgressWithoutATerminal) {
    Console console(out, err, PIPES);
    {
        tool::ProgressBar bar(console, 2);
        bar.advance();
    }
    EXPECT_EQ(err.str(), "");
}

TEST_F(ConsoleOutput, ShowsProgressOnATerminalAndTakesItAwayAtTheEnd) {
    Console console(out, err, TERMINALS_WITHOUT_COLOR);
    {
        tool::ProgressBar bar(console, 2);
        bar.advance();
    }
    EXPECT_NE(err.str().find("0/2 frames"), std::string::npos);
    EXPECT_NE(err.str().find("1/2 frames"), std::string::npos);
    EXPECT_EQ(err.str().substr(err.str().size() - 4), "\r\033[K");
}

TEST(Progress, TellsTheRateAndWhatIsLeft) {
    EXPECT_EQ(tool::format_progress(0, 4, 0.0), "[..............................] 0/4 frames");
    EXPECT_EQ(tool::format_progress(1, 4, 2.0),
              "[#######.......................] 1/4 frames  0.5 frames/s  0:06 left");
    EXPECT_EQ(tool::format_progress(4, 4, 65.0),
              "[##############################] 4/4 frames  0.1 frames/s  0:00 left");
    EXPECT_EQ(tool::format_progress(1, 101, 1.0),
              "[..............................] 1/101 frames  1.0 frames/s  1:40 left");
}

TEST_F(ConsoleOutput, AlignsTablesByCharactersNotBytes) {
    Console console(out, err, PIPES);
    tool::TextTable table({"name", "use"});
    table.add_row({"Grün", "a"});
    table.add_row({"longer", ""});
    table.print(console);
    EXPECT_EQ(out.str(), "name    use\nGrün    a\nlonger\n");
}

} // namespace
