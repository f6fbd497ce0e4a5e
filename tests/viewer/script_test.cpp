#include "viewer/script.h"

#include <filesystem>
#include <sstream>
#include <thread>

#include "diagnostics/failure.h"
#include "tests/viewer/viewer_fixture.h"
#include "viewer/viewer.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ScriptOfAViewer : public ViewerTest {
protected:
    ScriptOfAViewer() {
        write_ramps(image, 16, 16);
        live_config = std::make_unique<workflow::LiveConfig>(workflow::SessionOptions{});
        model = std::make_unique<viewer::ViewModel>(*live_config);
        model->open(image);
        viewer = std::make_unique<viewer::Viewer>(*model, viewer::make_offscreen({64, 64}), false);
    }

    bool run(const std::string& text) {
        std::istringstream stream(text);
        return viewer::Script(stream, "tour").run(*viewer, [this](const std::string& line) {
            out << line << '\n';
        });
    }
    std::string failure_of(const std::string& text) {
        try {
            run(text);
        } catch (const diagnostics::Failure& error) {
            return error.what();
        }
        return "no failure";
    }

    std::string image = folder.file("image.exr");
    std::unique_ptr<workflow::LiveConfig> live_config;
    std::unique_ptr<viewer::ViewModel> model;
    std::unique_ptr<viewer::Viewer> viewer;
};

TEST_F(ScriptOfAViewer, SetsWhatItsLinesSay) {
    EXPECT_FALSE(run("# a comment\n\n  space   Tavelion|Cineon \nexposure -1.5\nview Tavelion.linear\n"
                     "second-view Tavelion.Cineon\nwipe 0.25\nzoom 2\n"));
    const viewer::ColorSettings settings = model->get_settings(viewer::ViewModel::FIRST);
    EXPECT_EQ(settings.input_space, "Tavelion|Cineon");
    EXPECT_EQ(settings.exposure, -1.5f);
    EXPECT_EQ(settings.view, "Tavelion.linear");
    EXPECT_EQ(model->get_settings(viewer::ViewModel::SECOND).view, "Tavelion.Cineon");
    EXPECT_EQ(model->get_layout(), viewer::Layout::WIPE);
    EXPECT_EQ(model->get_wipe(), 0.25);
    EXPECT_EQ(model->get_camera().get_placement().zoom, 2);
}

TEST_F(ScriptOfAViewer, EndsTheViewerWithQuit) {
    EXPECT_TRUE(run("exposure 1\nquit\nexposure 2\n"));
    EXPECT_EQ(model->get_settings(viewer::ViewModel::FIRST).exposure, 1);
}

TEST_F(ScriptOfAViewer, PrintsWhatIsShown) {
    run("print\ncompare\n");
    EXPECT_THAT(
        out.str(),
        AllOf(HasSubstr("color space: Tavelion|linear (from the built-in associations, category Open EXR)\n"),
              HasSubstr("CDL: none\n"), HasSubstr("view: Tavelion.sRGB\n"), HasSubstr("largest ")));
}

TEST_F(ScriptOfAViewer, PrintsTheStepsInTheirOrder) {
    const std::string cdl = folder.write("half.cc", "<ColorCorrection id=\"a\"/>");
    const std::string lut =
        folder.write("half.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
    model->set_steps({{workflow::ColorStep::CDL, cdl}, {workflow::ColorStep::LUT, lut, true}});
    run("print\n");
    EXPECT_THAT(out.str(), HasSubstr("\nCDL: " + cdl + "\nLUT: inverse of " + lut + "\nexposure: 0\n"));
    EXPECT_THAT(out.str(), testing::Not(HasSubstr("CDL: none")));
}

TEST_F(ScriptOfAViewer, WorksThePanelsAsAUserWould) {
    viewer = nullptr;
    viewer = std::make_unique<viewer::Viewer>(*model, viewer::make_offscreen({600, 500}), true);
    run("click View\nclick Tavelion.linear\ntype w\nshift-drag 470 100 405 100\nwheel 470 250 2\n");
    EXPECT_EQ(model->get_settings(viewer::ViewModel::FIRST).view, "Tavelion.linear");
    EXPECT_EQ(model->get_layout(), viewer::Layout::WIPE);
    EXPECT_NEAR(model->get_wipe(), 0.25, 0.001);
    EXPECT_FALSE(model->get_camera().is_fitting());
    run("drag 470 250 480 240\nclick Show\nclick Fit\n");
    EXPECT_TRUE(model->get_camera().is_fitting());
    write_lut(folder, 0.5);
    write_config(folder);
    run("type c\ntype test.ocio\npress Enter\nitems\nprint\n");
    EXPECT_THAT(out.str(),
                AllOf(HasSubstr("config: test.ocio\n"), HasSubstr(" File\n"), Not(HasSubstr(" Cancel\n"))));
    run("drop " + folder.write("garbage.txt", "text") + "\nprint\n");
    EXPECT_THAT(out.str(), HasSubstr("error: cannot read"));
}

TEST_F(ScriptOfAViewer, SaysWhatThereIsNotToClick) {
    EXPECT_THAT(failure_of("click View"), HasSubstr("'panels on'"));
    EXPECT_THAT(failure_of("drop a.exr"), HasSubstr("'panels on'"));
    EXPECT_THAT(failure_of("panels on\nclick Filee"),
                AllOf(HasSubstr("tour:2: no item 'Filee'"), HasSubstr("did you mean 'File'")));
    EXPECT_THAT(failure_of("panels on\npress Any"), HasSubstr("no key 'Any'; keys: Enter, "));
    EXPECT_THAT(failure_of("panels on\ndrag 1 2 3"), HasSubstr("tour:2: "));
    EXPECT_THAT(failure_of("panels on\nwheel 1 2 3 4"), HasSubstr("tour:2: "));
}

TEST_F(ScriptOfAViewer, SaysInWhichLineSomethingFails) {
    EXPECT_THAT(failure_of("exposure 1\n\nview Tavelion.sRGV\n"),
                AllOf(HasSubstr("tour:3: "), HasSubstr("did you mean 'Tavelion.sRGB'")));
    EXPECT_THAT(failure_of("exposure bright"), HasSubstr("tour:1: 'bright' is not a number"));
    EXPECT_THAT(failure_of("layout three"), HasSubstr("tour:1: no layout 'three'"));
    EXPECT_THAT(failure_of("panels maybe"), HasSubstr("tour:1: "));
    EXPECT_THAT(failure_of("screenshot /no/such/folder/a.png"), HasSubstr("tour:1: "));
    EXPECT_THAT(failure_of("pan 3"), HasSubstr("tour:1: "));
    for (const char* command : {"zoom", "difference-scale"})
        for (const char* factor : {"0", "-5"})
            EXPECT_THAT(failure_of(std::string(command) + " " + factor),
                        HasSubstr("is not a positive number"));
    EXPECT_EQ(model->get_difference_scale(), 100);
    EXPECT_TRUE(model->get_camera().is_fitting());
}

TEST_F(ScriptOfAViewer, IsRefusedAsAWholeForAnUnknownCommand) {
    EXPECT_THAT(failure_of("exposure 3\nexposrue 4\n"),
                AllOf(HasSubstr("tour:2: no command 'exposrue'"), HasSubstr("did you mean 'exposure'")));
    EXPECT_EQ(model->get_settings(viewer::ViewModel::FIRST).exposure, 0) << "nothing was run";
}

TEST_F(ScriptOfAViewer, FollowsAChangeOfAFile) {
    EXPECT_THAT(failure_of("await-change 0"), HasSubstr("no file changed"));
    write_ramps(image, 8, 8);
    run("await-change 10\n");
    EXPECT_EQ(model->get_image()->width, 8);
}

TEST_F(ScriptOfAViewer, WaitsNoNegativeTimeAndNoLongerThanADay) {
    for (const char* seconds : {"-1", "-1e300", "86401", "1e12", "1e300"})
        EXPECT_THAT(failure_of(std::string("await-change ") + seconds), HasSubstr("0 to 86400 s")) << seconds;
    write_ramps(image, 8, 8);
    run("await-change 86400\n");
    EXPECT_EQ(model->get_image()->width, 8);
}

TEST_F(ScriptOfAViewer, PassesOverWhatAnEditorWritesBesideTheFile) {
    std::thread editor([this] {
        for (int i = 0; i < 20; ++i)
            folder.write("notes.tmp", "another file");
        write_ramps(folder.file("saving.exr"), 9, 9);
        std::filesystem::rename(folder.file("saving.exr"), model->get_image()->path);
    });
    run("await-change 10\n");
    editor.join();
    EXPECT_EQ(model->get_image()->width, 9);
}

} // namespace
