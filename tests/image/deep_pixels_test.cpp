#include "image/deep_pixels.h"

#include <cstring>

#include "image/image_file.h"
#include "image/image_reader.h"
#include "tests/image/reader_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class DeepPixels : public ImageTest {
protected:
    static OIIO::ImageSpec make_spec() {
        OIIO::ImageSpec spec(2, 2, 3, OIIO::TypeHalf);
        spec.channelnames = {"A", "Z", "id"};
        spec.channelformats = {OIIO::TypeHalf, OIIO::TypeFloat, OIIO::TypeUInt32};
        spec.deep = true;
        return spec;
    }

    /// 2, 0, 1 and 3 samples; the depth counts them.
    static OIIO::DeepData make_pixels(const OIIO::ImageSpec& spec) {
        OIIO::DeepData pixels(spec);
        pixels.set_all_samples(std::vector<unsigned int>{2, 0, 1, 3});
        float depth = 0;
        for (int pixel = 0; pixel < 4; ++pixel)
            for (int sample = 0; sample < pixels.samples(pixel); ++sample) {
                pixels.set_deep_value(pixel, 0, sample, 0.25f);
                pixels.set_deep_value(pixel, 1, sample, depth++);
                pixels.set_deep_value(pixel, 2, sample, 0xFFFFFFFFu);
            }
        return pixels;
    }

    std::string write_deep(const std::string& name) const {
        const std::string path = folder.file(name);
        const OIIO::ImageSpec spec = make_spec();
        const auto output = OIIO::ImageOutput::create(path);
        EXPECT_TRUE(output && output->open(path, spec) && output->write_deep_image(make_pixels(spec)) &&
                    output->close());
        return path;
    }

    static void expect_the_same(const image::DeepPixels& pixels) {
        const OIIO::DeepData data = image::make_deep_data(pixels, make_spec());
        EXPECT_THAT(pixels.counts, ElementsAre(2, 0, 1, 3));
        EXPECT_EQ(data.deep_value(0, 1, 1), 1.0f);
        EXPECT_EQ(data.deep_value(3, 1, 2), 5.0f);
        EXPECT_EQ(data.deep_value(3, 0, 2), 0.25f);
        EXPECT_EQ(data.deep_value_uint(2, 2, 0), 0xFFFFFFFFu);
    }
};

TEST_F(DeepPixels, AreTheSameAfterPacking) {
    const OIIO::ImageSpec spec = make_spec();
    const OIIO::DeepData data = make_pixels(spec);
    std::vector<std::byte> packed(image::get_packed_bytes(data));
    EXPECT_EQ(packed.size(), 4 * 4u + 6 * 10u);
    image::pack(data, packed.data());
    image::DeepPixels pixels;
    ASSERT_TRUE(image::unpack(packed.data(), packed.size(), spec, pixels));
    expect_the_same(pixels);
}

TEST_F(DeepPixels, AreNotUnpackedFromOtherSizesThanTheirCountsNeed) {
    const OIIO::ImageSpec spec = make_spec();
    const OIIO::DeepData data = make_pixels(spec);
    std::vector<std::byte> packed(image::get_packed_bytes(data) + 1);
    image::pack(data, packed.data());
    image::DeepPixels pixels;
    for (const std::size_t bytes :
         {std::size_t{0}, std::size_t{15}, std::size_t{16}, packed.size() - 2, packed.size()})
        EXPECT_FALSE(image::unpack(packed.data(), bytes, spec, pixels)) << bytes;
    std::memset(packed.data(), 0xff, 16);
    EXPECT_FALSE(image::unpack(packed.data(), packed.size() - 1, spec, pixels));
}

TEST_F(DeepPixels, AreReadByTheOtherProcessAndByThisOne) {
    const std::string path = write_deep("deep.exr");
    image::ReaderProcess process;
    image::DeepPixels pixels;
    image::ImageReader(path, process).read_deep_part(0, pixels);
    expect_the_same(pixels);

    EnvGuard in_process("COLORIO_READ_IN_PROCESS");
    in_process.set("1");
    image::DeepPixels others;
    image::ImageReader(path, process).read_deep_part(0, others);
    expect_the_same(others);
}

TEST_F(DeepPixels, AreNotTakenForFlatOnesNorTheReverse) {
    image::ReaderProcess process;
    image::PixelBuffer flat;
    image::ImageReader deep_image(write_deep("deep.exr"), process);
    EXPECT_THAT(failure_of([&] { deep_image.read_part(0, flat); }), HasSubstr("it is a deep image"));
    image::DeepPixels deep;
    image::ImageReader flat_image(write_image("flat.exr", 4, 4), process);
    EXPECT_THAT(failure_of([&] { flat_image.read_deep_part(0, deep); }), HasSubstr("it is not a deep image"));
}

TEST_F(DeepPixels, OfATruncatedFileAreAnError) {
    const std::string path = write_deep("deep.exr");
    const std::string whole = folder.read("deep.exr");
    folder.write("deep.exr", whole.substr(0, whole.size() - 30));
    image::ReaderProcess process;
    image::DeepPixels pixels;
    EXPECT_THAT(failure_of([&] { image::ImageReader(path, process).read_deep_part(0, pixels); }),
                HasSubstr("cannot read '" + path + "'"));
}

} // namespace
