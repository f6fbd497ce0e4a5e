#include "workflow/memory_image.h"

#include <cstring>
#include <numeric>
#include <vector>

#include "tests/workflow/workflow_fixture.h"

namespace {

using diagnostics::Code;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using workflow::MemoryImage;

class MemoryImages : public WorkflowTest {
protected:
    template <class Value>
    static MemoryImage make_image(OIIO::ImageSpec spec, const std::vector<Value>& values) {
        MemoryImage image{std::move(spec), "", {}};
        image.pixels.resize(values.size() * sizeof(Value));
        std::memcpy(image.pixels.data(), values.data(), image.pixels.size());
        return image;
    }

    template <class Value>
    static std::vector<Value> get_values(const MemoryImage& image) {
        std::vector<Value> values(image.pixels.size() / sizeof(Value));
        std::memcpy(values.data(), image.pixels.data(), image.pixels.size());
        return values;
    }

    MemoryImage read(const std::string& name, unsigned int part = 0) {
        return workflow::read_image(folder.file(name), part, reader);
    }

    image::ReaderProcess reader;
};

TEST_F(MemoryImages, KeepTheirPixelsAndMetadataInAFile) {
    OIIO::ImageSpec spec(3, 2, 4, OIIO::TypeFloat);
    spec.attribute("shot", "sq010");
    spec.attribute("take", 7);
    std::vector<float> values(24);
    std::iota(values.begin(), values.end(), -3.5f);
    image::OutputOptions options;
    options.keeps_space = true;
    EXPECT_THAT(write_image(make_image(spec, values), folder.file("a.exr"), options), IsEmpty());
    const MemoryImage back = read("a.exr");
    EXPECT_EQ(back.format, "openexr");
    EXPECT_EQ(back.spec.format, OIIO::TypeFloat);
    EXPECT_EQ(back.spec.get_string_attribute("shot"), "sq010");
    EXPECT_EQ(back.spec.get_int_attribute("take"), 7);
    EXPECT_EQ(get_values<float>(back), values)
        << "colors that alpha was not divided from and multiplied with";
}

TEST_F(MemoryImages, AreWrittenInTheDepthThatIsAskedFor) {
    image::OutputOptions options;
    options.depth = image::parse_depth("uint8");
    const MemoryImage gray =
        make_image<float>(OIIO::ImageSpec(2, 1, 3, OIIO::TypeFloat), {0, 0.5f, 1, 2, -1, 0.2f});
    write_image(gray, folder.file("a.png"), options);
    EXPECT_THAT(get_values<unsigned char>(read("a.png")), ElementsAre(0, 128, 255, 255, 0, 51));
    options.depth = image::parse_depth("half");
    EXPECT_EQ(failure_of([&] { write_image(gray, folder.file("b.png"), options); }).code,
              Code::IMAGE_UNSUPPORTED);
    EXPECT_FALSE(folder.exists("b.png"));
}

TEST_F(MemoryImages, OfChannelsOfDifferentTypesAreFloats) {
    OIIO::ImageSpec spec(1, 1, 4, OIIO::TypeHalf);
    spec.channelnames = {"R", "G", "B", "Z"};
    spec.channelformats = {OIIO::TypeHalf, OIIO::TypeHalf, OIIO::TypeHalf, OIIO::TypeFloat};
    const auto output = OIIO::ImageOutput::create(folder.file("mixed.exr"));
    std::vector<std::byte> bytes(10);
    const std::uint16_t halfs[] = {0x3c00, 0x3800, 0x4000}; // 1, 0.5, 2
    const float depth = 1234.567f;
    std::memcpy(bytes.data(), halfs, 6);
    std::memcpy(bytes.data() + 6, &depth, 4);
    ASSERT_TRUE(output->open(folder.file("mixed.exr"), spec) &&
                output->write_image(OIIO::TypeUnknown, bytes.data()) && output->close());
    const MemoryImage image = read("mixed.exr");
    EXPECT_TRUE(image.spec.channelformats.empty());
    // OpenEXR stores channels in the order of their names, and OpenImageIO restores red, green, blue.
    EXPECT_THAT(get_values<float>(image), ElementsAre(1, 0.5f, 2, 1234.567f));
}

TEST_F(MemoryImages, SayWhichPartIsMissing) {
    write_image(make_image<float>(OIIO::ImageSpec(1, 1, 3, OIIO::TypeFloat), {1, 2, 3}), folder.file("a.exr"),
                {});
    EXPECT_EQ(workflow::count_image_parts(folder.file("a.exr"), reader), 1u);
    const diagnostics::Diagnostic failure = failure_of([&] { read("a.exr", 1); });
    EXPECT_EQ(failure.code, Code::LAYER_UNKNOWN);
    EXPECT_THAT(failure.message, HasSubstr("it has no part 1, but 1"));
    EXPECT_EQ(failure.file, folder.file("a.exr"));
}

// Premultiplied 0.25 with alpha 0.5 is straight 0.5: 128 of 255.
TEST_F(MemoryImages, HaveTheAlphaOfTheFormat) {
    const MemoryImage premultiplied =
        make_image<float>(OIIO::ImageSpec(1, 1, 4, OIIO::TypeFloat), {0.25f, 0.25f, 0.25f, 0.5f});
    image::OutputOptions options;
    options.depth = image::parse_depth("uint8");
    write_image(premultiplied, folder.file("a.png"), options);
    const MemoryImage straight = read("a.png");
    EXPECT_EQ(straight.spec.get_int_attribute("oiio:UnassociatedAlpha"), 1);
    EXPECT_THAT(get_values<unsigned char>(straight), ElementsAre(128, 128, 128, 128));
}

TEST_F(MemoryImages, SayWhatTheFormatCannotHave) {
    OIIO::ImageSpec spec(1, 1, 4, OIIO::TypeUInt8);
    const std::string path = folder.file("a.jpg");
    const diagnostics::Diagnostics notes =
        write_image(make_image<unsigned char>(spec, {1, 2, 3, 255}), path, {});
    ASSERT_THAT(notes, testing::SizeIs(1));
    EXPECT_EQ(notes[0].code, Code::CHANNELS_DROPPED);
    EXPECT_EQ(notes[0].file, path);
}

} // namespace
