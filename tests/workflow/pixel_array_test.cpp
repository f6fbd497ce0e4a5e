#include "workflow/pixel_array.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;
using testing::ElementsAre;
using testing::ElementsAreArray;
using workflow::Conversion;
using workflow::ConversionRequest;
using workflow::PixelArray;

/// SHOW_CONFIG: half_light is lin times 0.5.
class PixelArrays : public WorkflowTest {
protected:
    PixelArrays() : conversion(session, {"lin", "", "half_light", "", "", {}, false}) {}

    /// Pixels in a row, one after the other.
    template <class Value>
    static PixelArray make_row(std::vector<Value>& values, PixelArray::Type type, int channels) {
        PixelArray array;
        array.data = reinterpret_cast<std::byte*>(values.data());
        array.type = type;
        array.channels = channels;
        array.channel_stride = sizeof(Value);
        array.extents = {1, 1, values.size() / static_cast<std::size_t>(channels)};
        array.strides = {0, 0, static_cast<std::ptrdiff_t>(channels * sizeof(Value))};
        return array;
    }

    void convert_in_place(const PixelArray& array) const { convert_pixels(conversion, array, array); }

    workflow::Session session{show_options()};
    const Conversion conversion;
};

TEST_F(PixelArrays, AreConvertedInPlaceWithAndWithoutAlpha) {
    std::vector<float> rgba = {1, 2, 3, 0.5f, 4, 5, 6, 0.25f};
    convert_in_place(make_row(rgba, PixelArray::FLOAT, 4));
    EXPECT_THAT(rgba, ElementsAre(0.5f, 1, 1.5f, 0.5f, 2, 2.5f, 3, 0.25f));
    std::vector<float> rgb = {1, 2, 3, 4, 5, 6};
    convert_in_place(make_row(rgb, PixelArray::FLOAT, 3));
    EXPECT_THAT(rgb, ElementsAre(0.5f, 1, 1.5f, 2, 2.5f, 3));
}

// Codes are clamped and rounded to the nearest: 255 / 2 = 127.5 becomes 128, 65535 / 2 = 32767.5 becomes
// 32768.
TEST_F(PixelArrays, OfIntegersStandForZeroToOne) {
    std::vector<std::uint8_t> bytes = {0, 100, 255, 7};
    convert_in_place(make_row(bytes, PixelArray::UINT8, 4));
    EXPECT_THAT(bytes, ElementsAre(0, 50, 128, 7));
    std::vector<std::uint16_t> words = {0, 1000, 65535};
    convert_in_place(make_row(words, PixelArray::UINT16, 3));
    EXPECT_THAT(words, ElementsAre(0, 500, 32768));
}

// Half 0x3c00 is 1, 0x3800 0.5, 0x4000 2, 0x3400 0.25.
TEST_F(PixelArrays, OfHalfsKeepTheirType) {
    std::vector<std::uint16_t> halfs = {0x3c00, 0x3800, 0x4000, 0x3c00};
    convert_in_place(make_row(halfs, PixelArray::HALF, 4));
    EXPECT_THAT(halfs, ElementsAre(0x3800, 0x3400, 0x3c00, 0x3c00));
}

TEST_F(PixelArrays, MayHaveAPlaneForEachChannel) {
    std::vector<float> planes = {1, 2, 3, 4, 10, 20, 30, 40, 100, 200, 300, 400};
    PixelArray array = make_row(planes, PixelArray::FLOAT, 3);
    array.extents = {1, 2, 2};
    array.channel_stride = 4 * sizeof(float);
    array.strides = {0, 2 * sizeof(float), sizeof(float)};
    convert_in_place(array);
    EXPECT_THAT(planes, ElementsAre(0.5f, 1, 1.5f, 2, 5, 10, 15, 20, 50, 100, 150, 200));
}

TEST_F(PixelArrays, LeaveWhatLiesBetweenTheirPixels) {
    std::vector<float> wide = {1, 2, 3, 99, 98, 4, 5, 6, 97, 96};
    PixelArray array = make_row(wide, PixelArray::FLOAT, 3);
    array.extents = {1, 1, 2};
    array.strides.back() = 5 * sizeof(float);
    convert_in_place(array);
    EXPECT_THAT(wide, ElementsAre(0.5f, 1, 1.5f, 99, 98, 2, 2.5f, 3, 97, 96));
}

TEST_F(PixelArrays, MayRunBackwards) {
    std::vector<std::uint16_t> halfs = {0x3c00, 0x3c00, 0x3c00, 0x4000, 0x4000, 0x4000};
    std::vector<float> floats(6);
    PixelArray source = make_row(halfs, PixelArray::HALF, 3);
    source.data += 3 * sizeof(std::uint16_t);
    source.strides.back() = -3 * static_cast<std::ptrdiff_t>(sizeof(std::uint16_t));
    convert_pixels(conversion, source, make_row(floats, PixelArray::FLOAT, 3));
    EXPECT_THAT(floats, ElementsAre(1, 1, 1, 0.5f, 0.5f, 0.5f));
    EXPECT_EQ(halfs[0], 0x3c00) << "the source stays";
}

// One color for all pixels of the result.
TEST_F(PixelArrays, MayRepeatAPixelOfTheSource) {
    std::vector<float> color = {2, 4, 6};
    std::vector<float> result(3 * 40);
    const PixelArray target = make_row(result, PixelArray::FLOAT, 3);
    PixelArray source = make_row(color, PixelArray::FLOAT, 3);
    source.extents = target.extents;
    source.strides.back() = 0;
    convert_pixels(conversion, source, target);
    for (std::size_t i = 0; i < result.size(); i += 3)
        EXPECT_THAT(std::vector<float>(result.begin() + static_cast<std::ptrdiff_t>(i),
                                       result.begin() + static_cast<std::ptrdiff_t>(i) + 3),
                    ElementsAre(1, 2, 3));
}

/// Each order of axes and channels gives the bits that the conversion gives to packed pixels.
TEST_F(PixelArrays, GiveTheSameBitsInEveryOrder) {
    constexpr std::size_t WIDTH = 130, HEIGHT = 140, PIXELS = 2 * WIDTH * HEIGHT; // more than a band
    std::vector<float> packed(PIXELS * 3);
    for (std::size_t i = 0; i < packed.size(); ++i)
        packed[i] = static_cast<float>(i % 1021) / 509 - 0.5f;
    std::vector<float> expected = packed;
    conversion.apply(expected.data(), WIDTH, 2 * HEIGHT, 0, 3);

    std::vector<float> planar(packed.size()), result(packed.size());
    for (std::size_t i = 0; i < packed.size(); ++i)
        planar[i % 3 * PIXELS + i / 3] = packed[i];
    PixelArray source = make_row(planar, PixelArray::FLOAT, 3);
    source.channel_stride = PIXELS * sizeof(float);
    source.extents = {2, HEIGHT, WIDTH};
    source.strides = {WIDTH * HEIGHT * sizeof(float), WIDTH * sizeof(float), sizeof(float)};
    PixelArray target = make_row(result, PixelArray::FLOAT, 3);
    target.extents = source.extents;
    target.strides = {WIDTH * HEIGHT * 3 * sizeof(float), WIDTH * 3 * sizeof(float), 3 * sizeof(float)};
    convert_pixels(conversion, source, target);
    EXPECT_EQ(std::memcmp(result.data(), expected.data(), expected.size() * sizeof(float)), 0);

    convert_in_place([&] {
        target.data = reinterpret_cast<std::byte*>(packed.data());
        return target;
    }());
    EXPECT_EQ(std::memcmp(packed.data(), expected.data(), expected.size() * sizeof(float)), 0);
}

TEST_F(PixelArrays, MayHaveNoPixels) {
    std::vector<float> none;
    PixelArray array = make_row(none, PixelArray::FLOAT, 4);
    convert_in_place(array);
    array.extents = {0, 5, 5};
    convert_in_place(array);
}

TEST_F(PixelArrays, HaveTheSameShapeAndThreeOrFourChannels) {
    std::vector<float> values(12);
    const PixelArray three = make_row(values, PixelArray::FLOAT, 3);
    const PixelArray four = make_row(values, PixelArray::FLOAT, 4);
    EXPECT_EQ(failure_of([&] { convert_pixels(conversion, three, four); }).code, Code::USAGE);
    EXPECT_EQ(failure_of([&] { convert_in_place(make_row(values, PixelArray::FLOAT, 2)); }).code,
              Code::USAGE);
    EXPECT_THAT(values, testing::Each(0.0f));
}

TEST_F(PixelArrays, TakeAnExposure) {
    ConversionRequest request;
    request.from = request.to = "lin";
    request.takes_exposure = true;
    const Conversion exposed(session, request);
    std::vector<float> rgb = {1, 2, 3};
    const PixelArray array = make_row(rgb, PixelArray::FLOAT, 3);
    convert_pixels(exposed, array, array, 2);
    EXPECT_THAT(rgb, ElementsAre(4, 8, 12));
}

} // namespace
