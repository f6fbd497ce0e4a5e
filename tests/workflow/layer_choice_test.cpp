// Which layers and parts are converted.

#include "tests/workflow/layer_fixture.h"

namespace {

using diagnostics::Code;
using testing::AllOf;
using testing::HasSubstr;

using LayerChoice = LayerFileTest;

TEST_F(LayerChoice, AreChosenByName) {
    write(make_color(
        {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "normal.R", "normal.G", "normal.B"}, 0.5f));
    const workflow::ImageReport report = convert("squared", make_options({"diffuse", "normal"}));
    EXPECT_EQ(read().get("R"), 0.5f);
    EXPECT_EQ(read().get("diffuse.R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.25f);
    EXPECT_EQ(workflow::describe(report.layers), "converted diffuse, normal; left rgba (not chosen)");
}

TEST_F(LayerChoice, AreAllColorOnesForAll) {
    write(make_color(
        {"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B", "normal.R", "normal.G", "normal.B"}, 0.5f));
    convert("squared", make_options({"all"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("diffuse.R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.5f);
    convert("squared", make_options({"all", "normal"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("normal.R"), 0.25f);
}

TEST_F(LayerChoice, AreSkippedByName) {
    write(make_color({"R", "G", "B", "diffuse.R", "diffuse.G", "diffuse.B"}, 0.5f));
    const workflow::ImageReport report = convert("squared", make_options({}, {}, {"diffuse"}));
    EXPECT_EQ(read().get("R"), 0.25f);
    EXPECT_EQ(read().get("diffuse.R"), 0.5f);
    EXPECT_EQ(workflow::describe(report.layers), "converted rgba; left diffuse (skipped)");
}

TEST_F(LayerChoice, AreChosenByPart) {
    write_native(folder.file("in.exr"),
                 {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("glow", {"R", "G", "B"}, 0.5f),
                  make_part("sky", {"R", "G", "B"}, 0.5f)});
    convert("squared", make_options({}, {"glow", "3"}, {"sky"}));
    EXPECT_EQ(read(0).get("R"), 0.5f);
    EXPECT_EQ(read(1).get("R"), 0.25f);
    EXPECT_EQ(read(2).get("R"), 0.5f);
    convert("squared", make_options({"sky"}));
    EXPECT_EQ(read(0).get("R"), 0.5f);
    EXPECT_EQ(read(2).get("R"), 0.25f);
}

TEST_F(LayerChoice, WithUnknownNamesAreErrorsThatListThose) {
    write_native(folder.file("in.exr"),
                 {make_part("beauty", {"R", "G", "B"}, 0.5f), make_part("specular", {"R", "G", "B"}, 0.5f)});
    const std::string there = folder.write("out.exr", "what was there");
    for (const workflow::ImageOptions& options :
         {make_options({"speculer"}), make_options({}, {"speculer"}), make_options({}, {}, {"speculer"})}) {
        const diagnostics::Diagnostic failure = failure_of([&] { convert("squared", options); });
        EXPECT_EQ(failure.code, Code::LAYER_UNKNOWN);
        EXPECT_THAT(failure.message, AllOf(HasSubstr("in.exr"), HasSubstr("'speculer'")));
        EXPECT_EQ(failure.hint, "did you mean 'specular'? it has beauty, specular");
    }
    EXPECT_EQ(folder.read("out.exr"), "what was there");
}

TEST_F(LayerChoice, ThatCannotBeConvertedAreErrorsWhenTheyAreNamed) {
    write(make_rich_image());
    for (const auto& [layer, reason] :
         {std::pair("N", "no color channels"), std::pair("Z", "no color channels"),
          std::pair("ids", "integers"), std::pair("matteless00", "cryptomatte")}) {
        const diagnostics::Diagnostic failure =
            failure_of([&, name = layer] { convert("squared", make_options({name})); });
        EXPECT_EQ(failure.code, Code::IMAGE_UNSUPPORTED) << layer;
        EXPECT_THAT(failure.message, AllOf(HasSubstr("'" + std::string(layer) + "'"), HasSubstr(reason)));
    }
    EXPECT_FALSE(folder.exists("out.exr"));
}

TEST_F(LayerChoice, OfDataAloneAreRefusedWithTheReasons) {
    write(make_color({"normal.R", "normal.G", "normal.B", "Z"}, 0.5f));
    const diagnostics::Diagnostic failure = failure_of([&] { convert(); });
    EXPECT_THAT(failure.message, HasSubstr("no color channels to convert: Z (data); normal (data by name)"));
    EXPECT_THAT(failure.hint, HasSubstr("only if the layers are named: normal"));
}

} // namespace
