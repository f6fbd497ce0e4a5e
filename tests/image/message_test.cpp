#include "image/message.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

OIIO::ImageSpec make_rich_spec() {
    OIIO::ImageSpec spec(7, 5, 2, OIIO::TypeHalf);
    spec.x = -3;
    spec.full_width = 99;
    spec.tile_width = 16;
    spec.alpha_channel = 1;
    spec.channelnames = {"left.R", "A"};
    spec.channelformats = {OIIO::TypeHalf, OIIO::TypeFloat};
    spec.attribute("Software", "by hand");
    spec.attribute("oiio:UnassociatedAlpha", 1);
    const float matrix[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    spec.attribute("worldtocamera", OIIO::TypeMatrix, matrix);
    const char* views[] = {"left", "right"};
    spec.attribute("multiView", OIIO::TypeDesc(OIIO::TypeDesc::STRING, 2), views);
    const unsigned char profile[3] = {1, 0, 255};
    spec.attribute("ICCProfile", OIIO::TypeDesc(OIIO::TypeDesc::UINT8, 3), profile);
    return spec;
}

std::string describe(const OIIO::ImageSpec& spec) {
    return spec.serialize(OIIO::ImageSpec::SerialXML, OIIO::ImageSpec::SerialDetailedHuman);
}

TEST(Message, CarriesAWholeSpec) {
    const OIIO::ImageSpec spec = make_rich_spec();
    image::MessageWriter writer;
    writer.add_spec(spec);
    const OIIO::ImageSpec read = image::MessageReader(writer.get_bytes()).get_spec();
    EXPECT_EQ(describe(read), describe(spec));
    EXPECT_THAT(read.channelnames, ElementsAre("left.R", "A"));
    EXPECT_THAT(read.channelformats, ElementsAre(OIIO::TypeHalf, OIIO::TypeFloat));
    EXPECT_EQ(read.find_attribute("multiView")->get_string_indexed(1), "right");
    float matrix[16];
    ASSERT_TRUE(read.getattribute("worldtocamera", OIIO::TypeMatrix, matrix));
    EXPECT_EQ(matrix[15], 16);
    EXPECT_EQ(static_cast<const unsigned char*>(read.find_attribute("ICCProfile")->data())[2], 255);
}

TEST(Message, ThatEndsTooEarlyIsRefusedWherever) {
    image::MessageWriter writer;
    writer.add_spec(make_rich_spec());
    for (std::size_t size = 0; size < writer.get_bytes().size(); ++size) {
        const auto begin = writer.get_bytes().begin();
        image::MessageReader reader(std::vector<char>(begin, begin + static_cast<std::ptrdiff_t>(size)));
        EXPECT_THROW(reader.get_spec(), image::MessageError) << size;
    }
}

TEST(Message, WithAChangedByteIsReadOrRefusedAndNothingElse) {
    image::MessageWriter writer;
    writer.add_spec(make_rich_spec());
    int refused = 0;
    for (std::size_t place = 0; place < writer.get_bytes().size(); ++place)
        for (const char value : {'\x00', '\x7f', '\xff'}) {
            std::vector<char> bytes = writer.get_bytes();
            bytes[place] = value;
            try {
                image::MessageReader(bytes).get_spec();
            } catch (const image::MessageError&) {
                ++refused;
            }
        }
    EXPECT_GT(refused, 100) << "the counts alone";
}

} // namespace
