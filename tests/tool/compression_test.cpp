// Compression and quality of the written files.

#include <filesystem>

#include "tests/tool/images.h"
#include "tests/tool/native_image.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

class CompressionOptions : public ToolTest {
protected:
    CompressionOptions() {
        Image image = make_image(64, 64, 3, OIIO::TypeHalf, {});
        unsigned int state = 1;
        for (std::size_t i = 0; i < image.values.size(); ++i) {
            state = state * 1664525u + 1013904223u;
            image.values[i] = static_cast<float>(i / 48 % 16) / 16 + static_cast<float>(state >> 28) / 256;
        }
        write_image(path("in.exr"), image);
    }

    ToolRun convert(const std::string& output, std::vector<std::string> more) {
        more.insert(more.begin(),
                    {"convert", path("in.exr"), path(output), "--from", "linear", "--to", "sRGB"});
        return run(more);
    }

    std::uintmax_t get_size(const std::string& output, const std::vector<std::string>& options) {
        EXPECT_THAT(convert(output, options), Succeeds());
        return std::filesystem::file_size(path(output));
    }

    std::string get_method(const std::string& output) const {
        return read_image(path(output)).spec.get_string_attribute("compression");
    }

    void expect_refused(const std::string& output, const std::vector<std::string>& options,
                        const std::string& reason, const std::string& hint) {
        EXPECT_THAT(convert(output, options),
                    FailsWith(1, "colorio: error: cannot write '" + path(output) + "': " + reason + "\n" +
                                     (hint.empty() ? "" : "hint: " + hint + "\n")));
        EXPECT_EQ(count_files(), 1u);
    }
};

constexpr char EXR_METHODS[] =
    "valid compression methods: zip, none, rle, zips, piz, pxr24, b44, b44a, dwaa, dwab";
constexpr char EXR_QUALITIES[] = "valid qualities: zip 1 to 9, zips 1 to 9, dwaa 1 to 1000, dwab 1 to 1000";

constexpr const char* TIFF_METHODS = OIIO_VERSION_MAJOR < 3
                                         ? "valid compression methods: zip, none, lzw, packbits, jpeg"
                                         : "valid compression methods: zip, none, lzw, packbits";

TEST_F(CompressionOptions, OfDeepImagesAreFew) {
    write_deep(
        path("in.exr"),
        {make_deep_image(1, 1, {{"R", OIIO::TypeHalf}, {"G", OIIO::TypeHalf}, {"B", OIIO::TypeHalf}}, {2})});
    for (const char* method : {"none", "rle", "zips"})
        EXPECT_THAT(convert("out.exr", {"--compression", method}), Succeeds()) << method;
    EXPECT_THAT(
        convert("out.exr", {"--compression", "piz"}),
        FailsWith(1, testing::HasSubstr("deep images cannot have the compression 'piz'\nhint: compression "
                                        "methods of deep images: none, rle, zips\n")));
}

TEST_F(CompressionOptions, SelectAMethodOfTheFormat) {
    for (const char* method : {"zip", "none", "rle", "zips", "piz", "pxr24", "b44", "b44a", "dwaa", "dwab"}) {
        EXPECT_THAT(convert("out.exr", {"--compression", method}), Succeeds());
        EXPECT_EQ(get_method("out.exr"), method);
    }
    for (const char* method : {"zip", "none", "lzw", "packbits"}) {
        EXPECT_THAT(convert("out.tif", {"--compression", method}), Succeeds());
        EXPECT_EQ(get_method("out.tif"), method);
    }
    EXPECT_THAT(convert("out.tga", {"--compression", "rle"}), Succeeds());
    EXPECT_EQ(get_method("out.tga"), "rle");
}

TEST_F(CompressionOptions, SelectJpegInTiffWhereOpenImageIoWritesIt) {
    if (OIIO_VERSION_MAJOR < 3) {
        EXPECT_THAT(convert("out.tif", {"--compression", "jpeg", "-d", "uint8"}), Succeeds());
        EXPECT_EQ(get_method("out.tif"), "jpeg");
        const auto get_size_with = [&](const char* quality) {
            return get_size("out.tif", {"--compression", "jpeg", "-d", "uint8", "--quality", quality});
        };
        EXPECT_LT(get_size_with("20"), get_size_with("95"));
        std::filesystem::remove(path("out.tif"));
        expect_refused("out.tif", {"--compression", "jpeg", "-d", "uint16"},
                       "the compression 'jpeg' of tiff needs three channels of uint8",
                       "add -d uint8, or choose zip");
    } else {
        expect_refused("out.tif", {"--compression", "jpeg", "-d", "uint8"}, "tiff has no compression 'jpeg'",
                       TIFF_METHODS);
        expect_refused("out.tif", {"--quality", "1"}, "the compression 'zip' of tiff has no quality", "");
    }
}

TEST_F(CompressionOptions, SetTheQualityOfLossyMethods) {
    for (const char* output : {"out.jpg", "out.webp"})
        EXPECT_LT(get_size(output, {"--quality", "20"}), get_size(output, {"--quality", "95"})) << output;
    EXPECT_GT(get_size("out.exr", {"--compression", "dwaa", "--quality", "5"}),
              get_size("out.exr", {"--compression", "dwaa", "--quality", "300"}))
        << "the level of DWA: the more, the smaller";
}

TEST_F(CompressionOptions, SetTheLevelOfLosslessMethodsWithoutChangingPixels) {
    EXPECT_GT(get_size("a.png", {"--quality", "0"}), get_size("b.png", {"--quality", "9"}));
    EXPECT_EQ(read_image(path("a.png")).values, read_image(path("b.png")).values);
    if (OIIO_VERSION_MAJOR < 3) {
        EXPECT_GT(get_size("a.tif", {"--quality", "1"}), get_size("b.tif", {"--quality", "9"}));
        EXPECT_EQ(read_image(path("a.tif")).values, read_image(path("b.tif")).values);
    }
}

TEST_F(CompressionOptions, KeepTheMethodOfTheInputForAQuality) {
    ASSERT_THAT(convert("dwaa.exr", {"--compression", "dwaa"}), Succeeds());
    const auto again = [&](const char* quality) {
        EXPECT_THAT(run({"convert", path("dwaa.exr"), path("out.exr"), "--from", "sRGB", "--to", "linear",
                         "--quality", quality}),
                    Succeeds());
        EXPECT_EQ(get_method("out.exr"), "dwaa");
        return std::filesystem::file_size(path("out.exr"));
    };
    EXPECT_GT(again("5"), again("300"));
}

TEST_F(CompressionOptions, RefuseUnknownMethodsWithTheValidOnes) {
    expect_refused("out.exr", {"--compression", "lzw"}, "openexr has no compression 'lzw'", EXR_METHODS);
    expect_refused("out.tif", {"--compression", "piz"}, "tiff has no compression 'piz'", TIFF_METHODS);
    expect_refused("out.jpg", {"--compression", "none"}, "jpeg has no compression 'none'",
                   "valid compression methods: jpeg");
    expect_refused("out.dpx", {"--compression", "rle"}, "dpx has no choice of compression", "");
    expect_refused("out.bmp", {"--quality", "50"}, "bmp has no choice of compression", "");
}

TEST_F(CompressionOptions, RefuseInvalidQualitiesWithTheValidOnes) {
    expect_refused("out.exr", {"--compression", "piz", "--quality", "50"},
                   "the compression 'piz' of openexr has no quality", EXR_QUALITIES);
    expect_refused("out.exr", {"--compression", "zip", "--quality", "10"},
                   "invalid quality 10 of the compression 'zip'", EXR_QUALITIES);
    expect_refused("out.jpg", {"--quality", "101"}, "invalid quality 101 of the compression 'jpeg'",
                   "valid qualities: jpeg 1 to 100");
    EXPECT_THAT(convert("out.jpg", {"--quality", "high"}), FailsWith(2, HasSubstr("--quality")));
}

TEST_F(CompressionOptions, OfASequenceAreRefusedOnce) {
    for (const char* name : {"in.1.exr", "in.2.exr"})
        write_image(path(name), make_image(1, 1, 3, OIIO::TypeHalf, {0, 0, 0}));
    const auto convert_all = [&](const char* output, const char* option, const char* value) {
        return run({"convert", path("in.#.exr"), path(output), "--frames", "1-2", "--from", "linear", "--to",
                    "sRGB", option, value});
    };
    EXPECT_THAT(convert_all("out.#.exr", "--compression", "lzw"),
                FailsWith(1, "colorio: error: cannot write '" + path("out.#.exr") +
                                 "': openexr has no compression 'lzw'\nhint: " + EXR_METHODS + "\n"));
    EXPECT_THAT(
        convert_all("out.#.jpg", "--quality", "101"),
        FailsWith(1, "colorio: error: cannot write '" + path("out.#.jpg") +
                         "': invalid quality 101 of the compression 'jpeg'\nhint: valid qualities: jpeg 1 "
                         "to 100\n"));
}

} // namespace
