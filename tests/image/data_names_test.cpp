// Which names of layers and parts are those of data.

#include "image/data_names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

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

TEST(DataNames, HoldForMeasuresAndCountsOfRenderers) {
    for (const char* name : {"Pcam",
                             "wpos",
                             "PWP",
                             "lpe_P",
                             "lpe_N",
                             "Ns",
                             "nxyz",
                             "texcoord",
                             "vel",
                             "speed",
                             "coverage",
                             "alpha",
                             "holdout",
                             "RGBmatte",
                             "barycentric",
                             "samples",
                             "sampleCount",
                             "variance",
                             "bump",
                             "DisparityL",
                             "uCryptoAsset",
                             "depth_left",
                             "denoise_variance",
                             "normal.right"})
        EXPECT_TRUE(image::is_data_name(name)) << name;
    for (const char* name :
         {"lpe_diffuse", "beauty_left", "light_L", "lpe", "speed_light", "alphabet", "key_r"})
        EXPECT_FALSE(image::is_data_name(name)) << name;
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
    OIIO::ImageSpec spec;
    spec.attribute("cryptomatte/f834d0a/name", "uObject");
    spec.attribute("cryptomatte/f834d0a/hash", "MurmurHash3_32");
    spec.attribute("cryptomatte/11aa/name", "asset");
    EXPECT_THAT(image::get_cryptomatte_names(spec), testing::UnorderedElementsAre("uObject", "asset"));
    EXPECT_TRUE(image::belongs_to_cryptomatte("uObject", "uObject"));
    EXPECT_TRUE(image::belongs_to_cryptomatte("uObject00", "uObject"));
    EXPECT_FALSE(image::belongs_to_cryptomatte("uObjectLight", "uObject"));
    EXPECT_FALSE(image::belongs_to_cryptomatte("left.uObject00", "asset"));
}

} // namespace
