#include "colorio/color_io_converter.h"

#include <cmath>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/planes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Conversion : public ConverterTest {};

// Pixels

TEST_F(Conversion, OfAPixelIsRefusedBeforeConfiguration) {
    GMathVec4<float> pixel(0.5f, 0.6f, 0.7f, 0.8f);
    EXPECT_FALSE(converter->convert_pixel(pixel));
    EXPECT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_FALSE(converter->convert_pixel(pixel)) << "a new pass-through converter is not configured";
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

TEST_F(Conversion, OfABufferWithFewerThanThreeChannelsThrowsTheColorLibrarysError) {
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

TEST_F(Conversion, NamesAColorSpaceThatTheMenuHolds) {
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

} // namespace
