#include "colorio/facade/config_loads.h"

#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"
#include "tests/support/temp_dir.h"

namespace {

TEST(ConfigLoads, ParseAFileOnce) {
    TempDir folder;
    const std::string path = folder.write("a.ocio", test_configs::ConfigText().str());
    ConfigLoads loads;
    const ocio::ConstConfigRcPtr config = loads.from_file(path.c_str());
    folder.write("a.ocio", "garbage");
    EXPECT_EQ(loads.from_file(path.c_str()), config);
    loads.forget();
    EXPECT_NE(test_configs::refusal_of([&] { loads.from_file(path.c_str()); }), "nothing thrown");
}

TEST(ConfigLoads, ThrowAFailureAgain) {
    TempDir folder;
    const std::string path = folder.write("a.ocio", "garbage");
    ConfigLoads loads;
    const std::string refusal = test_configs::refusal_of([&] { loads.from_file(path.c_str()); });
    EXPECT_NE(refusal, "nothing thrown");
    folder.write("a.ocio", test_configs::ConfigText().str());
    EXPECT_EQ(test_configs::refusal_of([&] { loads.from_file(path.c_str()); }), refusal);
}

TEST(ReloadScopes, ShareTheLoadsOfTheOutermost) {
    std::shared_ptr<ConfigLoads> loads;
    {
        const ReloadScope outer(loads);
        const std::shared_ptr<ConfigLoads> first = loads;
        ASSERT_NE(first, nullptr);
        {
            const ReloadScope inner(loads);
            EXPECT_EQ(loads, first);
        }
        EXPECT_EQ(loads, first);
    }
    EXPECT_EQ(loads, nullptr);
}

} // namespace
