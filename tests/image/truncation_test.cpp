#include "image/truncation.h"

#include <random>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

/// How a file is written; every variant of a layout that the check follows.
struct Layout {
    const char* name;
    const char* format;
    int tile = 0;
    int parts = 1;
    const char* compression = "";
};

constexpr Layout LAYOUTS[] = {
    {"lines.exr", "openexr", 0, 1, "none"},
    {"blocks.exr", "openexr", 0, 1, "zip"},
    {"tiles.exr", "openexr", 16, 1, "zip"},
    {"parts.exr", "openexr", 0, 3, "piz"},
    {"tiled_parts.exr", "openexr", 16, 2, "zip"},
    {"a.png", "png"},
    {"strips.tif", "tiff", 0, 1, "none"},
    {"zip.tif", "tiff", 0, 1, "zip"},
    {"tiles.tif", "tiff", 16, 1, "lzw"},
    {"parts.tif", "tiff", 0, 2, "none"},
    {"a.jpg", "jpeg"},
    {"a.dpx", "dpx"},
};

class Truncations : public testing::Test {
protected:
    /// Noise, so that compressed files have some length. Returns the path.
    std::string write(const Layout& layout) {
        const std::string path = folder.file(layout.name);
        OIIO::ImageSpec spec(50, 40, 3, OIIO::TypeUInt8);
        if (std::string(layout.format) == "openexr")
            spec.set_format(OIIO::TypeHalf);
        spec.tile_width = spec.tile_height = layout.tile;
        if (*layout.compression != '\0')
            spec.attribute("compression", layout.compression);
        std::vector<OIIO::ImageSpec> specs(static_cast<std::size_t>(layout.parts), spec);
        for (std::size_t i = 0; i < specs.size(); ++i)
            specs[i].attribute("oiio:subimagename", "part" + std::to_string(i));
        std::vector<float> pixels(50 * 40 * 3);
        std::minstd_rand random(1);
        for (float& value : pixels)
            value = static_cast<float>(random() % 1000) / 1000;
        const auto output = OIIO::ImageOutput::create(path);
        for (std::size_t i = 0; i < specs.size(); ++i) {
            const bool announced = specs.size() > 1 && !output->supports("appendsubimage");
            const bool opened =
                i == 0 && announced
                    ? output->open(path, layout.parts, specs.data())
                    : output->open(path, specs[i],
                                   i == 0 ? OIIO::ImageOutput::Create : OIIO::ImageOutput::AppendSubimage);
            EXPECT_TRUE(opened && output->write_image(OIIO::TypeFloat, pixels.data())) << output->geterror();
        }
        EXPECT_TRUE(output->close());
        return path;
    }

    TempDir folder;
};

TEST_F(Truncations, AreNotFoundInWholeFiles) {
    for (const Layout& layout : LAYOUTS)
        EXPECT_FALSE(image::is_truncated(write(layout), layout.format)) << layout.name;
}

TEST_F(Truncations, AreFoundWhereverTheFileIsCut) {
    constexpr std::size_t STEP = 131;
    for (const Layout& layout : LAYOUTS) {
        write(layout);
        const std::string whole = folder.read(layout.name);
        for (std::size_t size = 0; size < whole.size(); size += size + STEP < whole.size() ? STEP : 1) {
            folder.write("cut", whole.substr(0, size));
            ASSERT_TRUE(image::is_truncated(folder.file("cut"), layout.format))
                << layout.name << ", " << size << " of " << whole.size() << " bytes";
        }
    }
}

TEST_F(Truncations, AreWhatOtherBytesLookLike) {
    std::minstd_rand random(2);
    for (const Layout& layout : LAYOUTS) {
        std::string bytes = folder.read((write(layout), layout.name));
        for (int round = 0; round < 200; ++round) { // must neither crash nor hang
            bytes[random() % std::min<std::size_t>(bytes.size(), 600)] = static_cast<char>(random());
            folder.write("other", bytes);
            image::is_truncated(folder.file("other"), layout.format);
        }
        folder.write("noise", "neither of these formats, nor as long as one");
        EXPECT_TRUE(image::is_truncated(folder.file("noise"), layout.format)) << layout.name;
    }
    EXPECT_TRUE(image::is_truncated(folder.file("none"), "png"));
    EXPECT_TRUE(image::is_truncated(folder.get_path(), "png"));
}

} // namespace
