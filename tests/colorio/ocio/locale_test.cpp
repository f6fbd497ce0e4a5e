#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <langinfo.h>
#include <locale.h>

#include <array>
#include <atomic>
#include <clocale>
#include <locale>
#include <memory>
#include <sstream>
#include <thread>

#include "colorio/ocio/classic_locale.h"
#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::Not;

/// Writes numbers as many languages do.
class CommaPoint : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Has a locale of that kind in force for the whole program.
class CommaLocale : public testing::Test {
protected:
    CommaLocale() : before_(std::locale::global(std::locale(std::locale::classic(), new CommaPoint))) {}
    ~CommaLocale() override { std::locale::global(before_); }

    static std::string written(double number) {
        std::ostringstream text;
        text << number;
        return text.str();
    }

    TempDir folder_;

private:
    std::locale before_;
};

constexpr const char* SHIFTED_SPACE = "  - !<ColorSpace>\n    name: x\n    to_reference: !<GroupTransform>\n"
                                      "      children:\n"
                                      "        - !<MatrixTransform> {offset: [0.5, 0.25, 0.125, 0]}\n"
                                      "        - !<FileTransform> {src: half.spi1d, interpolation: linear}\n";

TEST_F(CommaLocale, ConfigurationsAndTablesAreReadAsTheyAreWritten) {
    test_configs::ConfigText text;
    text.spaces = SHIFTED_SPACE;
    folder_.write("half.spi1d", "Version 1\nFrom 0.0 1.5\nLength 2\nComponents 1\n{\n0.0\n0.75\n}\n");
    const auto processor = ocio::get_processor(test_configs::load(folder_, text.str()), "x", "lin");
    std::array<float, 4> pixel{0.5f, 0.25f, 0.125f, 1};
    processor->apply_rgba(pixel.data());
    EXPECT_THAT(pixel, ElementsAre(FloatEq(0.5f), FloatEq(0.25f), FloatEq(0.125f), 1));
}

TEST_F(CommaLocale, CorrectionsAreReadAsTheyAreWritten) {
    const std::string path =
        folder_.write("grade.cc", "<ColorCorrection><SOPNode><Slope>1.5 1 1</Slope><Offset>0 0 0</Offset>"
                                  "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    float slope[3];
    ocio::get_slope(ocio::create_CDL_transform_from_file(path.c_str(), ""), slope);
    EXPECT_EQ(slope[0], 1.5f);
}

TEST_F(CommaLocale, ShadersAreWrittenForTheCompiler) {
    const auto config = test_configs::create_built_in_like(folder_);
    const ocio::GpuShaderDesc desc{ocio::GPU_LANGUAGE_GLSL_1_3, "convert", 32};
    EXPECT_THAT(ocio::get_processor(config, "linear", "sRGB")->get_gpu_shader_text(desc),
                HasSubstr("vec4(0.047619, 0.047619, 0.047619, 1)"));
    const auto corrections = test_configs::create_corrections();
    EXPECT_THAT(ocio::get_processor(corrections, "No CDL", "mixed")->get_gpu_shader_text(desc),
                Not(ContainsRegex("[0-9],[0-9]")));
}

TEST_F(CommaLocale, IsInForceAgainAfterwards) {
    EXPECT_EQ(written(1234.5), "1.234,5");
    test_configs::create_built_in_like(folder_);
    EXPECT_EQ(written(1234.5), "1.234,5");
    EXPECT_NE(test_configs::refusal_of([] { ocio::create_config_from_file("missing"); }), "nothing thrown");
    EXPECT_EQ(written(1234.5), "1.234,5");
}

TEST_F(CommaLocale, GivesWayWhileAnyoneNeedsTheClassicOne) {
    {
        auto first = std::make_unique<ocio::ClassicLocale>();
        EXPECT_EQ(written(0.5), "0.5");
        const ocio::ClassicLocale second;
        first.reset();
        EXPECT_EQ(written(0.5), "0.5");
        std::thread([] { const ocio::ClassicLocale third; }).join();
        EXPECT_EQ(written(0.5), "0.5");
    }
    EXPECT_EQ(written(0.5), "0,5");
}

TEST_F(CommaLocale, StaysInForceForOtherThreads) {
    const ocio::ClassicLocale ours;
    std::string theirs, read;
    std::thread([&] {
        theirs = written(1234.5);
        double number = 0;
        std::istringstream("1.234,5") >> number;
        read = number == 1234.5 ? "read" : "misread";
    }).join();
    EXPECT_EQ(theirs, "1.234,5");
    EXPECT_EQ(read, "read");
    EXPECT_EQ(written(1234.5), "1234.5");
    double number = 0;
    std::istringstream("1234.5") >> number;
    EXPECT_EQ(number, 1234.5);
}

TEST_F(CommaLocale, StaysInForceForAThreadThatPrintsWhileOthersLoad) {
    std::atomic<bool> done{false};
    int wrong = 0, printed = 0;
    std::thread printer([&] {
        do {
            wrong += written(1234.5) != "1.234,5";
            ++printed;
        } while (!done);
    });
    for (int i = 0; i < 20; ++i)
        test_configs::create_built_in_like(folder_);
    done = true;
    printer.join();
    EXPECT_EQ(wrong, 0) << "of " << printed;
}

/// Has a C locale in force that is not the classic one.
class CLocale : public testing::Test {
protected:
    ~CLocale() override { std::setlocale(LC_ALL, before_.c_str()); }

    bool set() { return std::setlocale(LC_ALL, "C.UTF-8") != nullptr; }

private:
    std::string before_ = std::setlocale(LC_ALL, nullptr);
};

TEST_F(CLocale, OfTheProcessIsNeverChanged) {
    if (!set())
        GTEST_SKIP() << "this system has no locale but the classic one";
    const std::string ours = std::setlocale(LC_ALL, nullptr);
    {
        const ocio::ClassicLocale classic;
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), ours);
        EXPECT_NE(uselocale(nullptr), LC_GLOBAL_LOCALE);
        EXPECT_STREQ(nl_langinfo(CODESET), "ANSI_X3.4-1968");
        std::thread([] { EXPECT_STREQ(nl_langinfo(CODESET), "UTF-8"); }).join();
    }
    EXPECT_EQ(uselocale(nullptr), LC_GLOBAL_LOCALE);
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), ours);
}

TEST_F(CLocale, IsNotSetByPuttingBackTheLocaleOfStreams) {
    if (!set())
        GTEST_SKIP() << "this system has no locale but the classic one";
    // Giving streams a locale that has a name sets the C locale too; the host sets that back.
    const std::locale before = std::locale::global(std::locale("C.UTF-8"));
    std::setlocale(LC_ALL, "C");
    { const ocio::ClassicLocale classic; }
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
    std::locale::global(before);
}

TEST_F(CLocale, OfAThreadOfItsOwnIsInForceAgainAfterwards) {
    const locale_t own = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = uselocale(own);
    {
        const ocio::ClassicLocale first;
        const ocio::ClassicLocale second;
    }
    EXPECT_EQ(uselocale(before), own);
    freelocale(own);
}

} // namespace
