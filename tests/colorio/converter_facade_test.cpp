#include "colorio/color_io.h"

#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/planes.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const formula::Cdl WARM = {{1.1, 1.0, 0.8}, {0.02, 0.01, 0.05}, {1.2, 0.9, 1.1}, 0.8};
const formula::Cdl COOL = {{0.7, 0.8, 0.9}, {0.05, 0.04, 0.06}, {0.9, 1.1, 1.3}, 1.2};

class FacadeConversion : public ConverterTest {};

TEST_F(FacadeConversion, RunsFromTheSecondNameToTheFirst) {
    std::vector<float> buffer = {0.5f, 0, 1, 0.25f};
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "linear", "Tavelion|sRGB"));
    EXPECT_TRUE(is_near(buffer[0], formula::srgb_to_linear(0.5)));
    EXPECT_EQ(buffer[3], 0.25f);
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 1, 1, 4, "sRGB", "linear"));
    EXPECT_NEAR(buffer[0], 0.5, 5e-6);
}

TEST_F(FacadeConversion, TakesWidthHeightAndChannels) {
    std::vector<float> buffer(2 * 3 * 5, 0.5f);
    EXPECT_TRUE(ColorIO::convert_buffer(buffer.data(), 2, 3, 5, "linear", "sRGB"));
    for (size_t i = 0; i < buffer.size(); ++i)
        EXPECT_TRUE(is_near(buffer[i], i % 5 < 3 ? formula::srgb_to_linear(0.5) : 0.5)) << i;
}

TEST_F(FacadeConversion, OfEqualOrUnknownNamesIsRefused) {
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

TEST_F(FacadeConversion, OfPlanesRunsFromTheSecondNameToTheFirst) {
    Planes planes(6);
    const Planes before(6);
    EXPECT_TRUE(ColorIO::convert_buffers(planes.r.data(), planes.g.data(), planes.b.data(), nullptr, 3, 2,
                                         "linear", "sRGB"));
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_TRUE(is_near(planes.r[i], formula::srgb_to_linear(before.r[i])));
        EXPECT_TRUE(is_near(planes.b[i], formula::srgb_to_linear(before.b[i])));
    }
}

/// One of the facade's two conversions of planes, between two known names.
class PlanesThroughTheFacade : public ConverterTest, public testing::WithParamInterface<bool> {
protected:
    bool convert(float* r, float* g, float* b, unsigned int width, unsigned int height,
                 bool same_name = false) {
        const CoreString first = GetParam() ? "warm" : "linear", second = GetParam() ? "No CDL" : "sRGB";
        return (GetParam() ? ColorIO::convert_CDL_buffers : ColorIO::convert_buffers)(
            r, g, b, nullptr, width, height, first, same_name ? first : second);
    }
};

TEST_P(PlanesThroughTheFacade, AreRefusedWithoutAColorPlaneOrASize) {
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
                         [](const auto& kind) { return kind.param ? "OfCdls" : "OfColorSpaces"; });

TEST_F(FacadeConversion, OfCdlsRunsFromTheSecondNameToTheFirst) {
    use_cdls({cdl_record("warm", WARM), cdl_record("cool", COOL)});
    std::vector<float> r = {0.5f}, g = {0.4f}, b = {0.6f}, a = {0.25f};
    EXPECT_TRUE(ColorIO::convert_CDL_buffers(r.data(), g.data(), b.data(), a.data(), 1, 1, "warm", "cool"));
    const formula::Rgb expected = WARM.apply(COOL.undo({0.5, 0.4, 0.6}));
    EXPECT_TRUE(is_near(r[0], expected[0]));
    EXPECT_TRUE(is_near(g[0], expected[1]));
    EXPECT_TRUE(is_near(b[0], expected[2]));
    EXPECT_EQ(a[0], 0.25f);
}

// Threads

TEST_F(FacadeConversion, OnSeveralThreadsGivesWhatOneThreadGives) {
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
