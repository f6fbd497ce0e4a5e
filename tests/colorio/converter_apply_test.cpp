#include "colorio/color_io_converter.h"

#include <cmath>
#include <functional>
#include <limits>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/converter_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double ABSOLUTE_TOLERANCE = 2e-6;
constexpr double RELATIVE_TOLERANCE = 2e-6;

/// `actual` is `expected` within 2e-6, absolute or relative.
testing::AssertionResult is_near(float actual, double expected) {
    const double difference = std::abs(actual - expected);
    if (difference <= ABSOLUTE_TOLERANCE || difference <= RELATIVE_TOLERANCE * std::abs(expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << actual << " instead of " << expected << ", off by " << difference;
}

class Conversion : public ConverterTest {
protected:
    using Curve = double (*)(double);

    /// Checks a pair of spaces that differ by a curve per channel, at `count` + 1 values from `from` to `to`.
    void expect_curve(const char* source, const char* destination, double from, double to, Curve first,
                      Curve second) {
        ASSERT_TRUE(converter->configure(source, destination));
        const int count = 600;
        for (int i = 0; i <= count; ++i) {
            const float r = static_cast<float>(from + (to - from) * i / count);
            const float g = static_cast<float>(to - (to - from) * i / count);
            const float b = static_cast<float>(from + (to - from) * ((i * 7) % count) / count);
            const std::vector<float> converted = convert(r, g, b, 0.3f);
            EXPECT_TRUE(is_near(converted[0], second(first(r)))) << source << " " << r;
            EXPECT_TRUE(is_near(converted[1], second(first(g)))) << source << " " << g;
            EXPECT_TRUE(is_near(converted[2], second(first(b)))) << source << " " << b;
        }
    }
    static double same(double value) { return value; }
};

// Built-in colour spaces

TEST_F(Conversion, OfSrgbToLinearFollowsItsDecodingCurve) {
    expect_curve("sRGB", "linear", -0.125, 1.125, formula::srgb_to_linear, same);
}

TEST_F(Conversion, OfLinearToSrgbFollowsItsEncodingCurve) {
    expect_curve("linear", "sRGB", -0.0096, 1.3, same, formula::linear_to_srgb);
}

TEST_F(Conversion, OfCineonToLinearFollowsTheLogCurve) {
    expect_curve("Cineon", "linear", -0.125, 1.125, formula::cineon_to_linear, same);
}

TEST_F(Conversion, OfLinearToCineonFollowsTheInverseLogCurve) {
    expect_curve("linear", "Cineon", 0.001, 36, same, formula::linear_to_cineon);
}

TEST_F(Conversion, BetweenTheDisplaySpacesGoesThroughLinear) {
    expect_curve("sRGB", "Cineon", 0.01, 1.125, formula::srgb_to_linear, formula::linear_to_cineon);
    expect_curve("Cineon", "sRGB", 0.1, 0.7, formula::cineon_to_linear, formula::linear_to_srgb);
}

TEST_F(Conversion, ClampsToTheDomainOfTheBuiltInTables) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    const std::vector<float> decoded = convert(-5, 7, 1e20f);
    EXPECT_TRUE(is_near(decoded[0], -0.125 / 12.92));
    EXPECT_TRUE(is_near(decoded[1], std::pow((1.125 + 0.055) / 1.055, 2.4)));
    EXPECT_TRUE(is_near(decoded[2], std::pow((1.125 + 0.055) / 1.055, 2.4)));
    ASSERT_TRUE(converter->configure("linear", "sRGB"));
    const std::vector<float> encoded = convert(-5, 7, 1e20f);
    EXPECT_TRUE(is_near(encoded[0], -0.125));
    EXPECT_TRUE(is_near(encoded[1], 1.125));
    EXPECT_TRUE(is_near(encoded[2], 1.125));
}

TEST_F(Conversion, OfCineonMapsBlackTo0AndWhiteTo1) {
    ASSERT_TRUE(converter->configure("Cineon", "linear"));
    const std::vector<float> converted = convert(95.0f / 1023, 685.0f / 1023, 95.0f / 1023);
    EXPECT_TRUE(is_near(converted[0], 0));
    EXPECT_TRUE(is_near(converted[1], 1));
}

TEST_F(Conversion, ThereAndBackGivesTheSameColours) {
    ColorIOConverter back;
    ASSERT_TRUE(converter->configure("sRGB", "Cineon"));
    ASSERT_TRUE(back.configure("Cineon", "sRGB"));
    for (float value : {0.01f, 0.1f, 0.25f, 0.5f, 0.75f, 1.0f}) {
        const std::vector<float> there = convert(value, value, value);
        GMathVec4<float> pixel(there[0], there[1], there[2], 1);
        ASSERT_TRUE(back.convert_pixel(pixel));
        EXPECT_NEAR(pixel[0], value, 5e-6) << value;
    }
}

// CDLs

const formula::Cdl WARM = {{1.1, 1.0, 0.8}, {0.02, 0.01, 0.05}, {1.2, 0.9, 1.1}, 0.8};
const formula::Cdl COOL = {{0.7, 0.8, 0.9}, {0.05, 0.04, 0.06}, {0.9, 1.1, 1.3}, 1.2};
/// Colours whose every intermediate value stays within [0, 1] for the two CDLs above.
const formula::Rgb MID_COLOURS[] = {{0.2, 0.3, 0.4},   {0.5, 0.5, 0.5},  {0.6, 0.4, 0.5},
                                    {0.35, 0.45, 0.4}, {0.7, 0.65, 0.6}, {0.3, 0.32, 0.28}};

class CdlConversion : public ConverterTest {
protected:
    void SetUp() override {
        ConverterTest::SetUp();
        use_cdls({cdl_record("warm", WARM), cdl_record("cool", COOL)});
    }
    void expect_conversion(const char* source, const char* destination,
                           const std::function<formula::Rgb(const formula::Rgb&)>& expected) {
        ASSERT_TRUE(converter->configure_CDL(source, destination));
        for (const formula::Rgb& color : MID_COLOURS) {
            const std::vector<float> converted = convert(
                static_cast<float>(color[0]), static_cast<float>(color[1]), static_cast<float>(color[2]));
            for (int i = 0; i < 3; ++i)
                EXPECT_TRUE(is_near(converted[i], expected(color)[i]))
                    << source << " to " << destination << ", colour " << color[0] << ", channel " << i;
        }
    }
};

TEST_F(CdlConversion, AppliesSlopeOffsetPowerAndSaturation) {
    expect_conversion("No CDL", "warm", [](const formula::Rgb& color) { return WARM.apply(color); });
    expect_conversion("No CDL", "cool", [](const formula::Rgb& color) { return COOL.apply(color); });
}

TEST_F(CdlConversion, UndoesThemInReverse) {
    expect_conversion("warm", "No CDL", [](const formula::Rgb& color) { return WARM.undo(color); });
    expect_conversion("cool", "No CDL", [](const formula::Rgb& color) { return COOL.undo(color); });
}

TEST_F(CdlConversion, BetweenTwoCdlsUndoesOneAndAppliesTheOther) {
    expect_conversion("warm", "cool", [](const formula::Rgb& color) { return COOL.apply(WARM.undo(color)); });
}

TEST_F(CdlConversion, ClampsNegativeValuesOnlyInFrontOfAPower) {
    use_cdls({cdl_record("sunk", {{1, 1, 1}, {-0.5, -0.5, -0.5}}),
              cdl_record("sunk and bent", {{1, 1, 1}, {-0.5, -0.5, -0.5}, {2, 2, 2}})});
    ASSERT_TRUE(converter->configure_CDL("No CDL", "sunk"));
    EXPECT_THAT(convert(0.25f, 1, 3), ElementsAre(-0.25f, 0.5f, 2.5f));
    ASSERT_TRUE(converter->configure_CDL("No CDL", "sunk and bent"));
    const std::vector<float> bent = convert(0.25f, 1, 3);
    EXPECT_TRUE(is_near(bent[0], 0));
    EXPECT_TRUE(is_near(bent[1], 0.25));
    EXPECT_TRUE(is_near(bent[2], 6.25)) << "values above 1 are not clamped";
}

// Pixels

TEST_F(Conversion, OfAPixelIsRefusedBeforeConfiguration) {
    GMathVec4<float> pixel(0.5f, 0.6f, 0.7f, 0.8f);
    EXPECT_FALSE(converter->convert_pixel(pixel));
    EXPECT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_FALSE(converter->convert_pixel(pixel)) << "a fresh pass-through is no configuration";
    EXPECT_FALSE(converter->configure("sRGB", "no such space"));
    EXPECT_FALSE(converter->convert_pixel(pixel));
    EXPECT_THAT(std::vector<float>(pixel.get_data(), pixel.get_data() + 4),
                ElementsAre(0.5f, 0.6f, 0.7f, 0.8f));
}

TEST_F(Conversion, OfAPixelIsRefusedAfterAFailedConfiguration) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ASSERT_FALSE(converter->configure("sRGB", "no such space"));
    GMathVec4<float> pixel(0.5f, 0.6f, 0.7f, 0.8f);
    EXPECT_FALSE(converter->convert_pixel(pixel));
    EXPECT_THAT(std::vector<float>(pixel.get_data(), pixel.get_data() + 4),
                ElementsAre(0.5f, 0.6f, 0.7f, 0.8f));
}

TEST_F(Conversion, OfAPixelSucceedsWithoutChangeInAPassThrough) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ASSERT_FALSE(converter->configure("sRGB", "sRGB"));
    GMathVec4<float> pixel(0.5f, 0.6f, 0.7f, 0.8f);
    EXPECT_TRUE(converter->convert_pixel(pixel));
    EXPECT_THAT(std::vector<float>(pixel.get_data(), pixel.get_data() + 4),
                ElementsAre(0.5f, 0.6f, 0.7f, 0.8f));
}

TEST_F(Conversion, OfAPixelKeepsItsAlphaWhateverItIs) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    for (float alpha : {0.0f, 0.5f, 1.0f, -2.0f, 1e30f, std::numeric_limits<float>::infinity()})
        convert(0.5f, 0.5f, 0.5f, alpha);
    GMathVec4<float> pixel(0.5f, 0.5f, 0.5f, std::numeric_limits<float>::quiet_NaN());
    ASSERT_TRUE(converter->convert_pixel(pixel));
    EXPECT_TRUE(std::isnan(pixel[3]));
    EXPECT_TRUE(is_near(pixel[0], formula::srgb_to_linear(0.5)));
}

TEST_F(Conversion, OfOneChannelThatIsNotANumberLeavesTheOthersRight) {
    const float not_a_number = std::numeric_limits<float>::quiet_NaN();
    for (auto [source, destination] :
         {std::pair{"sRGB", "linear"}, {"linear", "Cineon"}, {"Cineon", "sRGB"}}) {
        ASSERT_TRUE(converter->configure(source, destination));
        const std::vector<float> clean = convert(0.25f, 0.5f, 0.75f);
        EXPECT_EQ(convert(not_a_number, 0.5f, 0.75f)[1], clean[1]);
        EXPECT_EQ(convert(not_a_number, 0.5f, 0.75f)[2], clean[2]);
        EXPECT_EQ(convert(0.25f, 0.5f, not_a_number)[0], clean[0]);
    }
}

// Interleaved buffers

TEST_F(Conversion, OfABufferConvertsEveryPixelInPlace) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    const unsigned int width = 7, height = 5;
    for (unsigned int channels : {3u, 4u, 5u, 9u}) {
        std::vector<float> buffer(width * height * channels), expected(buffer.size());
        for (size_t i = 0; i < buffer.size(); ++i) {
            buffer[i] = static_cast<float>(i % 97) / 97;
            expected[i] = buffer[i];
        }
        for (size_t pixel = 0; pixel < width * height; ++pixel) {
            float* values = &expected[pixel * channels];
            const std::vector<float> converted = convert(values[0], values[1], values[2]);
            std::copy(converted.begin(), converted.end(), values);
        }
        EXPECT_TRUE(converter->convert_buffer(buffer.data(), width, height, channels));
        EXPECT_EQ(buffer, expected) << channels << " channels: as the pixels one by one, the rest untouched";
    }
}

TEST_F(Conversion, OfABufferStaysWithinIt) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    const float guard = -77;
    for (unsigned int channels : {3u, 4u, 5u}) {
        std::vector<float> buffer(4 * 3 * channels, 0.5f);
        buffer.push_back(guard);
        EXPECT_TRUE(converter->convert_buffer(buffer.data(), 4, 3, channels));
        EXPECT_EQ(buffer.back(), guard);
        EXPECT_TRUE(is_near(buffer[channels * 11], formula::srgb_to_linear(0.5)))
            << "the last pixel is converted";
    }
}

TEST_F(Conversion, OfABufferKeepsPixelsApart) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    std::vector<float> buffer(16 * 4, 0.5f);
    std::fill_n(buffer.begin() + 7 * 4, 3, std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(converter->convert_buffer(buffer.data(), 16, 1, 4));
    for (size_t pixel = 0; pixel < 16; ++pixel)
        for (size_t channel = 0; channel < 3; ++channel) {
            if (pixel != 7) {
                EXPECT_TRUE(is_near(buffer[pixel * 4 + channel], formula::srgb_to_linear(0.5)));
            }
        }
    EXPECT_EQ(buffer[7 * 4 + 3], 0.5f);
}

TEST_F(Conversion, OfABufferIsRefusedUnlessThereIsSomethingToDo) {
    std::vector<float> buffer(12, 0.5f);
    const std::vector<float> untouched = buffer;
    EXPECT_FALSE(converter->convert_buffer(buffer.data(), 1, 3, 4)) << "fresh";
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->convert_buffer(buffer.data(), 0, 3, 4));
    EXPECT_FALSE(converter->convert_buffer(buffer.data(), 3, 0, 4));
    EXPECT_FALSE(converter->convert_buffer(nullptr, 0, 0, 0));
    ASSERT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_FALSE(converter->convert_buffer(buffer.data(), 1, 3, 4)) << "a pass-through has not processed it";
    ASSERT_FALSE(converter->configure("sRGB", "no such space"));
    EXPECT_FALSE(converter->convert_buffer(buffer.data(), 1, 3, 4));
    EXPECT_EQ(buffer, untouched);
}

TEST_F(Conversion, OfABufferWithFewerThanThreeChannelsThrowsTheColourLibrarysError) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    for (unsigned int channels : {0u, 1u, 2u}) {
        std::vector<float> buffer(24, 0.5f);
        const std::vector<float> untouched = buffer;
        EXPECT_ANY_THROW(converter->convert_buffer(buffer.data(), 3, 4, channels)) << channels;
        EXPECT_EQ(buffer, untouched);
    }
}

TEST_F(Conversion, BetweenNamesOfOneSpaceProcessesWithoutChange) {
    ASSERT_TRUE(converter->configure("Tavelion|sRGB", "sRGB"));
    std::vector<float> buffer = {0.1f, -0.2f, 30, 0.4f};
    EXPECT_TRUE(converter->convert_buffer(buffer.data(), 1, 1, 4));
    EXPECT_THAT(buffer, ElementsAre(0.1f, -0.2f, 30, 0.4f));
}

// Planar buffers

struct Planes {
    explicit Planes(size_t count) : r(count), g(count), b(count), a(count) {
        for (size_t i = 0; i < count; ++i) {
            r[i] = static_cast<float>(i) / count;
            g[i] = static_cast<float>(count - i) / count;
            b[i] = static_cast<float>((i * 5) % count) / count;
            a[i] = static_cast<float>((i * 3) % count) / count;
        }
    }
    friend bool operator==(const Planes& x, const Planes& y) {
        return x.r == y.r && x.g == y.g && x.b == y.b && x.a == y.a;
    }
    std::vector<float> r, g, b, a;
};

TEST_F(Conversion, OfPlanesConvertsThemInPlaceAndKeepsAlpha) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    Planes planes(13 * 3), expected(13 * 3);
    for (size_t i = 0; i < expected.r.size(); ++i) {
        const std::vector<float> converted = convert(expected.r[i], expected.g[i], expected.b[i]);
        expected.r[i] = converted[0];
        expected.g[i] = converted[1];
        expected.b[i] = converted[2];
    }
    EXPECT_TRUE(converter->convert_buffers(planes.r.data(), planes.g.data(), planes.b.data(), planes.a.data(),
                                           13, 3));
    EXPECT_TRUE(planes == expected);

    Planes without_alpha(13 * 3);
    const std::vector<float> alpha = without_alpha.a;
    EXPECT_TRUE(converter->convert_buffers(without_alpha.r.data(), without_alpha.g.data(),
                                           without_alpha.b.data(), nullptr, 13, 3));
    EXPECT_EQ(without_alpha.r, expected.r);
    EXPECT_EQ(without_alpha.g, expected.g);
    EXPECT_EQ(without_alpha.b, expected.b);
    EXPECT_EQ(without_alpha.a, alpha);
}

TEST_F(Conversion, OfPlanesIsRefusedUnlessThereIsSomethingToDo) {
    Planes planes(6);
    const Planes untouched(6);
    auto refused = [&](unsigned int width, unsigned int height) {
        return !converter->convert_buffers(planes.r.data(), planes.g.data(), planes.b.data(), planes.a.data(),
                                           width, height);
    };
    EXPECT_TRUE(refused(3, 2)) << "fresh";
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_TRUE(refused(0, 2));
    EXPECT_TRUE(refused(3, 0));
    ASSERT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_TRUE(refused(3, 2)) << "a pass-through has not processed them";
    ASSERT_FALSE(converter->configure("sRGB", "no such space"));
    EXPECT_TRUE(refused(3, 2));
    EXPECT_TRUE(planes == untouched);
}

// Names and constants

TEST_F(Conversion, NamesAColourSpaceThatTheMenuHolds) {
    EXPECT_EQ(str(converter->get_color_space("Tavelion|sRGB")), "Tavelion|sRGB");
    EXPECT_EQ(str(converter->get_color_space("Tavelion|linear")), "Tavelion|linear");
    for (const char* name : {"sRGB", "linear", "Tavelion|srgb", "tavelion|sRGB", "no such space", ""})
        EXPECT_EQ(str(converter->get_color_space(name)), "") << name;
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(Conversion, NamesTheSceneLinearSpaceForItsMenuEntryWhenThatIsALabel) {
    ASSERT_EQ(str(ColorIO::s_default_scene_linear), "Use scene_linear");
    EXPECT_EQ(str(converter->get_color_space("Use scene_linear")), "") << "the label is Tavelion|linear";
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_EQ(str(converter->get_color_space("Use scene_linear")), "lin");
    EXPECT_EQ(str(converter->get_color_space("film")), "film");
    EXPECT_EQ(str(converter->get_color_space("Tavelion|sRGB")), "");
}

TEST_F(Conversion, AnswersItsConstants) {
    EXPECT_EQ(converter->get_lut_3d_edge_size(), 32u);
    EXPECT_EQ(converter->get_memory_size(), 24u);
}

// Through the facade

TEST_F(Conversion, ThroughTheFacadeRunsFromTheSecondNameToTheFirst) {
    std::vector<float> buffer = {0.5f, 0, 1, 0.25f};
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "linear", "Tavelion|sRGB"));
    EXPECT_TRUE(is_near(buffer[0], formula::srgb_to_linear(0.5)));
    EXPECT_EQ(buffer[3], 0.25f);
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "sRGB", "linear"));
    EXPECT_NEAR(buffer[0], 0.5, 5e-6);
}

TEST_F(Conversion, ThroughTheFacadeTakesWidthHeightAndChannels) {
    std::vector<float> buffer(2 * 3 * 5, 0.5f);
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 2, 3, 5, "linear", "sRGB"));
    for (size_t i = 0; i < buffer.size(); ++i)
        EXPECT_TRUE(is_near(buffer[i], i % 5 < 3 ? formula::srgb_to_linear(0.5) : 0.5)) << i;
}

TEST_F(Conversion, ThroughTheFacadeOfEqualOrUnknownNamesIsRefused) {
    std::vector<float> buffer = {0.5f, 0, 1, 0.25f};
    EXPECT_FALSE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "sRGB", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "no such space", "no such space"));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FALSE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "first", "second"));
    EXPECT_THAT(take_log(),
                ElementsAre(warning("Color Management: failed to configure the color converter. Source "
                                    "color space 'second' doesn't exist.\n"),
                            warning("Color Management: failed to configure the color converter. "
                                    "Destination color space 'first' doesn't exist.\n")));
    EXPECT_FALSE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "linear", ""));
    EXPECT_FALSE(ColorIO::convert_buffer(buffer.data(), 0, 1, 4, "linear", "sRGB"));
    EXPECT_THAT(buffer, ElementsAre(0.5f, 0, 1, 0.25f));
}

TEST_F(Conversion, OfPlanesThroughTheFacadeRunsFromTheSecondNameToTheFirst) {
    Planes planes(6);
    const Planes before(6);
    EXPECT_TRUE(ColorIO::convert_buffers(planes.r.data(), planes.g.data(), planes.b.data(), nullptr, 3, 2,
                                         "linear", "sRGB"));
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_TRUE(is_near(planes.r[i], formula::srgb_to_linear(before.r[i])));
        EXPECT_TRUE(is_near(planes.b[i], formula::srgb_to_linear(before.b[i])));
    }
}

/// One of the facade's two conversions of planes, between two names that it knows.
class PlanesThroughTheFacade : public ConverterTest, public testing::WithParamInterface<bool> {
protected:
    bool convert(float* r, float* g, float* b, unsigned int width, unsigned int height,
                 bool same_name = false) {
        const CoreString first = GetParam() ? "warm" : "linear", second = GetParam() ? "No CDL" : "sRGB";
        return (GetParam() ? ColorIO::convert_CDL_buffers : ColorIO::convert_buffers)(
            r, g, b, nullptr, width, height, first, same_name ? first : second);
    }
};

TEST_P(PlanesThroughTheFacade, AreRefusedWithoutAColourPlaneOrASize) {
    use_cdls({cdl_record("warm", WARM)});
    std::vector<float> plane(4, 0.5f);
    EXPECT_FALSE(convert(nullptr, plane.data(), plane.data(), 2, 2));
    EXPECT_FALSE(convert(plane.data(), nullptr, plane.data(), 2, 2));
    EXPECT_FALSE(convert(plane.data(), plane.data(), nullptr, 2, 2));
    EXPECT_FALSE(convert(plane.data(), plane.data(), plane.data(), 0, 2));
    EXPECT_FALSE(convert(plane.data(), plane.data(), plane.data(), 2, 0));
    EXPECT_FALSE(convert(plane.data(), plane.data(), plane.data(), 2, 2, true));
    EXPECT_THAT(plane, ElementsAre(0.5f, 0.5f, 0.5f, 0.5f));
    EXPECT_THAT(take_log(), IsEmpty());

    std::vector<float> red = plane, green = plane, blue = plane;
    EXPECT_TRUE(convert(red.data(), green.data(), blue.data(), 2, 2));
    EXPECT_NE(red, plane);
}

INSTANTIATE_TEST_SUITE_P(Conversion, PlanesThroughTheFacade, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "OfCdls" : "OfColourSpaces"; });

TEST_F(CdlConversion, ThroughTheFacadeRunsFromTheSecondNameToTheFirst) {
    std::vector<float> r = {0.5f}, g = {0.4f}, b = {0.6f}, a = {0.25f};
    EXPECT_TRUE(ColorIO::convert_CDL_buffers(r.data(), g.data(), b.data(), a.data(), 1, 1, "warm", "cool"));
    const formula::Rgb expected = WARM.apply(COOL.undo({0.5, 0.4, 0.6}));
    EXPECT_TRUE(is_near(r[0], expected[0]));
    EXPECT_TRUE(is_near(g[0], expected[1]));
    EXPECT_TRUE(is_near(b[0], expected[2]));
    EXPECT_EQ(a[0], 0.25f);
}

// Threads

TEST_F(Conversion, OnSeveralThreadsGivesWhatOneThreadGives) {
    ASSERT_TRUE(converter->configure("sRGB", "Cineon"));
    const unsigned int width = 64, height = 16;
    std::vector<float> image(width * height * 4);
    for (size_t i = 0; i < image.size(); ++i)
        image[i] = static_cast<float>(i % 251) / 251;
    std::vector<float> expected = image;
    ASSERT_TRUE(converter->convert_buffer(expected.data(), width, height, 4));

    std::vector<std::vector<float>> shared(4, image), facade(4, image);
    std::vector<std::thread> threads;
    for (size_t i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            converter->convert_buffer(shared[i].data(), width, height, 4);
            ColorIO::convert_buffer(facade[i].data(), width, height, 4, "Cineon", "sRGB");
        });
    for (std::thread& thread : threads)
        thread.join();
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(shared[i], expected);
        EXPECT_EQ(facade[i], expected);
    }
}

} // namespace
