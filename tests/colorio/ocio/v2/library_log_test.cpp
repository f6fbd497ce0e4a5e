#include "colorio/ocio/library_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/library_differences.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr char LEVEL[] = "level of an inactive space that is not there";

struct Message {
    ocio::LibraryLogLevel level;
    std::string text;
};

std::vector<Message>& taken() {
    static std::vector<Message> messages;
    return messages;
}

class LibraryLog : public testing::Test {
protected:
    LibraryLog() { taken().clear(); }
    ~LibraryLog() override { ocio::set_library_log_function(nullptr); }

    /// What the library writes to standard error while it reports that "nowhere" cannot be inactive.
    std::string provoke() {
        test_configs::ConfigText config;
        config.version = "2";
        config.settings = "inactive_colorspaces: [nowhere]\n";
        testing::internal::CaptureStderr();
        ocio::sanity_check(test_configs::load(folder, config.str()));
        return testing::internal::GetCapturedStderr();
    }

    static void take(ocio::LibraryLogLevel level, const std::string& text) {
        taken().push_back({level, text});
    }

    TempDir folder;
};

TEST_F(LibraryLog, GoesToTheFunctionWithoutMarksAndLineEnds) {
    ocio::set_library_log_function(take);
    EXPECT_THAT(provoke(), IsEmpty());
    ASSERT_FALSE(taken().empty());
    EXPECT_STREQ(taken().front().level == ocio::LibraryLogLevel::WARNING ? "Warning" : "Info",
                 library_differences::expected(LEVEL));
    EXPECT_THAT(taken().front().text, testing::MatchesRegex("Inactive 'nowhere'.*[^\n]"));
}

TEST_F(LibraryLog, GoesToStandardErrorWithoutAFunction) {
    ocio::set_library_log_function(take);
    ocio::set_library_log_function(nullptr);
    EXPECT_THAT(provoke(), HasSubstr(std::string("[OpenColorIO ") + library_differences::expected(LEVEL) +
                                     "]: Inactive 'nowhere'"));
    EXPECT_THAT(taken(), IsEmpty());
}

} // namespace
