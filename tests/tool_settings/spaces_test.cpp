#include "tests/tool/images.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

class Spaces : public SettingsTest {
protected:
    Spaces() { folder.write("half.spi1d", HALVING_LUT); }

    json list() { return print_json({"space", "list"}).at("spaces"); }
};

TEST_F(Spaces, AddsAColorSpaceThatConvertsImages) {
    EXPECT_EQ(print({"space", "add", "half", "--lut", path("half.spi1d")}),
              "Tavelion|half: " + path("half.spi1d") + "\n");
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.5f, 1.0f, 0.25f}));
    print({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "half"});
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("R"), 0.25f);
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("B"), 0.125f);
    EXPECT_THAT(print({"list", "views"}), HasSubstr("Tavelion.half"));
    EXPECT_THAT(
        run({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "half", "--no-prefs"}),
        FailsWith(1, HasSubstr("no color space 'half'")));
}

TEST_F(Spaces, GradesInFrontOfTheTable) {
    folder.write("grades.ccc", GRADES);
    print({"space", "add", "graded", "--cdl", path("grades.ccc") + ":warm", "--lut", path("half.spi1d")});
    print({"space", "add", "toned", "--cdl", path("grades.ccc") + ":warm"});
    write_image(path("in.exr"), make_image(1, 1, 3, OIIO::TypeFloat, {0.25f, 0.25f, 0.25f}));
    print({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "graded"});
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("R"), 0.25f);
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("B"), 0.0625f);
    print({"convert", path("in.exr"), path("out.exr"), "--from", "linear", "--to", "toned"});
    EXPECT_FLOAT_EQ(read_image(path("out.exr")).get("R"), 0.5f);
}

TEST_F(Spaces, ListsWhatTheyAreMadeOf) {
    EXPECT_THAT(print({"space"}), HasSubstr("No custom color spaces"));
    print({"space", "add", "half", "--lut", path("half.spi1d"), "--allocation", "lg2", "--range", "-8,5,0.5",
           "--depth", "16f"});
    EXPECT_EQ(list(), json::parse(R"([{"name": "half", "lut": ")" + path("half.spi1d") +
                                  R"(", "cdl": "", "cdl_id": "", "depth": "16f",
        "allocation": "lg2 -8 5 0.5", "usable": true}])"));
    EXPECT_THAT(print({"space", "list"}), HasSubstr(path("half.spi1d") + "  16f    lg2 -8 5 0.5"));
}

TEST_F(Spaces, ShowsThoseWhoseFilesAreGoneAsUnusable) {
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    std::filesystem::remove(path("half.spi1d"));
    ASSERT_EQ(list().size(), 1u);
    EXPECT_EQ(list()[0].at("usable"), false);
}

TEST_F(Spaces, RemovesThem) {
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    print({"space", "add", "other", "--lut", path("half.spi1d")});
    EXPECT_THAT(run({"space", "remove", "hafl"}),
                FailsWith(1, AllOf(HasSubstr("no custom color space 'hafl'"), HasSubstr("'half'"))));
    EXPECT_THAT(run({"space", "remove", "sRGB"}), FailsWith(1, HasSubstr("no custom color space 'sRGB'")));
    EXPECT_EQ(print({"space", "remove", "half"}), "half: removed\n");
    ASSERT_EQ(list().size(), 1u);
    EXPECT_EQ(list()[0].at("name"), "other");
    print({"space", "remove", "other"});
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(Spaces, RefusesWhatCannotWorkAndSavesNothing) {
    const std::string lut = path("half.spi1d");
    folder.write("bad.cube", "LUT_3D_SIZE 2\n0 0 0\n");
    folder.write("grades.ccc", GRADES);
    EXPECT_THAT(run({"space", "add", "x"}), FailsWith(2, HasSubstr("--lut or --cdl")));
    EXPECT_THAT(run({"space", "add", "a|b", "--lut", lut}),
                FailsWith(2, HasSubstr("invalid color space name")));
    EXPECT_THAT(run({"space", "add", "x", "--lut", path("none.cube")}),
                FailsWith(1, HasSubstr("no such file")));
    EXPECT_THAT(run({"space", "add", "x", "--lut", path("bad.cube")}),
                FailsWith(1, AllOf(HasSubstr("cannot add the color space 'x'"), HasSubstr("bad.cube"))));
    EXPECT_THAT(run({"space", "add", "SRGB", "--lut", lut}),
                FailsWith(1, HasSubstr("a color space named 'sRGB' already exists")));
    EXPECT_THAT(run({"space", "add", "x", "--cdl", path("grades.ccc")}),
                FailsWith(2, HasSubstr("is a collection\nhint: choose a color correction")));
    folder.write("odd.cc", "<ColorCorrection id='a'><SOPNode><Slope>-1.5 1 1</Slope><Offset>0 0 0</Offset>"
                           "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    EXPECT_THAT(run({"space", "add", "x", "--cdl", path("odd.cc")}),
                FailsWith(1, HasSubstr("odd.cc:1: invalid CDL 'a': slope -1.5 is negative")));
    EXPECT_THAT(run({"space", "add", "x", "--cdl", path("grades.ccc") + ":wram"}),
                FailsWith(1, HasSubstr("did you mean 'warm'?")));
    EXPECT_THAT(run({"space", "add", "x", "--lut", lut, "--range", "0,1,2"}),
                FailsWith(2, HasSubstr("range takes 2 numbers")));
    EXPECT_THAT(run({"space", "add", "x", "--lut", lut, "--range", "0,one"}),
                FailsWith(2, HasSubstr("'one' is not a number")));
    EXPECT_THAT(run({"space", "add", "x", "--lut", lut, "--depth", "33"}), FailsWith(2, HasSubstr("33")));
    EXPECT_FALSE(folder.exists(PREFERENCES));
}

TEST_F(Spaces, StayWhenAnotherSettingChanges) {
    print({"space", "add", "half", "--lut", path("half.spi1d")});
    print({"formats", "set", "Targa", "--space", "half"});
    print({"cdl", "add", "warm", "--values", "2,1,1/0,0,0/1,1,1/1"});
    EXPECT_EQ(list().size(), 1u);
    EXPECT_THAT(print({"formats"}), HasSubstr("Tavelion|half"));
}

} // namespace
