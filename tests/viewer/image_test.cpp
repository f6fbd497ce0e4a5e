#include "viewer/image.h"

#include <sys/stat.h>

#include <filesystem>

#include <OpenImageIO/deepdata.h>
#include <OpenImageIO/imageio.h>

#include "diagnostics/failure.h"
#include "tests/viewer/viewer_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ImageToShow : public ViewerTest {
protected:
    /// Writes channels of those names, the value of channel i being 0.25 (i + 1), and loads the file.
    viewer::Image load_channels(const std::vector<std::string>& names) {
        OIIO::ImageSpec spec(2, 1, static_cast<int>(names.size()), OIIO::TypeDesc::FLOAT);
        spec.channelnames = names;
        std::vector<float> values;
        for (int pixel = 0; pixel < 2; ++pixel)
            for (size_t i = 0; i < names.size(); ++i)
                values.push_back(0.25f * static_cast<float>(i + 1) + static_cast<float>(pixel));
        const std::string path = folder.file("channels.exr");
        const auto output = OIIO::ImageOutput::create(path);
        EXPECT_TRUE(output->open(path, spec) && output->write_image(OIIO::TypeDesc::FLOAT, values.data()) &&
                    output->close())
            << output->geterror();
        return viewer::load_image(path);
    }
    /// The message with which a file is refused.
    static std::string refusal_of(const std::string& path, int max_side = 16384) {
        try {
            viewer::load_image(path, max_side);
        } catch (const diagnostics::Failure& error) {
            return error.what();
        }
        return "it was read";
    }
    static std::vector<float> pixel(const viewer::Image& image, int x, int y) {
        return {image.at(x, y), image.at(x, y) + 4};
    }
};

TEST_F(ImageToShow, KeepsTheFloatsOfTheFile) {
    const std::string path = folder.file("floats.exr");
    write_image(path, 3, 2, [](int x, int y) { return Rgb{x - 0.1f, 10.0f * y, -4096}; });
    const viewer::Image image = viewer::load_image(path);
    EXPECT_EQ(image.width, 3);
    EXPECT_EQ(image.height, 2);
    EXPECT_THAT(pixel(image, 2, 0), ElementsAre(1.9f, 0, -4096, 1));
    EXPECT_THAT(pixel(image, 0, 1), ElementsAre(-0.1f, 10, -4096, 1));
}

TEST_F(ImageToShow, FindsColorsByTheNamesOfTheirChannels) {
    const viewer::Image image = load_channels({"A", "B", "G", "R", "Z"});
    EXPECT_THAT(pixel(image, 1, 0), ElementsAre(2, 1.75f, 1.5f, 1.25f));
    EXPECT_EQ(image.channels, "R, G, B, A");
}

TEST_F(ImageToShow, ShowsASingleChannelAsGray) {
    const viewer::Image image = load_channels({"Y"});
    EXPECT_THAT(pixel(image, 0, 0), ElementsAre(0.25f, 0.25f, 0.25f, 1));
    EXPECT_EQ(image.channels, "Y");
}

TEST_F(ImageToShow, ShowsTheFirstChannelsWhenNoneIsAColor) {
    EXPECT_THAT(pixel(load_channels({"N.X", "N.Y", "N.Z"}), 0, 0), ElementsAre(0.25f, 0.5f, 0.75f, 1));
    EXPECT_THAT(pixel(load_channels({"depth"}), 0, 0), ElementsAre(0.25f, 0.25f, 0.25f, 1));
}

TEST_F(ImageToShow, ShowsColorBeforeDataAndDataByItsNames) {
    EXPECT_EQ(load_channels({"diffuse.B", "diffuse.G", "diffuse.R", "N.B", "N.G", "N.R"}).channels,
              "diffuse.R, diffuse.G, diffuse.B");
    EXPECT_EQ(load_channels({"N.B", "N.G", "N.R", "id"}).channels, "N.R, N.G, N.B");
}

TEST_F(ImageToShow, ThatIsDeepIsRefused) {
    const std::string path = folder.file("deep.exr");
    OIIO::ImageSpec spec(2, 2, 2, OIIO::TypeDesc::FLOAT);
    spec.channelnames = {"A", "Z"};
    spec.deep = true;
    const auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output->open(path, spec) && output->write_deep_image(OIIO::DeepData(spec)) &&
                output->close());
    EXPECT_THAT(refusal_of(path), HasSubstr("it is a deep image; flatten it first"));
}

TEST_F(ImageToShow, ThatIsTooLargeIsRefusedByItsHeader) {
    const std::string path = folder.file("cut.exr");
    write_image(path, 64, 48, [](int x, int y) { return Rgb{0.1f * x, 0.2f * y, 0.3f * (x ^ y)}; });
    std::filesystem::resize_file(path, std::filesystem::file_size(path) - 100); // its pixels cannot be read
    EXPECT_THAT(refusal_of(path), HasSubstr("cannot read '" + path + "': "));
    EXPECT_EQ(refusal_of(path, 63),
              "cannot show '" + path +
                  "': 64 x 48 pixels exceed the limit of the OpenGL driver (63 per side)");
    EXPECT_THAT(refusal_of(path, 64), HasSubstr("cannot read"));
    try {
        viewer::check_side(path, 48, 64, 63);
        FAIL() << "it is too high";
    } catch (const diagnostics::Failure& failure) {
        EXPECT_EQ(failure.get_worst().code, diagnostics::Code::GPU_LIMIT);
        EXPECT_EQ(failure.get_worst().file, path);
    }
}

TEST_F(ImageToShow, ThatCannotBeReadSaysWhichAndWhy) {
    ASSERT_EQ(mkfifo(folder.file("pipe.exr").c_str(), 0600), 0);
    EXPECT_THAT(refusal_of(folder.write("broken.exr", "no image")), HasSubstr("broken.exr"));
    EXPECT_THAT(refusal_of(folder.write("empty.exr", "")), HasSubstr("empty.exr"));
    EXPECT_THAT(refusal_of(folder.file("none.exr")), HasSubstr("none.exr': no such file"));
    EXPECT_THAT(refusal_of(folder.get_path()), HasSubstr("it is a folder"));
    EXPECT_THAT(refusal_of(folder.file("pipe.exr")), HasSubstr("it exists and is not a regular file"));
}

} // namespace
