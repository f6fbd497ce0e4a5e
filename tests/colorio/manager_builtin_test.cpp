#include <cmath>
#include <filesystem>
#include <locale>
#include <string>
#include <vector>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "colorio/ocio/types.h"
#include "host/gmath/gmath_vec4.h"
#include "tests/colorio/builtin_lut_texts.h"
#include "tests/colorio/manager_fixture.h"

using testing::IsEmpty;

namespace {

double position_of(size_t sample) {
    return -0.125 + 1.25 * static_cast<double>(sample) / 4100;
}

/// Value of the table at `x`, between its samples.
double interpolate(const std::vector<float>& samples, double x) {
    const double t = (x + 0.125) / 1.25 * 4100;
    const auto left = static_cast<size_t>(t);
    const double part = t - static_cast<double>(left);
    return samples[left] * (1 - part) + samples[left + 1] * part;
}

} // namespace

using ManagerBuiltinLuts = ManagerTest;

TEST_F(ManagerBuiltinLuts, TheTextIsAHeaderAnd4101IndentedLinesBetweenBraces) {
    start_manager();
    for (const char* file : {"srgb.spi1d", "cineon.spi1d"}) {
        const std::string text = folder.read(file);
        const std::string header = "Version 1\nFrom -0.125 1.125\nLength 4101\nComponents 1\n{\n        ";
        EXPECT_EQ(text.substr(0, header.size()), header) << file;
        EXPECT_EQ(text.substr(text.size() - 3), "\n}\n") << file;
        EXPECT_EQ(text.find('\r'), std::string::npos) << file;
        EXPECT_EQ(lines_of(text).size(), 5u + 4101u + 1u) << file;
        EXPECT_EQ(samples_of(text).size(), 4101u) << file;
    }
}

TEST_F(ManagerBuiltinLuts, EachSampleIsWrittenAsTheHostWritesThatFloat) {
    start_manager();
    const std::string text = folder.read("srgb.spi1d");
    const std::vector<std::string> lines = lines_of(text);
    const std::vector<float> samples = samples_of(text);
    for (size_t i = 0; i < samples.size(); ++i)
        ASSERT_EQ(lines[5 + i], "        " + str(CoreString::from_float(samples[i])));
}

// IEC 61966-2-1, continued below 0 by the linear part and above 1 by the power.
TEST_F(ManagerBuiltinLuts, TheSrgbTableIsTheDecodingFunctionOfTheStandard) {
    start_manager();
    const std::vector<float> samples = samples_of(folder.read("srgb.spi1d"));
    for (size_t i = 0; i < samples.size(); ++i) {
        const double x = position_of(i);
        const double expected = x >= 0.04045 ? std::pow((x + 0.055) / 1.055, 2.4) : x / 12.92;
        ASSERT_NEAR(samples[i], expected, 2e-6 * std::abs(expected) + 2e-8) << i;
    }
}

TEST_F(ManagerBuiltinLuts, TheSrgbTableRunsFromMinus0009674923To130831) {
    start_manager();
    const std::vector<float> samples = samples_of(folder.read("srgb.spi1d"));
    ASSERT_EQ(samples.size(), 4101u);
    EXPECT_FLOAT_EQ(samples.front(), -0.009674923f);
    EXPECT_NEAR(samples.back(), 1.30831076, 2e-6);
}

// 10-bit log film scan: code 95 is black, code 685 is white, 300 codes per factor of ten.
TEST_F(ManagerBuiltinLuts, TheCineonTableIsTheLogCurveBetweenCodes95And685) {
    start_manager();
    const std::vector<float> samples = samples_of(folder.read("cineon.spi1d"));
    const double black = std::pow(10.0, (95 - 685) / 300.0);
    for (size_t i = 0; i < samples.size(); ++i) {
        const double code = 1023 * position_of(i);
        const double expected = (std::pow(10.0, (code - 685) / 300) - black) / (1 - black);
        ASSERT_NEAR(samples[i], expected, 2e-6 * (std::abs(expected) + 0.01)) << i;
    }
}

TEST_F(ManagerBuiltinLuts, CineonCode95IsBlackAndCode685IsWhite) {
    start_manager();
    const std::vector<float> samples = samples_of(folder.read("cineon.spi1d"));
    ASSERT_EQ(samples.size(), 4101u);
    EXPECT_NEAR(interpolate(samples, 95.0 / 1023), 0.0, 1e-7);
    EXPECT_NEAR(interpolate(samples, 685.0 / 1023), 1.0, 2e-6);
    EXPECT_LT(samples.front(), 0.0f);
}

TEST_F(ManagerBuiltinLuts, OnlyTheTwoTablesAreLeftInTheFolder) {
    start_manager();
    EXPECT_EQ(folder.count_entries(), 2u);
}

TEST_F(ManagerBuiltinLuts, FilesThatExistAreReusedAndNeverRead) {
    write_file("srgb.spi1d", "of an earlier run");
    write_file("cineon.spi1d", "");
    const auto old_time = std::filesystem::last_write_time(path_of("srgb.spi1d")) - std::chrono::hours(1);
    std::filesystem::last_write_time(path_of("srgb.spi1d"), old_time);

    EXPECT_TRUE(ColorIOManager::static_init(&app));

    EXPECT_EQ(folder.read("srgb.spi1d"), "of an earlier run");
    EXPECT_EQ(folder.read("cineon.spi1d"), "");
    EXPECT_EQ(std::filesystem::last_write_time(path_of("srgb.spi1d")), old_time);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ManagerBuiltinLuts, OnlyTheMissingFileIsWritten) {
    write_file("srgb.spi1d", "of an earlier run");
    start_manager();
    EXPECT_EQ(folder.read("srgb.spi1d"), "of an earlier run");
    EXPECT_EQ(samples_of(folder.read("cineon.spi1d")).size(), 4101u);
}

using ManagerBuiltinConfig = ManagerTest;

TEST_F(ManagerBuiltinConfig, RecordsDescribeTheBuiltInSpaces) {
    const CoreVector<ColorIOManager::ColorSpaceDef>& records = start_manager().get_tavelion_color_spaces();
    ASSERT_EQ(records.get_count(), 3u);
    const struct {
        const char* name;
        unsigned int allocation;
        float from, to;
    } expectations[] = {{"sRGB", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f},
                        {"Cineon", ocio::ALLOCATION_UNIFORM, -0.125f, 1.125f},
                        {"linear", ocio::ALLOCATION_LG2, -15.0f, 6.0f}};
    for (unsigned int i = 0; i < 3; ++i) {
        const ColorIOManager::ColorSpaceDef& record = records[i];
        EXPECT_EQ(str(record.name), expectations[i].name);
        EXPECT_EQ(str(record.lut_file), "");
        EXPECT_EQ(str(record.cdl_file), "");
        EXPECT_EQ(str(record.cccid), "");
        EXPECT_EQ(record.bit_depth, static_cast<unsigned int>(ocio::BIT_DEPTH_F32));
        EXPECT_EQ(record.allocation, expectations[i].allocation);
        EXPECT_EQ(record.allocation_vars[0], expectations[i].from);
        EXPECT_EQ(record.allocation_vars[1], expectations[i].to);
        EXPECT_EQ(record.allocation_vars[2], 0.0f);
        EXPECT_TRUE(record.is_builtin);
    }
}

TEST_F(ManagerBuiltinConfig, ItHasOneDisplayWithAViewPerSpaceAndTheFirstIsTheDefault) {
    const ColorIOManager& manager = start_manager();
    CoreString display, view;
    EXPECT_TRUE(manager.get_default_display_view(display, view));
    EXPECT_EQ(str(display), "Tavelion");
    EXPECT_EQ(str(view), "sRGB");
    EXPECT_EQ(str(manager.get_default_display_view()), "Tavelion.sRGB");
    EXPECT_EQ(str(manager.get_color_space_from_display_view("Tavelion.Cineon")), "Tavelion|Cineon");
}

TEST_F(ManagerBuiltinConfig, DisplaySpacesAreReadThroughTheirTables) {
    start_manager();
    ColorIOConverter from_srgb, from_cineon;
    ASSERT_TRUE(from_srgb.configure("sRGB", "linear"));
    ASSERT_TRUE(from_cineon.configure("Cineon", "linear"));

    GMathVec4<float> gray(0.5f, 0.04f, 1.0f, 0.25f);
    EXPECT_TRUE(from_srgb.convert_pixel(gray));
    EXPECT_NEAR(gray[0], std::pow((0.5 + 0.055) / 1.055, 2.4), 1e-6);
    EXPECT_NEAR(gray[1], 0.04 / 12.92, 1e-6);
    EXPECT_NEAR(gray[2], 1.0, 1e-6);
    EXPECT_EQ(gray[3], 0.25f);

    GMathVec4<float> film(95.0f / 1023, 685.0f / 1023, 445.0f / 1023, 1.0f);
    EXPECT_TRUE(from_cineon.convert_pixel(film));
    EXPECT_NEAR(film[0], 0.0, 1e-6);
    EXPECT_NEAR(film[1], 1.0, 2e-6);
    const double black = std::pow(10.0, (95 - 685) / 300.0);
    EXPECT_NEAR(film[2], (std::pow(10.0, (445 - 685) / 300.0) - black) / (1 - black), 2e-6);
}

TEST_F(ManagerBuiltinConfig, TheFoldersNameMayHoldBlanksSignsAndLettersOutsideAscii) {
    for (const char* name : {"100%", "a blank", "ä", "(1) [2] {3}", "#5 &co", "'quoted'", "c$HOME",
                             "c${HOME}", "%HOME%", "a$b/${c}"}) {
        write_file(std::string(name) + "/keep.txt", "");
        app.lut_folder = path_of(name).c_str();
        ColorIOManager::destroy();
        start_manager();
        ColorIOConverter converter;
        EXPECT_TRUE(converter.configure("sRGB", "linear")) << name;
    }
}

/// Writes numbers with a comma and groups of digits, as many countries do.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(ManagerBuiltinConfig, TheProgramsLocaleChangesNeitherTheTablesNorTheConversion) {
    const std::locale old = std::locale::global(std::locale(std::locale(), new CommaNumbers));
    start_manager();
    ColorIOConverter converter;
    const bool configured = converter.configure("sRGB", "linear");
    std::locale::global(old);

    const std::string header = "Version 1\nFrom -0.125 1.125\nLength 4101\n";
    EXPECT_EQ(folder.read("srgb.spi1d").substr(0, header.size()), header);
    ASSERT_TRUE(configured);
    GMathVec4<float> gray(0.5f, 0.5f, 0.5f, 1.0f);
    EXPECT_TRUE(converter.convert_pixel(gray));
    EXPECT_NEAR(gray[0], std::pow((0.5 + 0.055) / 1.055, 2.4), 1e-6);
}
