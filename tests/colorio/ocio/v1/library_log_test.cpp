#include "colorio/ocio/library_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/ocio/config.h"
#include "tests/support/env_guard.h"

namespace {

int calls = 0;

void count_call(ocio::LibraryLogLevel, const std::string&) {
    ++calls;
}

TEST(LibraryLogOfV1, StaysOnStandardError) {
    const EnvGuard unset("OCIO");
    ocio::set_library_log_function(count_call);
    testing::internal::CaptureStderr();
    ocio::create_config_from_env();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("[OpenColorIO "));
    ocio::set_library_log_function(nullptr);
    EXPECT_EQ(calls, 0);
}

} // namespace
