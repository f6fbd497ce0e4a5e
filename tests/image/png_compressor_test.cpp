#include "image/png_compressor.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include "image/format_abilities.h"
#include "image/image_writer.h"
#include "image/pixel_layout.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr int WIDTH = 700, HEIGHT = 500, CHANNELS = 3;

using Pixels = std::vector<std::uint16_t>;

/// Every channel of every pixel is `value(x, y, channel)`.
template <class Value>
Pixels make_pixels(const Value& value) {
    Pixels pixels;
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x)
            for (int channel = 0; channel < CHANNELS; ++channel)
                pixels.push_back(static_cast<std::uint16_t>(value(x, y, channel)));
    return pixels;
}

Pixels make_noise() {
    std::mt19937 random(1);
    return make_pixels([&](int, int, int) { return random() & 0xffff; });
}

Pixels make_gradient() {
    return make_pixels([](int x, int y, int channel) { return 60 * x + 40 * y + 1000 * channel; });
}

/// Grain above, one color below: the parts of the file need different strategies.
Pixels make_halves() {
    std::mt19937 random(2);
    return make_pixels([&](int x, int y, int) {
        return y < HEIGHT / 2 ? random() & 0xffff : static_cast<unsigned>(x % 37) * 900;
    });
}

/// As OpenImageIO writes it by itself, with a level and strategy of zlib.
void write_plainly(const std::string& path, const Pixels& pixels, int level) {
    OIIO::ImageSpec spec(WIDTH, HEIGHT, CHANNELS, OIIO::TypeUInt16);
    spec.attribute("png:compressionLevel", level);
    const auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output && output->open(path, spec) && output->write_image(OIIO::TypeUInt16, pixels.data()) &&
                output->close());
}

std::string read_bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Bytes : public image::PngCompressor::Sink {
public:
    void take(const char* bytes, std::size_t size) noexcept override { content.append(bytes, size); }

    std::string content;
};

/// Passes `png` in pieces of random sizes up to `most`.
std::string compress(const std::string& png, std::size_t most) {
    Bytes sink;
    image::PngCompressor compressor(sink);
    std::mt19937 random(3);
    for (std::size_t done = 0; done < png.size();) {
        const std::size_t size = std::min(png.size() - done, 1 + random() % most);
        compressor.write(png.data() + done, size);
        done += size;
    }
    EXPECT_FALSE(compressor.has_failed());
    return sink.content;
}

/// libpng checks the checksums of all that is read.
void expect_pixels(const std::string& path, const Pixels& pixels) {
    Pixels read(pixels.size());
    const auto input = OIIO::ImageInput::open(path);
    ASSERT_TRUE(input) << OIIO::geterror();
    ASSERT_TRUE(input->read_image(0, 0, 0, CHANNELS, OIIO::TypeUInt16, read.data())) << input->geterror();
    EXPECT_EQ(read, pixels);
}

/// Types of the chunks, in order; a run of one type once.
std::vector<std::string> list_chunks(const std::string& png) {
    std::vector<std::string> types;
    for (std::size_t at = 8; at + 8 <= png.size();) {
        std::size_t length = 0;
        for (std::size_t i = 0; i < 4; ++i)
            length = length << 8 | static_cast<unsigned char>(png[at + i]);
        const std::string type = png.substr(at + 4, 4);
        if (types.empty() || types.back() != type)
            types.push_back(type);
        at += 12 + length;
    }
    return types;
}

struct Content {
    const char* name;
    Pixels (*make)();
};

class PngCompressorOf : public testing::TestWithParam<Content> {
protected:
    TempDir dir;
};

INSTANTIATE_TEST_SUITE_P(Contents, PngCompressorOf,
                         testing::Values(Content{"Noise", make_noise}, Content{"Gradient", make_gradient},
                                         Content{"Halves", make_halves}),
                         [](const auto& info) { return info.param.name; });

TEST_P(PngCompressorOf, KeepsAllPixelsAndChunks) {
    const Pixels pixels = GetParam().make();
    write_plainly(dir.file("stored.png"), pixels, 0);
    const std::string stored = read_bytes(dir.file("stored.png"));
    for (const std::size_t most : {std::size_t{7}, std::size_t{100000}, stored.size()}) {
        const std::string compressed = compress(stored, most);
        std::ofstream(dir.file("compressed.png"), std::ios::binary) << compressed;
        expect_pixels(dir.file("compressed.png"), pixels);
        EXPECT_EQ(list_chunks(compressed), list_chunks(stored));
    }
}

TEST_P(PngCompressorOf, IsAboutAsSmallAsWithTheDefaultsOfZlib) {
    const Pixels pixels = GetParam().make();
    write_plainly(dir.file("default.png"), pixels, 6);
    OIIO::ImageSpec spec(WIDTH, HEIGHT, CHANNELS, OIIO::TypeUInt16);
    const std::string path = dir.file("written.png");
    image::ImageWriter writer(path);
    writer.open_part({{0, 0, spec}}, 0, image::get_format_abilities(path));
    image::PixelBuffer buffer;
    buffer.resize(pixels.size() * sizeof(pixels[0]));
    std::memcpy(buffer.data(), pixels.data(), buffer.size());
    writer.write_part(buffer);
    writer.close();
    expect_pixels(dir.file("written.png"), pixels);
    EXPECT_LE(std::filesystem::file_size(dir.file("written.png")),
              1.03 * static_cast<double>(std::filesystem::file_size(dir.file("default.png"))));
}

TEST(PngCompressor, SaysThatABrokenStreamWasNotCompressed) {
    TempDir dir;
    write_plainly(dir.file("stored.png"), make_gradient(), 0);
    const std::string stored = read_bytes(dir.file("stored.png"));
    std::string damaged = stored;
    damaged[damaged.find("IDAT") + 5] ^= 0x70; // the second byte of the zlib header
    for (const std::string& png : {damaged, stored.substr(0, stored.size() / 2)}) {
        Bytes sink;
        image::PngCompressor compressor(sink);
        compressor.write(png.data(), png.size());
        EXPECT_TRUE(compressor.has_failed());
    }
}

} // namespace
