#include "standalone/standalone_log.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "standalone/log_message.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

using testing::ElementsAre;
using testing::MatchesRegex;

namespace {

using Line = RecordingLog::Line;

std::string captured(unsigned int handler_level, unsigned int level, const CoreString& text) {
    testing::internal::CaptureStderr();
    StandaloneLog handler;
    handler.set_level(handler_level);
    CoreLogStream stream("");
    stream << text;
    handler.log(level, stream);
    return testing::internal::GetCapturedStderr();
}

TEST(CoreLogStream, IsAPrefixAndWhatFollows) {
    CoreLogStream stream("Color Management: ");
    stream << "found " << 4294967295u << ' ' << CoreString("spaces") << static_cast<const char*>(nullptr)
           << "\n";
    EXPECT_EQ(stream.get_text(), "Color Management: found 4294967295 spaces\n");
}

TEST(CoreLogHandler, ThereAlwaysIsAMainHandler) {
    CoreLogHandler& own = CoreLogHandler::get_main_log_handler();
    EXPECT_EQ(&own, &StandaloneLog::get_default());
    EXPECT_EQ(own.get_level(), 2u);
    {
        RecordingLog first(LOG_INFO);
        EXPECT_EQ(&CoreLogHandler::get_main_log_handler(), &first);
        EXPECT_EQ(CoreLogHandler::set_main_log_handler(nullptr), &first);
        EXPECT_EQ(&CoreLogHandler::get_main_log_handler(), &own);
        EXPECT_EQ(CoreLogHandler::set_main_log_handler(&first), &own);
    }
    EXPECT_EQ(&CoreLogHandler::get_main_log_handler(), &own);
}

TEST(LogMessage, ArrivesWhenSomebodyListens) {
    RecordingLog log(LOG_WARNING);
    log_message(LOG_INFO, "unheard\n");
    log_message(LOG_WARNING, "one ", 2u, "\n");
    EXPECT_THAT(log.get_lines(), ElementsAre(Line{2, "one 2\n"}));
}

TEST(StandaloneLog, NamesTheLevelOnStandardErrorWithoutColor) {
    EXPECT_EQ(captured(3, LOG_ERROR, "bad\n"), "[error] bad\n");
    EXPECT_EQ(captured(3, LOG_WARNING, "odd\n"), "[warning] odd\n");
    EXPECT_EQ(captured(3, LOG_INFO, "no line end"), "[info] no line end\n");
    EXPECT_EQ(captured(4, LOG_INFO + 1, "detail\n"), "[debug] detail\n");
    EXPECT_EQ(captured(3, LOG_INFO, ""), "[info] \n");
}

TEST(StandaloneLog, LeavesMessagesAboveItsLevelOut) {
    EXPECT_EQ(captured(1, LOG_WARNING, "odd\n"), "");
    EXPECT_EQ(captured(0, LOG_ERROR, "bad\n"), "");
}

TEST(StandaloneLog, ShowsControlCharactersInsteadOfObeyingThem) {
    EXPECT_EQ(captured(3, LOG_ERROR, "a\x1B[31m\r\x7F\tb\nc \xC3\xA9\n"),
              "[error] a\\x1B[31m\\x0D\\x7F\tb\nc \xC3\xA9\n");
}

TEST(StandaloneLog, MessagesAreNoFormatStrings) {
    EXPECT_EQ(captured(3, LOG_ERROR, "{} {0} %s %n\n"), "[error] {} {0} %s %n\n");
}

TEST(StandaloneLog, AppendsToFilesWithTheTime) {
    const TempDir folder;
    folder.write("log.txt", "before\n");
    testing::internal::CaptureStderr();
    {
        StandaloneLog handler;
        EXPECT_TRUE(handler.add_file(folder.file("log.txt").c_str()));
        log_message(handler, LOG_ERROR, "bad\n");
        EXPECT_THAT(folder.read("log.txt"),
                    MatchesRegex("before\n[0-9-]+ [0-9:]+\\.[0-9][0-9][0-9] \\[error\\] bad\n"));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[error] bad\n");
}

TEST(StandaloneLog, AFileThatCannotBeOpenedIsAnError) {
    const TempDir folder;
    testing::internal::CaptureStderr();
    StandaloneLog handler;
    EXPECT_FALSE(handler.add_file(folder.get_path().c_str()));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), MatchesRegex("\\[error\\] Log: .*"));
}

// Logs one error to a terminal and returns what arrives there. For a separate process: the terminal takes
// the place of standard error, and what the terminal can do is asked only once per process.
std::string log_to_terminal(const char* no_color) {
    setenv("TERM", "xterm-256color", 1);
    if (no_color)
        setenv("NO_COLOR", no_color, 1);
    else
        unsetenv("NO_COLOR");
    const int control = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(control);
    unlockpt(control);
    const int terminal = open(ptsname(control), O_RDWR | O_NOCTTY);
    dup2(terminal, STDERR_FILENO);
    log_message(LOG_ERROR, "bad\n");
    std::string arrived;
    for (char character = 0; character != '\n' && read(control, &character, 1) == 1;)
        arrived += character;
    return arrived;
}

[[noreturn]] void expect_on_terminal(const char* no_color, bool colored) {
    const std::string text = log_to_terminal(no_color);
    const bool complete = text.find("error") != std::string::npos && text.find("bad") != std::string::npos;
    const bool has_color = text.find('\x1B') != std::string::npos;
    _exit(complete && has_color == colored ? 0 : 1);
}

class StandaloneLogDeathTest : public testing::Test {
protected:
    StandaloneLogDeathTest() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

TEST_F(StandaloneLogDeathTest, IsColoredOnATerminal) {
    EXPECT_EXIT(expect_on_terminal(nullptr, true), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(expect_on_terminal("", true), testing::ExitedWithCode(0), "");
}

TEST_F(StandaloneLogDeathTest, IsPlainOnATerminalWhenNoColorIsWanted) {
    EXPECT_EXIT(expect_on_terminal("1", false), testing::ExitedWithCode(0), "");
}

} // namespace
