#include <cmath>
#include <functional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "tests/colorio/converter_fixture.h"

namespace {

using testing::ElementsAre;

class ConvertedValues : public ConverterTest {
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

// Built-in color spaces

TEST_F(ConvertedValues, OfSrgbToLinearFollowsItsDecodingCurve) {
    expect_curve("sRGB", "linear", -0.125, 1.125, formula::srgb_to_linear, same);
}

TEST_F(ConvertedValues, OfLinearToSrgbFollowsItsEncodingCurve) {
    expect_curve("linear", "sRGB", -0.0096, 1.3, same, formula::linear_to_srgb);
}

TEST_F(ConvertedValues, OfCineonToLinearFollowsTheLogCurve) {
    expect_curve("Cineon", "linear", -0.125, 1.125, formula::cineon_to_linear, same);
}

TEST_F(ConvertedValues, OfLinearToCineonFollowsTheInverseLogCurve) {
    expect_curve("linear", "Cineon", 0.001, 36, same, formula::linear_to_cineon);
}

TEST_F(ConvertedValues, BetweenTheDisplaySpacesGoesThroughLinear) {
    expect_curve("sRGB", "Cineon", 0.01, 1.125, formula::srgb_to_linear, formula::linear_to_cineon);
    expect_curve("Cineon", "sRGB", 0.1, 0.7, formula::cineon_to_linear, formula::linear_to_srgb);
}

TEST_F(ConvertedValues, ClampsToTheDomainOfTheBuiltInTables) {
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

TEST_F(ConvertedValues, OfCineonMapsBlackTo0AndWhiteTo1) {
    ASSERT_TRUE(converter->configure("Cineon", "linear"));
    const std::vector<float> converted = convert(95.0f / 1023, 685.0f / 1023, 95.0f / 1023);
    EXPECT_TRUE(is_near(converted[0], 0));
    EXPECT_TRUE(is_near(converted[1], 1));
}

TEST_F(ConvertedValues, ThereAndBackGivesTheSameColors) {
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
/// Colors whose every intermediate value stays within [0, 1] for the two CDLs above.
const formula::Rgb MID_COLORS[] = {{0.2, 0.3, 0.4},   {0.5, 0.5, 0.5},  {0.6, 0.4, 0.5},
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
        for (const formula::Rgb& color : MID_COLORS) {
            const std::vector<float> converted = convert(
                static_cast<float>(color[0]), static_cast<float>(color[1]), static_cast<float>(color[2]));
            for (int i = 0; i < 3; ++i)
                EXPECT_TRUE(is_near(converted[i], expected(color)[i]))
                    << source << " to " << destination << ", color " << color[0] << ", channel " << i;
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

} // namespace
