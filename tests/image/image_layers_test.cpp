// Which channels of an image are color and which are data.

#include "image/image_layers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "image/data_names.h"

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

TEST(DataNames, AreThoseThatRenderersGiveToData) {
    for (const char* name : {"N",
                             "P",
                             "Z",
                             "n",
                             "Nn",
                             "normal",
                             "Normals",
                             "bumpNormals",
                             "worldPosition",
                             "N_world",
                             "Pref",
                             "depth",
                             "ZDepth",
                             "zdepth",
                             "depth_pass",
                             "depth01",
                             "left.depth",
                             "uv",
                             "UV",
                             "motion",
                             "motionVector",
                             "motion_vectors",
                             "velocity",
                             "id",
                             "object_id",
                             "objectID",
                             "materialID",
                             "crypto_object00",
                             "CryptoMaterial01",
                             "cryptomatte",
                             "ViewLayer.CryptoObject00",
                             "MultiMatte",
                             "puzzle_matte",
                             "mask",
                             "Denoising Normal",
                             "position.world",
                             "disparityL.disparity"})
        EXPECT_TRUE(image::is_data_name(name)) << name;
}

TEST(DataNames, AreFoundByTheWordsOfTheirRenderers) {
    for (const char* name : {"MultiMatteElement",
                             "VRayMultiMatteElement1",
                             "matte_element_02",
                             "MV",
                             "mv",
                             "PositionW",
                             "Pw",
                             "AOV_N",
                             "AOV_P",
                             "AOV_depth",
                             "aov.N",
                             "N1",
                             "N_out",
                             "P_out",
                             "normalmap",
                             "normalMap",
                             "tangentnormal",
                             "TangentNormal",
                             "normal_eye",
                             "velocity_x",
                             "motion_y",
                             "dPdu",
                             "dPdv",
                             "dpdu",
                             "stmap",
                             "ST_map",
                             "flow",
                             "flow.forward",
                             "opticalflow",
                             "optical_flow_fwd",
                             "samplerInfo",
                             "sampler_info1"})
        EXPECT_TRUE(image::is_data_name(name)) << name;
}

TEST(DataNames, AreNotFoundInsideOtherWords) {
    for (const char* name : {"Motionless",   "normalized",  "beauty",      "key",
                             "Nadia",        "AOV_diffuse", "aov",         "matte_paint",
                             "element",      "flower",      "overflow",    "info",
                             "sampler",      "light_N",     "keyP",        "map",
                             "eye",          "out",         "diffuse_out", "diffuse_x",
                             "specular_map", "wall_w",      "MVP_light",   "AOV",
                             "n1",           "flow_light",  "Normandy",    "positional_light"})
        EXPECT_FALSE(image::is_data_name(name)) << name;
}

TEST(DataNames, AreNotThoseOfColor) {
    for (const char* name : {"",
                             "rgba",
                             "diffuse",
                             "diffuse_direct",
                             "specular",
                             "beauty.left",
                             "left",
                             "right",
                             "key_light",
                             "matte_painting",
                             "normal_lights",
                             "depth_fog",
                             "point_light",
                             "shadow",
                             "reflection",
                             "emission",
                             "albedo",
                             "ViewLayer.Combined",
                             "Denoising Albedo",
                             "sss",
                             "coat",
                             "view",
                             "object",
                             "n1",
                             "p2",
                             "v001",
                             "grid",
                             "hidden",
                             "RGBA_default",
                             "subimage00"})
        EXPECT_FALSE(image::is_data_name(name)) << name;
}

TEST(DataNames, TakeTheNamesOfCryptomattesFromMetadata) {
    OIIO::ImageSpec spec = make_spec({"R", "G", "B"});
    spec.attribute("cryptomatte/f834d0a/name", "uObject");
    spec.attribute("cryptomatte/f834d0a/hash", "MurmurHash3_32");
    spec.attribute("cryptomatte/11aa/name", "asset");
    EXPECT_THAT(image::get_cryptomatte_names(spec), testing::UnorderedElementsAre("uObject", "asset"));
    EXPECT_TRUE(image::belongs_to_cryptomatte("uObject", "uObject"));
    EXPECT_TRUE(image::belongs_to_cryptomatte("uObject00", "uObject"));
    EXPECT_FALSE(image::belongs_to_cryptomatte("uObjectLight", "uObject"));
    EXPECT_FALSE(image::belongs_to_cryptomatte("left.uObject00", "asset"));
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
