// Which channels of an image are color and which are data.

#include "image/image_layers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using image::ColorLayer;
using image::ImageLayer;
using image::LayerContent;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

constexpr int NONE = ColorLayer::NONE;

OIIO::ImageSpec make_spec(const Names& channels, OIIO::TypeDesc type = OIIO::TypeHalf) {
    OIIO::ImageSpec spec(2, 2, static_cast<int>(channels.size()), type);
    spec.channelnames = channels;
    spec.alpha_channel = spec.channelindex("A");
    return spec;
}

Names name_colors(const OIIO::ImageSpec& spec, const image::PartContext& context = {"openexr", {}}) {
    Names names;
    for (const ImageLayer& layer : image::find_layers(spec, context))
        if (layer.is_color())
            names.push_back(layer.name);
    return names;
}

ImageLayer find_layer(const OIIO::ImageSpec& spec, const std::string& name,
                      const image::PartContext& context = {"openexr", {}}) {
    for (const ImageLayer& layer : image::find_layers(spec, context))
        if (layer.name == name)
            return layer;
    ADD_FAILURE() << "no layer " << name;
    return {};
}

LayerContent get_content(const OIIO::ImageSpec& spec, const std::string& name) {
    return find_layer(spec, name).content;
}

TEST(ImageLayers, AreAllThatHaveRedGreenAndBlue) {
    const OIIO::ImageSpec spec =
        make_spec({"R", "G", "B", "A", "Z", "diffuse.R", "diffuse.G", "diffuse.B", "N.X", "N.Y", "N.Z",
                   "beauty.left.R", "beauty.left.G", "beauty.left.B", "depth.Z", "uv.u", "uv.v"});
    EXPECT_THAT(name_colors(spec), ElementsAre("rgba", "diffuse", "beauty.left"));
    for (const char* name : {"Z", "N", "depth", "uv"})
        EXPECT_EQ(get_content(spec, name), LayerContent::OTHER) << name;
}

TEST(ImageLayers, HaveTheirChannelsInAnyOrderAndCase) {
    const OIIO::ImageSpec spec =
        make_spec({"spec.A", "spec.b", "spec.Green", "spec.RED", "B", "A", "G", "R"});
    EXPECT_THAT(find_layer(spec, "spec").color->channels, ElementsAre(3, 2, 1, 0));
    EXPECT_THAT(find_layer(spec, "rgba").color->channels, ElementsAre(7, 6, 4, 5));
}

TEST(ImageLayers, WithNamesOfDataAreNotColor) {
    const OIIO::ImageSpec spec =
        make_spec({"normal.R", "normal.G", "normal.B", "crypto_object00.r", "crypto_object00.g",
                   "crypto_object00.b", "crypto_object00.a", "motion.X", "motion.Y"});
    EXPECT_THAT(name_colors(spec), IsEmpty());
    EXPECT_EQ(get_content(spec, "normal"), LayerContent::NAMED_DATA);
    EXPECT_TRUE(find_layer(spec, "normal").is_convertible());
    EXPECT_EQ(get_content(spec, "crypto_object00"), LayerContent::NAMED_DATA);
    EXPECT_EQ(get_content(spec, "motion"), LayerContent::OTHER) << "Y beside X is not gray";
}

TEST(ImageLayers, OfPartsWithNamesOfDataAreNotColor) {
    OIIO::ImageSpec spec = make_spec({"R", "G", "B"});
    spec.attribute("oiio:subimagename", "normals");
    EXPECT_EQ(get_content(spec, "rgba"), LayerContent::NAMED_DATA);
    spec.attribute("oiio:subimagename", "specular");
    EXPECT_EQ(get_content(spec, "rgba"), LayerContent::COLOR);
}

TEST(ImageLayers, ThatTheMetadataDeclareAsCryptomattesAreIds) {
    OIIO::ImageSpec spec = make_spec({"uObject.R", "uObject.G", "uObject.B", "uObject00.R", "uObject00.G",
                                      "uObject00.B", "uObject00.A", "R", "G", "B"});
    const image::PartContext context = {"openexr", {"uObject"}};
    EXPECT_THAT(name_colors(spec, context), ElementsAre("rgba"));
    EXPECT_EQ(find_layer(spec, "uObject", context).content, LayerContent::CRYPTOMATTE);
    EXPECT_FALSE(find_layer(spec, "uObject00", context).is_convertible());
    spec.attribute("oiio:subimagename", "uObject01"); // a part that stands for the layer
    EXPECT_EQ(find_layer(spec, "rgba", context).content, LayerContent::CRYPTOMATTE);
}

TEST(ImageLayers, OfIntegersAreIdsInOpenExrOnly) {
    const OIIO::ImageSpec spec = make_spec({"R", "G", "B"}, OIIO::TypeUInt32);
    EXPECT_EQ(get_content(spec, "rgba"), LayerContent::INTEGERS);
    EXPECT_FALSE(find_layer(spec, "rgba").is_convertible());
    EXPECT_THAT(name_colors(spec, {"tiff", {}}), ElementsAre("rgba"));
    EXPECT_THAT(name_colors(make_spec({"R", "G", "B"}, OIIO::TypeUInt8), {"png", {}}), ElementsAre("rgba"));
}

TEST(ImageLayers, OfOneColorChannelAreColorWithoutALayerOnly) {
    EXPECT_THAT(name_colors(make_spec({"R"})), ElementsAre("R"));
    EXPECT_THAT(name_colors(make_spec({"G", "A"})), ElementsAre("G"));
    EXPECT_THAT(find_layer(make_spec({"B", "Z"}), "B").color->channels, ElementsAre(NONE, NONE, 0, NONE));
    EXPECT_EQ(get_content(make_spec({"R", "G"}), "RG"), LayerContent::SOME_COLOR) << "they may be a vector";
    EXPECT_THAT(name_colors(make_spec({"green"})), ElementsAre("green"));
    EXPECT_EQ(get_content(make_spec({"roughness.R"}), "roughness"), LayerContent::SOME_COLOR);
}

TEST(ImageLayers, OfGrayAreColor) {
    EXPECT_THAT(name_colors(make_spec({"Y"})), ElementsAre("Y"));
    EXPECT_THAT(name_colors(make_spec({"Y", "Z", "A"})), ElementsAre("Y"));
    EXPECT_THAT(find_layer(make_spec({"fog.A", "fog.Y"}), "fog").color->channels, ElementsAre(1, 1, 1, 0));
    EXPECT_THAT(name_colors(make_spec({"X", "Y", "Z"})), IsEmpty());
    EXPECT_THAT(name_colors(make_spec({"Y", "RY", "BY"})), IsEmpty());
    EXPECT_THAT(name_colors(make_spec({"P2.Y", "P2.Z"})), IsEmpty());
}

TEST(ImageLayers, WithoutAlphaTakeThatAroundThem) {
    const OIIO::ImageSpec spec = make_spec({"R", "G", "B", "A", "a.R", "a.G", "a.B", "a.b.R", "a.b.G",
                                            "a.b.B", "a.A", "c.R", "c.G", "c.B", "c.A"});
    const ColorLayer of_c = *find_layer(spec, "c").color;
    EXPECT_EQ(of_c.channels[3], 14);
    EXPECT_TRUE(of_c.owns_alpha);
    const ColorLayer of_b = *find_layer(spec, "a.b").color;
    EXPECT_EQ(of_b.channels[3], 10);
    EXPECT_FALSE(of_b.owns_alpha);
    EXPECT_FALSE(of_b.contains(10));
    const ColorLayer of_d = *find_layer(make_spec({"d.R", "d.G", "d.B", "A"}), "d").color;
    EXPECT_EQ(of_d.channels[3], 3) << "alpha without color";
    EXPECT_FALSE(find_layer(make_spec({"d.R", "d.G", "d.B"}), "d").color->has_alpha());
}

TEST(ImageLayers, OfAnotherViewDoNotTakeTheAlphaOfTheFirst) {
    OIIO::ImageSpec spec =
        make_spec({"R", "G", "B", "A", "left.R", "left.G", "left.B", "diffuse.left.R", "diffuse.left.G",
                   "diffuse.left.B", "diffuse.R", "diffuse.G", "diffuse.B"});
    const char* const views[] = {"right", "left"};
    spec.attribute("multiView", OIIO::TypeDesc(OIIO::TypeDesc::STRING, 2), views);
    EXPECT_FALSE(find_layer(spec, "left").color->has_alpha());
    EXPECT_FALSE(find_layer(spec, "diffuse.left").color->has_alpha());
    EXPECT_EQ(find_layer(spec, "diffuse").color->channels[3], 3);

    spec.channelnames.push_back("left.A");
    ++spec.nchannels;
    EXPECT_EQ(find_layer(spec, "diffuse.left").color->channels[3], 13);
    EXPECT_TRUE(find_layer(spec, "left").color->owns_alpha);
}

TEST(ImageLayers, ListWhatIsBesideTheColorOfALayer) {
    const OIIO::ImageSpec spec = make_spec({"left.R", "left.G", "left.B", "left.Z", "id", "R", "G", "B"});
    Names names;
    for (const ImageLayer& layer : image::find_layers(spec))
        names.push_back(layer.name);
    EXPECT_THAT(names, ElementsAre("rgba", "id", "left", "left.Z"));
}

} // namespace
