#include "image/conversion_record.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace {

constexpr char FINGERPRINT[] = "0123456789abcdef0123456789abcdef";
constexpr char OTHER[] = "fedcba9876543210fedcba9876543210";

class ConversionRecords : public testing::Test {
protected:
    /// Writes a file with that header, and returns the header that it has.
    OIIO::ImageSpec write(const std::string& name, const OIIO::ImageSpec& spec) {
        const std::string path = folder.file(name);
        const auto output = OIIO::ImageOutput::create(path);
        const std::vector<float> pixels(static_cast<std::size_t>(spec.width * spec.height * spec.nchannels));
        EXPECT_TRUE(output->open(path, spec) && output->write_image(OIIO::TypeFloat, pixels.data()) &&
                    output->close())
            << output->geterror();
        format = output->format_name();
        return OIIO::ImageInput::open(path)->spec();
    }

    TempDir folder;
    std::string format;
};

TEST_F(ConversionRecords, AreKeptByTheFilesOfFiveFormats) {
    const std::pair<const char*, const char*> files[] = {
        {"a.exr", "openexr"}, {"a.png", "png"}, {"a.tif", "tiff"}, {"a.jpg", "jpeg"}, {"a.dpx", "dpx"}};
    for (const auto& [name, its_format] : files) {
        OIIO::ImageSpec spec(4, 4, 3, OIIO::TypeUInt8);
        spec.attribute("Artist", "somebody");
        image::record_conversion(spec, its_format, FINGERPRINT);
        const OIIO::ImageSpec written = write(name, spec);
        EXPECT_EQ(format, its_format);
        EXPECT_TRUE(image::can_record_conversion(format));
        EXPECT_EQ(image::get_recorded_conversion(written, format), FINGERPRINT) << name;
    }
}

TEST_F(ConversionRecords, AreNotMadeInOtherFormats) {
    OIIO::ImageSpec spec(4, 4, 3, OIIO::TypeUInt8);
    image::record_conversion(spec, "bmp", FINGERPRINT);
    EXPECT_TRUE(spec.extra_attribs.empty());
    EXPECT_FALSE(image::can_record_conversion("bmp"));
    EXPECT_EQ(image::get_recorded_conversion(spec, "bmp"), "");
}

TEST_F(ConversionRecords, ReplaceThoseOfEarlierConversions) {
    OIIO::ImageSpec spec(4, 4, 3, OIIO::TypeUInt8);
    image::record_conversion(spec, "openexr", OTHER);
    image::record_conversion(spec, "tiff", FINGERPRINT);
    EXPECT_EQ(spec.extra_attribs.size(), 1u);
    EXPECT_EQ(spec.get_string_attribute("Software"), std::string("colorio ") + FINGERPRINT);
    image::record_conversion(spec, "png", FINGERPRINT);
    EXPECT_EQ(spec.extra_attribs.size(), 1u);
    image::record_conversion(spec, "png", "");
    EXPECT_TRUE(spec.extra_attribs.empty());
}

TEST_F(ConversionRecords, LeaveTheSoftwareOfOthersWhereThereIsAnotherPlace) {
    OIIO::ImageSpec spec(4, 4, 3, OIIO::TypeUInt8);
    spec.attribute("Software", "a renderer 1.0");
    image::record_conversion(spec, "openexr", FINGERPRINT);
    EXPECT_EQ(spec.get_string_attribute("Software"), "a renderer 1.0");
    EXPECT_EQ(image::get_recorded_conversion(spec, "tiff"), "");
}

} // namespace
