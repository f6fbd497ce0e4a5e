#include "tool/viewer/view_model.h"

#include <filesystem>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "tests/viewer/viewer_fixture.h"
#include "tool/exit_code.h"

namespace {

using testing::ElementsAre;
using testing::FloatNear;
using testing::HasSubstr;
using testing::IsEmpty;
using tool::ColorHost;
using tool::CommandError;
using tool::ViewModel;

/// Ends the wait for a notice of the operating system that never comes.
constexpr std::chrono::seconds PATIENCE(10);
constexpr ViewModel::Side FIRST = ViewModel::FIRST;

/// A viewer's model on the configuration of the fixture.
class ModelOfAViewer : public ViewerTest {
protected:
    ModelOfAViewer() {
        write_lut(folder, 0.5);
        config = write_config(folder);
        picture = folder.file("picture.exr");
        write_ramps(picture, 4, 4);
        tool::SessionOptions options;
        options.config_path = config;
        options.no_preferences = true;
        host = std::make_unique<ColorHost>(options, console);
        model = std::make_unique<ViewModel>(*host);
        model->open(picture);
    }

    /// What the model's conversions make of grey 1.
    float shown_white() {
        float rgba[] = {1, 1, 1, 1};
        model->get_chain(FIRST)->convert(rgba, 1, 1, model->get_settings(FIRST).exposure);
        return rgba[0];
    }
    /// Waits until files were noticed to have changed.
    void follow() { ASSERT_TRUE(model->follow_files(PATIENCE)); }
    /// The message of what `action` throws.
    template <class Action>
    static std::string message_of(const Action& action) {
        try {
            action();
        } catch (const CommandError& error) {
            return error.what();
        }
        return "nothing thrown";
    }

    std::string config;
    std::string picture;
    std::unique_ptr<ColorHost> host;
    std::unique_ptr<ViewModel> model;
};

TEST_F(ModelOfAViewer, BeginsWithTheDefaultsOfTheConfiguration) {
    const tool::ColorSettings settings = model->get_settings(FIRST);
    EXPECT_EQ(settings.input_space, "lin");
    EXPECT_EQ(settings.view, "Screen.Raw");
    EXPECT_EQ(settings.cdl, "No CDL");
    EXPECT_EQ(settings.exposure, 0);
    EXPECT_THAT(model->get_space_reason(), HasSubstr("exr"));
    EXPECT_THAT(host->get_spaces(), ElementsAre("lin", "shown"));
    EXPECT_THAT(host->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
    EXPECT_THAT(model->get_faults(), IsEmpty());
}

TEST_F(ModelOfAViewer, TakesTheSpaceOfAFileFromItsExtension) {
    model->use_config("");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    EXPECT_EQ(model->get_space_reason(), "files of the extension exr");
    const std::string png = folder.file("picture.png");
    write_ramps(png, 4, 4);
    model->open(png);
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|sRGB");
    model->set_input_space("Cineon");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|Cineon");
    EXPECT_EQ(model->get_space_reason(), "chosen");
    model->step_picture(1);
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear") << "the other picture again";
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
    EXPECT_THAT(host->get_cdls(), ElementsAre("No CDL", "warm"));
    model->set_cdl("warm");
    model->set_exposure(-2);
    EXPECT_THAT(shown_white(), FloatNear(0.5625, 1e-6)) << "(2 * 1 + 0.25) / 4";
    EXPECT_THAT(message_of([&] { model->set_cdl("warn"); }), HasSubstr("did you mean 'warm'?"));
}

TEST_F(ModelOfAViewer, MakesConversionsAnewOnlyWhenTheyDependOnTheChange) {
    const auto chain = model->get_chain(FIRST);
    model->set_layout(tool::Layout::WIPE);
    model->get_camera().set_zoom(4);
    EXPECT_EQ(model->get_chain(FIRST), chain);
    model->set_exposure(1);
    const auto exposed = model->get_chain(FIRST);
    EXPECT_NE(exposed, chain);
    model->set_exposure(2.5f);
    EXPECT_EQ(model->get_chain(FIRST), exposed) << "the exposure is no part of the conversions";
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_NE(model->get_chain(FIRST), exposed);
}

TEST_F(ModelOfAViewer, RefusesNamesThatDoNotExistAndKeepsWhatItHas) {
    EXPECT_THAT(message_of([&] { model->set_view(FIRST, "Screen.Showm"); }),
                HasSubstr("did you mean 'Screen.Shown'"));
    EXPECT_THAT(message_of([&] { model->set_input_space("line"); }), HasSubstr("did you mean 'lin'"));
    EXPECT_THAT(message_of([&] { model->open(folder.file("none.exr")); }), HasSubstr("none.exr"));
    EXPECT_THAT(message_of([&] { model->use_config(folder.file("none.ocio")); }), HasSubstr("no such file"));
    EXPECT_EQ(model->get_settings(FIRST).view, "Screen.Raw");
    EXPECT_EQ(model->get_settings(FIRST).input_space, "lin");
    EXPECT_EQ(model->get_picture()->path, picture);
    EXPECT_EQ(host->get_config_name(), "test.ocio");
}

TEST_F(ModelOfAViewer, ShowsAnEditedLut) {
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    write_lut(folder, 0.75);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.75);
    EXPECT_THAT(model->get_note(), HasSubstr("shown.spi1d"));
    EXPECT_THAT(model->get_faults(), IsEmpty());
}

TEST_F(ModelOfAViewer, KeepsTheLastGoodColoursWhileALutIsBroken) {
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("luts/shown.spi1d", "Version 1\nFrom 0 2\nLength 2\nno values");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    ASSERT_EQ(model->get_faults().size(), 1u);
    EXPECT_THAT(model->get_faults()[0], HasSubstr("shown.spi1d"));
    EXPECT_EQ(model->get_settings(FIRST).view, "Screen.Shown");

    write_lut(folder, 0.25);
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(model->get_faults(), IsEmpty());
}

TEST_F(ModelOfAViewer, ShowsAnEditedConfiguration) {
    std::string text = folder.read("test.ocio");
    text.replace(text.find("name: Shown"), 11, "name: Other");
    text.replace(text.find("active_views: [Raw, Shown]"), 26, "active_views: [Other, Raw]");
    model->set_view(FIRST, "Screen.Shown");
    folder.write("test.ocio", text);
    follow();
    EXPECT_THAT(host->get_views(), testing::UnorderedElementsAre("Screen.Other", "Screen.Raw"));
    EXPECT_EQ(model->get_settings(FIRST).view, host->get_default_view()) << "the view is gone";
    EXPECT_THAT(model->get_faults(), IsEmpty());
}

TEST_F(ModelOfAViewer, KeepsTheLastGoodStateWhileTheConfigurationIsBroken) {
    const std::string good = folder.read("test.ocio");
    for (const std::string& broken :
         {std::string("ocio_profile_version: 1\nroles: ["), std::string(), good.substr(0, good.size() / 2)}) {
        model->set_view(FIRST, "Screen.Shown");
        const auto chain = model->get_chain(FIRST);
        folder.write("test.ocio", broken);
        follow();
        ASSERT_EQ(model->get_faults().size(), 1u) << broken;
        EXPECT_THAT(model->get_faults()[0], HasSubstr("test.ocio"));
        EXPECT_THAT(model->get_faults()[0], HasSubstr("last good state"));
        EXPECT_EQ(host->get_config_name(), "test.ocio");
        EXPECT_THAT(host->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
        EXPECT_EQ(model->get_chain(FIRST), chain) << "nothing is made anew";
        model->set_view(FIRST, "Screen.Raw");
        EXPECT_FLOAT_EQ(shown_white(), 1) << "other views can still be chosen";

        folder.write("test.ocio", good);
        follow();
        EXPECT_THAT(model->get_faults(), IsEmpty());
    }
}

TEST_F(ModelOfAViewer, KeepsTheLastGoodStateWhenTheConfigurationIsRemoved) {
    model->set_view(FIRST, "Screen.Shown");
    std::filesystem::remove(config);
    follow();
    EXPECT_THAT(model->get_faults(), ElementsAre(HasSubstr("no such file")));
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
}

TEST_F(ModelOfAViewer, ShowsAnEditedCdlAndKeepsItWhileItIsBroken) {
    const auto library = [](const char* slope) {
        return std::string("<ColorCorrectionCollection><ColorCorrection id=\"grade\"><SOPNode><Slope>") +
               slope +
               "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
               "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection></ColorCorrectionCollection>";
    };
    model->use_cdl_library(folder.write("grade.ccc", library("0.5 0.5 0.5")));
    model->set_cdl("grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("grade.ccc", library("0.25 0.25 0.25"));
    follow();
    EXPECT_EQ(model->get_settings(FIRST).cdl, "grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    folder.write("grade.ccc", "<ColorCorrectionCollection><Color");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_THAT(model->get_faults(), ElementsAre(HasSubstr("grade.ccc")));
    EXPECT_EQ(model->get_settings(FIRST).cdl, "grade");
}

TEST_F(ModelOfAViewer, ShowsAnEditedLutOfTheUsersOwnSpace) {
    const TempDir elsewhere;
    const auto write_own_lut = [&](const char* white) {
        return elsewhere.write("own.spi1d",
                               std::string("Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n") + white +
                                   "\n}\n");
    };
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorIOManager::ColorSpaceDef> spaces = manager.get_tavelion_color_spaces();
    spaces.append({"own", write_own_lut("0.5").c_str(), "", "", 8, 1, {0, 1, 0}, false});
    model->use_config("");
    manager.set_tavelion_config(spaces);
    model->use_config(""); // has the model watch what there is now
    model->set_input_space("Tavelion|linear");
    model->set_view(FIRST, "Tavelion.own");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    EXPECT_THAT(model->get_faults(), IsEmpty());
    write_own_lut("0.25");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    EXPECT_EQ(model->get_settings(FIRST).view, "Tavelion.own");
}

TEST_F(ModelOfAViewer, ShowsAnEditedPicture) {
    write_picture(picture, 2, 1, [](int, int) { return Rgb{0.125f, 0.25f, 0.5f}; });
    follow();
    EXPECT_EQ(model->get_picture()->width, 2);
    EXPECT_EQ(*model->get_picture()->at(1, 0), 0.125f);
    folder.write("picture.exr", "broken");
    follow();
    EXPECT_EQ(model->get_picture()->width, 2);
    EXPECT_THAT(model->get_faults(), ElementsAre(HasSubstr("picture.exr")));
}

TEST_F(ModelOfAViewer, SwitchesBetweenConfigurationsAndBack) {
    model->set_view(FIRST, "Screen.Shown");
    model->use_config("");
    EXPECT_EQ(host->get_config_name(), "the built-in configuration");
    EXPECT_EQ(model->get_settings(FIRST).view, host->get_default_view());
    EXPECT_EQ(model->get_settings(FIRST).input_space, "Tavelion|linear");
    model->use_config(config);
    EXPECT_THAT(host->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
    EXPECT_EQ(model->get_settings(FIRST).input_space, "lin");
}

TEST_F(ModelOfAViewer, StepsRoundTheListedPictures) {
    const std::string other = folder.file("other.exr");
    write_ramps(other, 2, 2);
    model->open(other);
    EXPECT_THAT(model->get_paths(), ElementsAre(picture, other));
    model->step_picture(1);
    EXPECT_EQ(model->get_picture()->path, picture);
    model->step_picture(-1);
    EXPECT_EQ(model->get_picture()->path, other);
    model->open(picture);
    EXPECT_EQ(model->get_paths().size(), 2u);
}

} // namespace
