// Deep images are converted sample by sample.

#include "tests/tool/images.h"
#include "tests/workflow/layer_fixture.h"

namespace {

using OIIO::TypeFloat;
using OIIO::TypeHalf;
using OIIO::TypeUInt32;
using testing::AllOf;
using testing::HasSubstr;

constexpr double TOLERANCE = 1e-6;
const std::vector<unsigned int> COUNTS = {3, 0, 1, 2, 0, 5};

class DeepImages : public LayerTest {
protected:
    /// 3 x 2 pixels. The color of a sample depends on its position, alpha is 0 for the first sample of all.
    static DeepImage make_image(OIIO::TypeDesc color_type = TypeFloat) {
        DeepImage image = make_deep_image(3, 2,
                                          {{"R", color_type},
                                           {"G", color_type},
                                           {"B", color_type},
                                           {"A", color_type},
                                           {"Z", TypeFloat},
                                           {"ZBack", TypeFloat},
                                           {"id", TypeUInt32}},
                                          COUNTS);
        image.spec.x = -4;
        image.spec.full_width = 20;
        int place = 0;
        for_samples(image, [&](int pixel, int sample) {
            const float step = static_cast<float>(place++);
            for (int channel = 0; channel < 3; ++channel)
                image.pixels.set_deep_value(pixel, channel, sample, 0.0625f * step);
            image.pixels.set_deep_value(pixel, 3, sample, 0.125f * step);
            image.pixels.set_deep_value(pixel, 4, sample, 1.1f + step);
            image.pixels.set_deep_value(pixel, 5, sample, 1.7f + step);
            image.pixels.set_deep_value(pixel, 6, sample, 0xF0000000u + static_cast<unsigned int>(place));
        });
        return image;
    }

    template <class Visit>
    static void for_samples(const DeepImage& image, const Visit& visit) {
        for (int pixel = 0; pixel < image.pixels.pixels(); ++pixel)
            for (int sample = 0; sample < image.pixels.samples(pixel); ++sample)
                visit(pixel, sample);
    }

    /// The bits of the channels from `first` on of all samples.
    static std::vector<std::byte> get_bits(const DeepImage& image, int first) {
        std::vector<std::byte> bits;
        for_samples(image, [&](int pixel, int sample) {
            for (int channel = first; channel < image.pixels.channels(); ++channel) {
                const auto* begin =
                    static_cast<const std::byte*>(image.pixels.data_ptr(pixel, channel, sample));
                bits.insert(bits.end(), begin, begin + image.pixels.channelsize(channel));
            }
        });
        return bits;
    }

    static std::vector<unsigned int> get_counts(const DeepImage& image) {
        const auto counts = image.pixels.all_samples();
        return {counts.begin(), counts.end()};
    }

    static void expect_squares(const DeepImage& before, const DeepImage& after, double tolerance) {
        for_samples(before, [&](int pixel, int sample) {
            const double alpha = before.pixels.deep_value(pixel, 3, sample);
            for (int channel = 0; channel < 3; ++channel) {
                const double color = before.pixels.deep_value(pixel, channel, sample);
                const double expected = alpha == 0 ? square(color) : square(color / alpha) * alpha;
                EXPECT_NEAR(after.pixels.deep_value(pixel, channel, sample), expected,
                            tolerance * std::max(1.0, expected))
                    << pixel << " " << sample;
            }
        });
    }
};

TEST_F(DeepImages, AreConvertedSampleBySample) {
    const DeepImage before = make_image();
    write_deep(folder.file("in.exr"), {before});
    const workflow::ImageReport report = convert();
    const DeepImage after = read_deep(folder.file("out.exr"));
    ASSERT_TRUE(after.spec.deep);
    EXPECT_EQ(get_counts(after), COUNTS);
    EXPECT_EQ(after.spec.channelnames, before.spec.channelnames);
    EXPECT_EQ(after.spec.channelformats, before.spec.channelformats);
    EXPECT_EQ(after.spec.roi(), before.spec.roi());
    EXPECT_EQ(after.spec.roi_full(), before.spec.roi_full());
    expect_squares(before, after, TOLERANCE);
    EXPECT_EQ(get_bits(after, 3), get_bits(before, 3)) << "alpha, depths and ids";
    EXPECT_EQ(report.pixels, 6u);
    EXPECT_EQ(workflow::describe(report.layers), "converted rgba; left Z, ZBack, id (data)");
}

TEST_F(DeepImages, KeepTheTypesOfTheirChannels) {
    const DeepImage before = make_image(TypeHalf);
    write_deep(folder.file("in.exr"), {before});
    convert();
    const DeepImage after = read_deep(folder.file("out.exr"));
    EXPECT_EQ(after.spec.channelformats, before.spec.channelformats);
    expect_squares(before, after, 1.0 / 2048);
    EXPECT_EQ(get_bits(after, 3), get_bits(before, 3));
}

TEST_F(DeepImages, GetTheTypeAskedForInTheirColorsOnly) {
    const DeepImage before = make_image(TypeHalf);
    write_deep(folder.file("in.exr"), {before});
    workflow::ImageOptions options;
    options.depth = "float";
    convert("squared", options);
    const DeepImage after = read_deep(folder.file("out.exr"));
    EXPECT_EQ(after.spec.channelformat(0), TypeFloat);
    EXPECT_EQ(after.spec.channelformat(6), TypeUInt32);
    expect_squares(before, after, TOLERANCE);
    EXPECT_EQ(get_bits(after, 4), get_bits(before, 4));
}

TEST_F(DeepImages, WithoutSamplesStaySo) {
    const DeepImage before = make_deep_image(
        3, 2, {{"R", TypeHalf}, {"G", TypeHalf}, {"B", TypeHalf}, {"A", TypeHalf}, {"Z", TypeFloat}},
        std::vector<unsigned int>(6, 0));
    write_deep(folder.file("in.exr"), {before});
    convert();
    EXPECT_EQ(get_counts(read_deep(folder.file("out.exr"))), std::vector<unsigned int>(6, 0));
}

TEST_F(DeepImages, OfManySamplesAreConvertedWhole) {
    std::vector<unsigned int> counts(100 * 90);
    for (std::size_t i = 0; i < counts.size(); ++i)
        counts[i] = static_cast<unsigned int>(i * 7 % 11);
    DeepImage before = make_deep_image(
        100, 90, {{"R", TypeFloat}, {"G", TypeFloat}, {"B", TypeFloat}, {"Z", TypeFloat}}, counts);
    for_samples(before, [&](int pixel, int sample) {
        for (int channel = 0; channel < 4; ++channel)
            before.pixels.set_deep_value(pixel, channel, sample, static_cast<float>(pixel % 1000) * 0.001f);
    });
    write_deep(folder.file("in.exr"), {before});
    convert();
    const DeepImage after = read_deep(folder.file("out.exr"));
    ASSERT_EQ(get_counts(after), counts);
    for_samples(before, [&](int pixel, int sample) {
        ASSERT_NEAR(after.pixels.deep_value(pixel, 1, sample),
                    square(before.pixels.deep_value(pixel, 1, sample)), TOLERANCE);
    });
    EXPECT_EQ(get_bits(after, 3), get_bits(before, 3));
}

TEST_F(DeepImages, OfSeveralPartsFollowTheRuleOfLayers) {
    DeepImage color = make_image();
    DeepImage data = make_image();
    color.spec.attribute("oiio:subimagename", "beauty");
    data.spec.attribute("oiio:subimagename", "normals");
    write_deep(folder.file("in.exr"), {color, data});
    const workflow::ImageReport report = convert();
    expect_squares(color, read_deep(folder.file("out.exr"), 0), TOLERANCE);
    EXPECT_EQ(get_bits(read_deep(folder.file("out.exr"), 1), 0), get_bits(data, 0));
    EXPECT_THAT(report.layers.converted, testing::ElementsAre("beauty"));
}

TEST_F(DeepImages, InTilesStayInTiles) {
    DeepImage before = make_image();
    before.spec.tile_width = before.spec.tile_height = 16;
    write_deep(folder.file("in.exr"), {before});
    convert();
    const DeepImage after = read_deep(folder.file("out.exr"));
    EXPECT_EQ(after.spec.tile_width, 16);
    EXPECT_EQ(get_counts(after), COUNTS);
    expect_squares(before, after, TOLERANCE);
}

TEST_F(DeepImages, AreReadInThisProcessTheSame) {
    EnvGuard in_process("COLORIO_READ_IN_PROCESS");
    in_process.set("1");
    const DeepImage before = make_image();
    write_deep(folder.file("in.exr"), {before});
    convert();
    const DeepImage after = read_deep(folder.file("out.exr"));
    expect_squares(before, after, TOLERANCE);
    EXPECT_EQ(get_bits(after, 3), get_bits(before, 3));
}

TEST_F(DeepImages, AreRefusedByFormatsWithoutThem) {
    write_deep(folder.file("in.exr"), {make_image()});
    EXPECT_THAT(failure_of([&] { convert("squared", {}, "out.tif"); }).message,
                AllOf(HasSubstr("tiff does not support deep images"), HasSubstr("flatten")));
    EXPECT_FALSE(folder.exists("out.tif"));
}

TEST_F(DeepImages, OfDataAloneAreRefused) {
    write_deep(folder.file("in.exr"), {make_deep_image(3, 2, {{"A", TypeHalf}, {"Z", TypeFloat}}, COUNTS)});
    EXPECT_THAT(failure_of([&] { convert(); }).message,
                HasSubstr("no color channels to convert: A, Z (data)"));
}

} // namespace
