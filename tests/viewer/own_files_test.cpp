#include <filesystem>

#include "colorio/color_io_manager.h"
#include "tests/viewer/model_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A model with a color space and a CDL of the user's own, each of a file.
class ModelWithOwnFiles : public ViewModelTest {
protected:
    ModelWithOwnFiles() {
        write_correction("space.cc", "0.5");
        write_correction("look.cc", "0.25");
        ColorIOManager& manager = *ColorIOManager::get_instance();
        auto spaces = manager.get_tavelion_color_spaces();
        spaces.append({"graded", "", own.file("space.cc").c_str(), "", 8, 1, {0, 1, 0}, false});
        auto cdls = manager.get_tavelion_color_decision_lists();
        cdls.append({"look", own.file("look.cc").c_str(), "", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1, false});
        manager.set_tavelion_config(spaces);
        manager.set_tavelion_config(cdls);
        model->use_config(""); // has the model watch what there is now
        model->set_view(FIRST, "Tavelion.linear");
    }

    static std::string make_correction(const std::string& slope) {
        return "<ColorCorrection id=\"grade\"><SOPNode><Slope>" + slope + " " + slope + " " + slope +
               "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode>"
               "<SatNode><Saturation>1</Saturation></SatNode></ColorCorrection>";
    }
    void write_correction(const std::string& name, const std::string& slope) {
        own.write(name, make_correction(slope));
    }
    void write_library(const std::string& slope) {
        folder.write("library.ccc",
                     "<ColorCorrectionCollection>" + make_correction(slope) + "</ColorCorrectionCollection>");
    }

    TempDir own;
};

TEST_F(ModelWithOwnFiles, KeepsAColorSpaceWhileItsCdlIsBroken) {
    model->set_view(FIRST, "Tavelion.graded");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    const std::string note = model->get_note();
    own.write("space.cc", "garbage");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("space.cc")));
    EXPECT_EQ(model->get_note(), note) << "nothing went well since";
    EXPECT_EQ(model->get_settings(FIRST).view, "Tavelion.graded");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);

    write_correction("space.cc", "0.125");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.125);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
    EXPECT_EQ(model->get_note(), "read space.cc again");
}

TEST_F(ModelWithOwnFiles, KeepsACdlWhileItsFileIsBroken) {
    model->set_cdl("look");
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    own.write("look.cc", "garbage");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("look.cc")));
    EXPECT_EQ(model->get_settings(FIRST).cdl, "look");
    EXPECT_FLOAT_EQ(shown_white(), 0.25);

    write_correction("look.cc", "0.125");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.125);
    EXPECT_THAT(format_all(model->get_errors()), IsEmpty());
}

TEST_F(ModelWithOwnFiles, KeepsACdlWhileItsFileIsBrokenAndTheLibraryIsEdited) {
    write_library("0.5");
    model->use_cdl_library(folder.file("library.ccc"));
    model->set_cdl("look");
    own.write("look.cc", "garbage");
    follow();
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    write_library("0.0625");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("look.cc")));
    EXPECT_FLOAT_EQ(shown_white(), 0.25);
    model->set_cdl("grade");
    EXPECT_FLOAT_EQ(shown_white(), 0.0625);
}

TEST_F(ModelWithOwnFiles, TellsOfABrokenLibraryOnce) {
    write_library("0.5");
    model->use_cdl_library(folder.file("library.ccc"));
    folder.write("library.ccc", "garbage");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("library.ccc")));
    write_correction("look.cc", "0.125");
    follow();
    model->set_cdl("look");
    EXPECT_FLOAT_EQ(shown_white(), 0.125);
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("library.ccc")));
}

TEST_F(ModelWithOwnFiles, KeepsABrokenConfiguration) {
    model->use_config(config);
    model->set_view(FIRST, "Screen.Shown");
    EXPECT_FLOAT_EQ(shown_white(), 0.5);
    folder.write("test.ocio", "garbage");
    follow();
    EXPECT_THAT(format_all(model->get_errors()), ElementsAre(HasSubstr("test.ocio")));
    EXPECT_EQ(model->get_settings(FIRST).view, "Screen.Shown");
    EXPECT_THAT(live_config->get_views(), ElementsAre("Screen.Raw", "Screen.Shown"));
}

} // namespace
