#include <filesystem>

#include "tests/viewer/screen_fixture.h"

namespace {

using testing::HasSubstr;
using viewer::ViewModel;

/// The viewer's loop, with what comes to it from outside.
class LoopOfAViewer : public ScreenTest {
protected:
    /// Runs the loop until it has shown another frame, without any input.
    bool shows_a_frame_by_itself() {
        const int before = screen->count_frames();
        return run_until([&] { return screen->count_frames() > before; });
    }
    void drop(std::vector<std::string> paths) {
        screen->drop(std::move(paths));
        viewer->run_frame();
    }
    unsigned int count_shaders() const { return viewer->get_renderer().get_painter().count_shaders(); }
};

TEST_F(LoopOfAViewer, DrawsNothingWhenNothingHappens) {
    const int before = screen->count_frames();
    for (int i = 0; i < 20; ++i)
        viewer->run_frame();
    EXPECT_EQ(screen->count_frames(), before);
    screen->wake();
    viewer->run_frame();
    EXPECT_EQ(screen->count_frames(), before + 1);
}

TEST_F(LoopOfAViewer, ShowsAnEditedLutByItself) {
    model->set_view(viewer::ViewModel::FIRST, "Screen.Shown");
    expect_shown(0.5);
    write_lut(folder, 0.25);
    ASSERT_TRUE(shows_a_frame_by_itself());
    expect_shown(0.25);
}

TEST_F(LoopOfAViewer, ShowsAnEditedConfigurationByItself) {
    model->set_view(viewer::ViewModel::FIRST, "Screen.Shown");
    std::string text = folder.read("test.ocio");
    text.replace(text.find("src: shown.spi1d"), 16, "src: dark.spi1d");
    folder.write("luts/dark.spi1d", "Version 1\nFrom 0 2\nLength 2\nComponents 1\n{\n0\n0.25\n}\n");
    folder.write("test.ocio", text);
    ASSERT_TRUE(shows_a_frame_by_itself());
    expect_shown(0.125);
}

TEST_F(LoopOfAViewer, ShowsAnEditedCdlByItself) {
    const auto write_library = [this](const std::string& slope) {
        return folder.write(
            "looks.ccc", "<ColorCorrectionCollection><ColorCorrection id=\"grade\"><SOPNode><Slope>" + slope +
                             "</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode><SatNode>"
                             "<Saturation>1</Saturation></SatNode></ColorCorrection>"
                             "</ColorCorrectionCollection>");
    };
    model->use_cdl_library(write_library("0.5 0.5 0.5"));
    model->set_cdl("grade");
    expect_shown(0.5);
    write_library("0.25 0.25 0.25");
    ASSERT_TRUE(shows_a_frame_by_itself());
    expect_shown(0.25);
}

TEST_F(LoopOfAViewer, ShowsAnEditedImageByItself) {
    write_image(image, WIDTH, HEIGHT, [](int, int) { return Rgb{0.5f, 0.25f, 0.75f}; });
    ASSERT_TRUE(shows_a_frame_by_itself());
    EXPECT_EQ(take_screenshot().at(PANELS + 7, 9), (Rgb{128, 64, 191}));
}

TEST_F(LoopOfAViewer, KeepsTheLastGoodImageAndSaysWhatIsWrongWithABrokenEdit) {
    model->set_view(viewer::ViewModel::FIRST, "Screen.Shown");
    const std::string good = folder.read("test.ocio");
    EXPECT_EQ(count_error_pixels(), 0);
    for (const char* const file : {"test.ocio", "luts/shown.spi1d"}) {
        folder.write(file, "broken");
        ASSERT_TRUE(shows_a_frame_by_itself());
        expect_shown(0.5);
        EXPECT_GT(count_error_pixels(), 50);
        ASSERT_FALSE(model->get_errors().empty());
        EXPECT_THAT(format_with_hint(model->get_errors()[0]),
                    HasSubstr(std::filesystem::path(file).filename().string()));
        folder.write("test.ocio", good);
        write_lut(folder, 0.5);
        ASSERT_TRUE(run_until([&] { return viewer->get_model().get_errors().empty(); }));
        EXPECT_EQ(count_error_pixels(), 0);
        expect_shown(0.5);
    }
}

TEST_F(LoopOfAViewer, MakesNoShaderForFilesThatNobodyNames) {
    const unsigned int shaders = count_shaders();
    const int frames = screen->count_frames();
    folder.write("other.cube", "beside the image");
    folder.write("luts/other.spi1d", "beside the LUT");
    for (int i = 0; i < 20; ++i)
        viewer->run_frame();
    EXPECT_EQ(screen->count_frames(), frames);
    EXPECT_EQ(count_shaders(), shaders);
}

TEST_F(LoopOfAViewer, SwitchesToADroppedConfiguration) {
    folder.write("shows/luts/shown.spi1d", "Version 1\nFrom 0 2\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
    const std::string other = folder.write("shows/OTHER.OCIO", folder.read("test.ocio"));
    model->set_view(viewer::ViewModel::FIRST, "Screen.Shown");
    drop({other});
    EXPECT_EQ(live_config->get_config_path(), other);
    EXPECT_EQ(viewer->get_error(), std::nullopt);
    expect_shown(0.25);
}

TEST_F(LoopOfAViewer, ShowsTheFirstOfDroppedImagesAndListsTheOthers) {
    const std::string first = folder.file("first.exr"), broken = folder.write("broken.exr", "no image");
    write_image(first, WIDTH, HEIGHT, [](int, int) { return Rgb{0.25f, 0.5f, 0.75f}; });
    drop({first, broken});
    EXPECT_EQ(take_screenshot().at(PANELS + 100, 100), (Rgb{64, 128, 191}));
    EXPECT_THAT(model->get_images().get_paths(), testing::ElementsAre(image, first, broken));
    EXPECT_EQ(viewer->get_error(), std::nullopt);
}

TEST_F(LoopOfAViewer, SaysWhatCannotBeOpenedOfWhatIsDropped) {
    for (const std::string& garbage :
         {folder.write("garbage.txt", "no image"), folder.write("garbage.ocio", "no configuration"),
          folder.write("garbage.ccc", "no correction"), folder.write("garbage.exr", ""),
          folder.file("none.png"), folder.file("luts")}) {
        drop({garbage});
        EXPECT_THAT(format_with_hint(viewer->get_error().value()),
                    HasSubstr(std::filesystem::path(garbage).filename().string()));
        EXPECT_GT(count_error_pixels(), 50) << garbage;
        expect_shown(1);
    }
    drop({image});
    EXPECT_EQ(viewer->get_error(), std::nullopt) << "the next thing goes well";
    EXPECT_EQ(count_error_pixels(), 0);
}

TEST_F(LoopOfAViewer, SaysThatAnImageIsLargerThanTheDriverShows) {
    const std::string wide = folder.file("wide.exr");
    write_image(wide, 70000, 1, [](int, int) { return Rgb{1, 1, 1}; });
    drop({wide});
    EXPECT_GT(count_error_pixels(), 50);
    type("<");
    EXPECT_EQ(model->get_image()->path, image);
    EXPECT_EQ(count_error_pixels(), 0);
    expect_shown(1);
}

TEST_F(LoopOfAViewer, EndsWhenItsWindowIsClosed) {
    EXPECT_FALSE(viewer->is_closed());
    screen->close();
    EXPECT_TRUE(viewer->is_closed());
}

} // namespace
