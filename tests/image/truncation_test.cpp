#include "image/truncation.h"

#include <random>
#include <string>
#include <utility>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include "image/written_file.h"
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

/// An unsigned number of a little-endian file.
std::size_t get_number(const std::string& bytes, std::size_t position, std::size_t width) {
    std::size_t value = 0;
    for (std::size_t i = width; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[position + i]);
    return value;
}

/// Sets the positions (273 or 324) or lengths (279 or 325) of the strips or tiles of the first directory of a
/// little-endian TIFF to 0: what a directory says that was not written again after the pixels.
void drop_places(std::string& tiff, std::size_t strip_tag, std::size_t tile_tag) {
    constexpr std::size_t ENTRY_BYTES = 12, LONG = 4;
    const std::size_t directory = get_number(tiff, 4, 4);
    for (std::size_t i = 0; i < get_number(tiff, directory, 2); ++i) {
        const std::size_t entry = directory + 2 + i * ENTRY_BYTES;
        const std::size_t tag = get_number(tiff, entry, 2);
        if (tag != strip_tag && tag != tile_tag)
            continue;
        const std::size_t width = get_number(tiff, entry + 2, 2) == LONG ? 4 : 2;
        const std::size_t length = get_number(tiff, entry + 4, 4) * width;
        tiff.replace(length > 4 ? get_number(tiff, entry + 8, 4) : entry + 8, length, length, '\0');
        return;
    }
    FAIL() << "no places";
}

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

TEST_F(Truncations, AreTiffDirectoriesThatWereNotWrittenAgainAfterThePixels) {
    for (const Layout& layout : LAYOUTS) {
        if (std::string(layout.format) != "tiff")
            continue;
        const std::string path = write(layout);
        const auto parts = static_cast<std::size_t>(layout.parts);
        EXPECT_EQ(image::find_damage(path, parts), "") << layout.name;
        const std::string whole = folder.read(layout.name);
        for (const auto& [strip_tag, tile_tag] : {std::pair(273, 324), std::pair(279, 325)}) {
            std::string damaged = whole;
            drop_places(damaged, static_cast<std::size_t>(strip_tag), static_cast<std::size_t>(tile_tag));
            folder.write(layout.name, damaged);
            EXPECT_TRUE(image::is_truncated(path, "tiff")) << layout.name;
            EXPECT_NE(image::find_damage(path, parts), "") << layout.name;
        }
    }
}

TEST_F(Truncations, LeaveTiffAndDpxFilesWithoutPixels) {
    for (const Layout& layout : LAYOUTS) {
        const std::string path = write(layout);
        EXPECT_FALSE(image::lacks_pixels(path, layout.format)) << layout.name;
        const std::string format = layout.format;
        if (format != "tiff" && format != "dpx")
            continue;
        const std::string whole = folder.read(layout.name);
        folder.write("cut", whole.substr(0, whole.size() / 2));
        EXPECT_TRUE(image::lacks_pixels(folder.file("cut"), format)) << layout.name;
    }
}

TEST_F(Truncations, AreUncompressedTiffStripsShorterThanTheirPixels) {
    const Layout layout = {"short.tif", "tiff", 0, 1, "none"};
    std::string image = (write(layout), folder.read(layout.name));
    const std::size_t width = image.find(std::string("\0\1\3\0\1\0\0\0\x32\0", 10));
    ASSERT_NE(width, std::string::npos) << "the directory entry of the width, 50";
    EXPECT_FALSE(image::lacks_pixels(folder.file(layout.name), "tiff"));
    image[width + 8] = 51;
    folder.write(layout.name, image);
    EXPECT_TRUE(image::lacks_pixels(folder.file(layout.name), "tiff"));
}

TEST_F(Truncations, AreNotSeenInSparseTiffFiles) {
    const std::string path = write(LAYOUTS[6]);
    std::string sparse = folder.read(LAYOUTS[6].name);
    drop_places(sparse, 273, 324);
    folder.write("sparse.tif", sparse);
    EXPECT_FALSE(image::lacks_pixels(folder.file("sparse.tif"), "tiff"));
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
