#include "colorio/ocio/yaml_size.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::refusal_of;

class YamlSize : public testing::Test {
protected:
    std::string refusal(const std::string& text) {
        const std::string path = folder_.write("config.ocio", text);
        return refusal_of([&] { ocio::require_bounded_yaml(path); });
    }

    /// A list, a list of that list twice, and so on.
    static std::string doubled(int times) {
        std::string text = "x0: &x0 [0, 0]\n";
        for (int i = 1; i <= times; ++i)
            text += "x" + std::to_string(i) + ": &x" + std::to_string(i) + " [*x" + std::to_string(i - 1) +
                    ", *x" + std::to_string(i - 1) + "]\n";
        return text;
    }

    const std::string accepted_ = "nothing thrown";
    TempDir folder_;
};

TEST_F(YamlSize, MayGrowALittleByRepetition) {
    EXPECT_EQ(refusal("a: &a {b: 1}\nc: [*a, *a]\nd: *a\n"), accepted_);
    EXPECT_EQ(refusal(doubled(10)), accepted_);
}

TEST_F(YamlSize, MayNotGrowBeyondMeasure) {
    const std::string message =
        "'" + folder_.file("config.ocio") + "' contains aliases that expand beyond the limit";
    EXPECT_EQ(refusal(doubled(20)), message);
    EXPECT_EQ(refusal(doubled(200)), message);
    EXPECT_EQ(refusal_of([&] { ocio::create_config_from_file(folder_.file("config.ocio").c_str()); }),
              message);
}

TEST_F(YamlSize, IsNoMatterWhereNothingIsRepeated) {
    std::string text = "description: 3 * 4 is *not* an alias\nlist:\n";
    for (int i = 0; i < 300000; ++i)
        text += "- 1\n";
    EXPECT_EQ(refusal(text), accepted_);
}

TEST_F(YamlSize, IsLeftToTheLibraryWhereTheTextIsNoYaml) {
    EXPECT_EQ(refusal("*unknown"), accepted_);
    EXPECT_EQ(refusal(std::string("\0[*a\xff", 5)), accepted_);
    EXPECT_NO_THROW(ocio::require_bounded_yaml(folder_.file("missing.ocio")));
}

TEST_F(YamlSize, IsNotSoughtInDocumentsWithoutEnd) {
    for (const char* text : {", ", ",", "]", "}", "a: 1\n---\n,"}) {
        const std::string path = folder_.write("config.ocio", text);
        EXPECT_NE(refusal_of([&] { ocio::create_config_from_file(path.c_str()); }), accepted_) << text;
    }
}

TEST_F(YamlSize, IsNotAskedOfAPipe) {
    const std::string path = folder_.file("pipe.ocio");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(refusal_of([&] { ocio::create_config_from_file(path.c_str()); }),
              "cannot read '" + path + "': it exists and is not a regular file");
}

} // namespace
