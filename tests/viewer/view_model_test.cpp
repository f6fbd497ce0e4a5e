#include "viewer/view_model.h"

#include <filesystem>

#include <OpenImageIO/imageio.h>

#include "tests/colorio/library_differences.h"
#include "tests/viewer/model_fixture.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::FloatNear;
using testing::HasSubstr;
using testing::IsEmpty;
using viewer::ViewModel;
using workflow::LiveConfig;

class ModelOfAViewer : public ViewModelTest {};

TEST_F(ModelOfAViewer, BeginsWithTheDefaultsOfTheConfiguration) {
    const viewer::ColorSettings settings = model->get_settings(FIRST);
    EXPECT_EQ(settings.input_space, "lin");
    EXPECT_EQ(settings.view, "Screen.Raw");
    EXPECT_EQ(settings.cdl, "No CDL");
    EXPECT_EQ(settings.exposure, 0);
    EXPECT_EQ(model->get_space_reason(), "assumed: the role scene_linear, for float pixels");
    EXPECT_THAT(live_config->get_spaces(), ElementsAre("lin", "shown"));
    EXPECT_THAT(live_config->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelOfAViewer, TakesTheSpaceOfAFileFromItsExtension) {
    model->use_config("");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    EXPECT_EQ(model->get_space_reason(), "from the built-in associations, category Open EXR");
    const std::string png = folder.file("image.png");
    write_ramps(png, 4, 4);
    model->open(png);
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|sRGB");
    model->set_input_space("Cineon");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|Cineon");
    EXPECT_EQ(model->get_space_reason(), "chosen");
    model->step_image(1);
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear") << "the other image again";
}

TEST_F(ModelOfAViewer, TakesTheSpaceOfAFileFromItsTag) {
    model->use_config("");
    const std::string png = folder.file("tagged.png");
    const auto output = OIIO::ImageOutput::create(png);
    OIIO::ImageSpec spec(1, 1, 3, OIIO::TypeUInt8);
    spec.attribute("colorio:ColorSpace", "Cineon");
    const float gray[] = {0.5f, 0.5f, 0.5f};
    ASSERT_TRUE(output->open(png, spec) && output->write_image(OIIO::TypeFloat, gray) && output->close());
    model->open(png);
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|Cineon");
    EXPECT_EQ(model->get_space_reason(), "from the tag colorio:ColorSpace 'Cineon'");
}

TEST_F(ModelOfAViewer, DoesFurtherStepsAfterTheCdl) {
    folder.write("triple.cc", "<ColorCorrection id=\"a\"><SOPNode><Slope>3 3 3</Slope><Offset>0 0 0</Offset>"
                              "<Power>1 1 1</Power></SOPNode></ColorCorrection>");
    model->set_steps({{workflow::ColorStep::CDL, folder.file("triple.cc")}});
    EXPECT_FLOAT_EQ(shown_white(), 3);
    EXPECT_THAT(message_of([&] {
                    model->set_steps({{workflow::ColorStep::LOOKS, "none"}});
                }),
                HasSubstr("no look 'none'"));
    EXPECT_FLOAT_EQ(shown_white(), 3) << "what cannot be done changes nothing";
    model->set_steps({});
    EXPECT_FLOAT_EQ(shown_white(), 1);
}

TEST_F(ModelOfAViewer, InvertsTheViewThatAnImageWasMadeFor) {
    SKIP_WHERE_LISTED();
    model->set_inverse_view("Screen.Shown");
    model->set_view(FIRST, "Screen.Raw");
    EXPECT_EQ(model->get_settings(FIRST).inverse_view, "Screen.Shown");
    float rgba[] = {0.25f, 0.125f, 0.0f, 1.0f};
    model->get_conversion(FIRST)->apply(rgba, 1, 1);
    EXPECT_NEAR(rgba[0], 0.5, 1e-6) << "the view halves";
    EXPECT_NEAR(rgba[1], 0.25, 1e-6);
    model->set_exposure(1);
    rgba[0] = 0.125f;
    model->get_conversion(FIRST)->apply(rgba, 1, 1, 1);
    EXPECT_NEAR(rgba[0], 0.5, 1e-6);
    model->set_exposure(0);
    model->set_view(FIRST, "Screen.Shown");
    rgba[0] = 0.25f;
    model->get_conversion(FIRST)->apply(rgba, 1, 1);
    EXPECT_NEAR(rgba[0], 0.25, 1e-6) << "back and forth";
    EXPECT_THAT(message_of([&] { model->set_inverse_view("Screen.Shwon"); }),
                HasSubstr("did you mean 'Screen.Shown'?"));
    model->set_input_space("lin");
    EXPECT_EQ(model->get_settings(FIRST).inverse_view, "");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
}

TEST_F(ModelOfAViewer, NoLongerInvertsAViewThatTheConfigLacks) {
    SKIP_WHERE_LISTED();
    model->set_inverse_view("Screen.Shown");
    model->use_config("");
    EXPECT_EQ(model->get_settings(FIRST).inverse_view, "");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    EXPECT_THAT(model->get_note(), HasSubstr("inverted view 'Screen.Shown' no longer exists"));
}

TEST_F(ModelOfAViewer, InvertsAViewForOneImage) {
    SKIP_WHERE_LISTED();
    const std::string other = folder.file("other.exr");
    write_ramps(other, 4, 4);
    model->set_inverse_view("Screen.Shown");
    model->open(other);
    EXPECT_EQ(model->get_settings(FIRST).inverse_view, "");
}

TEST_F(ModelOfAViewer, ConvertsThroughTheView) {
    EXPECT_FLOAT_EQ(shown_white(), 1);
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
}

TEST_F(ModelOfAViewer, ExposesInSceneLinearLight) {
    model->set_view(FIRST, "Screen.Shown");
    model->set_exposure(-2);
    EXPECT_FLOAT_EQ(shown_white(), 0.125);
    model->set_input_space("shown");
    EXPECT_THAT(shown_white(), FloatNear(0.25, 1e-6)) << "1 there is 2 in scene-linear light";
}

TEST_F(ModelOfAViewer, AppliesACdlBeforeTheExposure) {
    model->use_cdl_library(folder.write("looks.ccc", R"(<ColorCorrectionCollection xmlns="urn:ASC:CDL:v1.01">
  <ColorCorrection id="warm">
    <SOPNode><Slope>2 1 0.5</Slope><Offset>0.25 0 0</Offset><Power>1 1 1</Power></SOPNode>
    <SatNode><Saturation>1</Saturation></SatNode>
  </ColorCorrection>
</ColorCorrectionCollection>)"));
    EXPECT_THAT(live_config->get_cdls(), ElementsAre("No CDL", "warm"));
    model->set_cdl("warm");
    model->set_exposure(-2);
    EXPECT_THAT(shown_white(), FloatNear(0.5625, 1e-6)) << "(2 * 1 + 0.25) / 4";
    EXPECT_THAT(message_of([&] { model->set_cdl("warn"); }), HasSubstr("did you mean 'warm'?"));
}

TEST_F(ModelOfAViewer, SaysWhereACdlLibraryIsBroken) {
    const auto refusal_of = [&](const std::string& text) {
        return message_of([&] { model->use_cdl_library(folder.write("looks.ccc", text)); });
    };
    EXPECT_THAT(refusal_of("<ColorCorrectionCollection>\n=</ColorCorrectionCollection"),
                AllOf(HasSubstr("looks.ccc:2:"), HasSubstr("Unexpected token found")));
    EXPECT_THAT(refusal_of("<ColorCorrectionCollection><ColorCorrection id=\"a\"><SOPNode/></ColorCorrection>"
                           "</ColorCorrectionCollection>"),
                HasSubstr("Slope is missing"))
        << "whole markup that lacks something";
    EXPECT_THAT(refusal_of("<ColorCorrectionCollection/>"), HasSubstr("no ColorCorrection element"));
}

TEST_F(ModelOfAViewer, MakesConversionsAnewOnlyWhenTheyDependOnTheChange) {
    const auto chain = model->get_conversion(FIRST);
    model->set_layout(viewer::Layout::WIPE);
    model->get_camera().set_zoom(4);
    EXPECT_EQ(model->get_conversion(FIRST), chain);
    model->set_exposure(1);
    const auto exposed = model->get_conversion(FIRST);
    EXPECT_NE(exposed, chain);
    model->set_exposure(2.5f);
    EXPECT_EQ(model->get_conversion(FIRST), exposed) << "the exposure is not part of the conversions";
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_NE(model->get_conversion(FIRST), exposed);
}

TEST_F(ModelOfAViewer, TellsWhatIsWrongWithTheSecondViewWhileItIsShown) {
    std::filesystem::remove(folder.file("luts/shown.spi1d"));
    model->use_config(config);
    model->set_view(viewer::ViewModel::SECOND, "Screen.Shown");
    const auto get_errors_of = [&](viewer::Layout layout) {
        model->set_layout(layout);
        model->get_conversion(FIRST);
        model->get_conversion(viewer::ViewModel::SECOND);
        return format_all(model->get_errors());
    };
    for (const viewer::Layout both : {viewer::Layout::WIPE, viewer::Layout::SIDE_BY_SIDE})
        EXPECT_THAT(get_errors_of(both), ElementsAre(HasSubstr("shown.spi1d")));
    EXPECT_THAT(get_errors_of(viewer::Layout::SINGLE), IsEmpty());
    model->set_layout(viewer::Layout::WIPE);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("shown.spi1d")));
    model->set_view(viewer::ViewModel::SECOND, "Screen.Raw");
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty()) << "nothing is known of this view yet";
}

TEST_F(ModelOfAViewer, RefusesNamesThatDoNotExistAndKeepsWhatItHas) {
    EXPECT_THAT(message_of([&] { model->set_view(FIRST, "Screen.Showm"); }),
                HasSubstr("did you mean 'Screen.Shown'"));
    EXPECT_THAT(message_of([&] { model->set_input_space("line"); }), HasSubstr("did you mean 'lin'"));
    EXPECT_THAT(message_of([&] { model->open(folder.file("none.exr")); }), HasSubstr("none.exr"));
    EXPECT_THAT(message_of([&] { model->use_config(folder.file("none.ocio")); }), HasSubstr("no such file"));
    EXPECT_EQ(model->get_settings(FIRST).view, "Screen.Raw");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "lin");
    EXPECT_EQ(model->get_image()->path, image);
    EXPECT_EQ(live_config->get_config_name(), "test.ocio");
}

TEST_F(ModelOfAViewer, SwitchesBetweenConfigurationsAndBack) {
    model->set_view(FIRST, "Screen.Shown");
    model->use_config("");
    EXPECT_EQ(live_config->get_config_name(), "the built-in config");
    EXPECT_EQ(model->get_settings(FIRST).view, live_config->get_default_view());
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    model->use_config(config);
    EXPECT_THAT(live_config->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
    EXPECT_EQ(model->get_settings(FIRST).input_space, "lin");
}

TEST_F(ModelOfAViewer, StepsRoundTheListedImages) {
    const std::string other = folder.file("other.exr");
    write_ramps(other, 2, 2);
    model->open(other);
    EXPECT_THAT(model->get_images().get_paths(), ElementsAre(image, other));
    model->step_image(1);
    EXPECT_EQ(model->get_image()->path, image);
    model->step_image(-1);
    EXPECT_EQ(model->get_image()->path, other);
    model->open(image);
    EXPECT_EQ(model->get_images().get_paths().size(), 2u);
}

TEST_F(ModelOfAViewer, PassesImagesThatCannotBeReadOnItsWay) {
    const std::string broken = folder.write("broken.exr", "no image"), last = folder.file("last.exr");
    write_ramps(last, 2, 2);
    model->add_images({broken, last});
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty()) << "it was not wanted yet";
    model->step_image(1);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("broken.exr")));
    EXPECT_EQ(model->get_images().get_current_path(), broken);
    EXPECT_EQ(model->get_image()->path, image) << "what was shown stays";
    model->step_image(1);
    EXPECT_EQ(model->get_image()->path, last);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    model->step_image(-1);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("broken.exr")));
    write_ramps(broken, 3, 3);
    follow();
    EXPECT_EQ(model->get_image()->path, broken);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

} // namespace
