#include "image/deep_size.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include "image/truncation.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr int WIDTH = 40, HEIGHT = 36;
/// A half, a float and an unsigned integer.
constexpr std::uint64_t SAMPLE_BYTES = 2 + 4 + 4;

/// How a file is written.
struct Layout {
    const char* name;
    const char* compression;
    int tile = 0;
    int parts = 1;
};

constexpr Layout LAYOUTS[] = {
    {"plain.exr", "none"},     {"lines.exr", "zips"},       {"runs.exr", "rle"},
    {"tiles.exr", "zips", 16}, {"parts.exr", "zips", 0, 3}, {"tiled_parts.exr", "none", 16, 2},
};

class DeepSizes : public testing::Test {
protected:
    static OIIO::ImageSpec make_spec(const Layout& layout, int part) {
        OIIO::ImageSpec spec(WIDTH, HEIGHT, 3, OIIO::TypeFloat);
        spec.channelnames = {"A", "Z", "id"};
        spec.channelformats = {OIIO::TypeHalf, OIIO::TypeFloat, OIIO::TypeUInt32};
        spec.deep = true;
        spec.tile_width = spec.tile_height = layout.tile;
        spec.attribute("compression", layout.compression);
        spec.attribute("oiio:subimagename", "part" + std::to_string(part));
        return spec;
    }

    /// Part `part` has `part` + 1 samples in every third pixel, none in the others.
    static OIIO::DeepData make_pixels(const OIIO::ImageSpec& spec, int part) {
        OIIO::DeepData pixels(spec);
        std::minstd_rand random(1);
        for (std::int64_t pixel = 0; pixel < pixels.pixels(); pixel += 3) {
            pixels.set_samples(pixel, part + 1);
            for (int sample = 0; sample <= part; ++sample)
                pixels.set_deep_value(pixel, 1, sample, static_cast<float>(random() % 1000));
        }
        return pixels;
    }

    std::string write(const Layout& layout) {
        const std::string path = folder.file(layout.name);
        std::vector<OIIO::ImageSpec> specs;
        for (int part = 0; part < layout.parts; ++part)
            specs.push_back(make_spec(layout, part));
        const auto output = OIIO::ImageOutput::create(path);
        for (int part = 0; part < layout.parts; ++part) {
            const OIIO::ImageSpec& spec = specs[static_cast<std::size_t>(part)];
            const bool opened = part == 0 ? output->open(path, layout.parts, specs.data())
                                          : output->open(path, spec, OIIO::ImageOutput::AppendSubimage);
            EXPECT_TRUE(opened && output->write_deep_image(make_pixels(spec, part))) << output->geterror();
        }
        EXPECT_TRUE(output->close());
        return path;
    }

    TempDir folder;
};

TEST_F(DeepSizes, AreThoseOfAllSamples) {
    for (const Layout& layout : LAYOUTS) {
        const std::string path = write(layout);
        for (int part = 0; part < layout.parts; ++part)
            EXPECT_EQ(image::get_deep_bytes(path, static_cast<std::size_t>(part)),
                      WIDTH * HEIGHT / 3 * static_cast<std::uint64_t>(part + 1) * SAMPLE_BYTES)
                << layout.name << " " << part;
        EXPECT_EQ(image::get_deep_bytes(path, static_cast<std::size_t>(layout.parts)), 0u);
    }
}

TEST_F(DeepSizes, AreUnknownWithoutAllChunksAndInOtherFiles) {
    write(LAYOUTS[1]);
    const std::string whole = folder.read(LAYOUTS[1].name);
    for (std::size_t size = 0; size < whole.size() / 2; size += 97)
        EXPECT_EQ(image::get_deep_bytes(folder.write("cut.exr", whole.substr(0, size)), 0), 0u) << size;
    EXPECT_EQ(image::get_deep_bytes(folder.file("none.exr"), 0), 0u);
    EXPECT_EQ(image::get_deep_bytes(folder.write("text.exr", std::string(5000, 'v')), 0), 0u);

    OIIO::ImageSpec flat(4, 4, 3, OIIO::TypeHalf);
    const auto output = OIIO::ImageOutput::create(folder.file("flat.exr"));
    ASSERT_TRUE(output->open(folder.file("flat.exr"), flat) &&
                output->write_image(OIIO::TypeFloat, std::vector<float>(48).data()) && output->close());
    EXPECT_EQ(image::get_deep_bytes(folder.file("flat.exr"), 0), 0u);
}

TEST_F(DeepSizes, SurviveAnyBytes) {
    std::minstd_rand random(3);
    for (const Layout& layout : LAYOUTS) {
        write(layout);
        const std::string whole = folder.read(layout.name);
        for (int i = 0; i < 200; ++i) {
            std::string damaged = whole;
            for (int place = 0; place < 8; ++place)
                damaged[random() % std::min<std::size_t>(whole.size(), 2000)] = static_cast<char>(random());
            image::get_deep_bytes(folder.write("damaged.exr", damaged), 0); // must return
        }
    }
}

TEST_F(DeepSizes, DoNotHideTruncations) {
    for (const Layout& layout : LAYOUTS) {
        EXPECT_FALSE(image::is_truncated(write(layout), "openexr")) << layout.name;
        const std::string whole = folder.read(layout.name);
        for (std::size_t missing = 1; missing < whole.size(); missing += 131)
            EXPECT_TRUE(image::is_truncated(folder.write("cut.exr", whole.substr(0, whole.size() - missing)),
                                            "openexr"))
                << layout.name << " " << missing;
    }
}

} // namespace
