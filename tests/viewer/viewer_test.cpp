#include "viewer/viewer.h"

#include <algorithm>
#include <cmath>

#include "colorio/color_io_converter.h"
#include "tests/viewer/viewer_fixture.h"
#include "workflow/conversion.h"

namespace {

using viewer::Layout;
using viewer::ViewModel;

constexpr int WIDTH = 64;
constexpr int HEIGHT = 48;
/// Steps of 255: the rounding of an 8-bit screen, and the error of a 32-entry table.
constexpr int SCREEN_TOLERANCE = 3;

/// A viewer without a window, exactly as large as its image, on the built-in configuration.
class ViewerWithoutAWindow : public ViewerTest {
protected:
    ViewerWithoutAWindow() {
        write_ramps(image, WIDTH, HEIGHT);
        live_config = std::make_unique<workflow::LiveConfig>(workflow::SessionOptions{});
        model = std::make_unique<viewer::ViewModel>(*live_config);
        model->open(image);
        viewer = std::make_unique<viewer::Viewer>(*model, viewer::make_offscreen({WIDTH, HEIGHT}), false);
    }

    ShownImage take_screenshot() {
        const std::string path = folder.file("screenshot.png");
        viewer->save_screenshot(path);
        const ShownImage shown = read_shown(path);
        EXPECT_EQ(shown.width, WIDTH);
        EXPECT_EQ(shown.height, HEIGHT);
        return shown;
    }

    /// What the CPU has for a pixel of the image, by a converter of the test's own.
    static Rgb convert(const viewer::Image& image, int x, int y, const char* view, float gain = 1) {
        ColorIOConverter converter;
        EXPECT_TRUE(converter.configure_for_display("linear", view));
        const float* before = image.at(x, y);
        GMathVec4<float> pixel(before[0] * gain, before[1] * gain, before[2] * gain, before[3]);
        EXPECT_TRUE(converter.convert_pixel(pixel));
        const float after[] = {pixel[0], pixel[1], pixel[2]};
        return to_screen(after);
    }

    void expect_shown(const ShownImage& shown, int x, int y, const Rgb& expected) {
        const Rgb color = shown.at(x, y);
        for (size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(color[i], expected[i], SCREEN_TOLERANCE)
                << "channel " << i << " at " << x << ", " << y;
    }
    void expect_shown_through(const ShownImage& shown, const char* view, float gain = 1) {
        for (int y = 0; y < HEIGHT; ++y)
            for (int x = 0; x < WIDTH; ++x)
                expect_shown(shown, x, y, convert(*model->get_image(), x, y, view, gain));
    }

    std::string image = folder.file("ramps.exr");
    std::unique_ptr<workflow::LiveConfig> live_config;
    std::unique_ptr<viewer::ViewModel> model;
    std::unique_ptr<viewer::Viewer> viewer;
};

TEST_F(ViewerWithoutAWindow, ShowsTheImageThroughTheDefaultView) {
    EXPECT_EQ(model->get_settings(viewer::ViewModel::FIRST).view, "Tavelion.sRGB");
    expect_shown_through(take_screenshot(), "Tavelion.sRGB");
}

TEST_F(ViewerWithoutAWindow, ShowsTheImageThroughAnotherViewWhenToldTo) {
    take_screenshot();
    model->set_view(viewer::ViewModel::FIRST, "Tavelion.linear");
    expect_shown_through(take_screenshot(), "Tavelion.linear");
    model->set_view(viewer::ViewModel::FIRST, "Tavelion.Cineon");
    expect_shown_through(take_screenshot(), "Tavelion.Cineon");
}

TEST_F(ViewerWithoutAWindow, Exposes) {
    model->set_exposure(-1.5f);
    expect_shown_through(take_screenshot(), "Tavelion.sRGB", std::exp2(-1.5f));
}

TEST_F(ViewerWithoutAWindow, WipesBetweenTwoViews) {
    model->set_view(viewer::ViewModel::SECOND, "Tavelion.linear");
    model->set_layout(viewer::Layout::WIPE);
    model->set_wipe(0.25);
    const ShownImage shown = take_screenshot();
    for (int x : {0, 10, WIDTH / 4 - 2})
        expect_shown(shown, x, 20, convert(*model->get_image(), x, 20, "Tavelion.sRGB"));
    for (int x : {WIDTH / 4 + 2, WIDTH / 2, WIDTH - 1})
        expect_shown(shown, x, 20, convert(*model->get_image(), x, 20, "Tavelion.linear"));
}

TEST_F(ViewerWithoutAWindow, ShowsTwoViewsSideBySide) {
    model->set_view(viewer::ViewModel::SECOND, "Tavelion.linear");
    model->set_layout(viewer::Layout::SIDE_BY_SIDE);
    model->get_camera().look_at(WIDTH / 2, HEIGHT, WIDTH, HEIGHT);
    model->get_camera().set_zoom(1);
    const ShownImage shown = take_screenshot();
    // Each half shows the middle of the image.
    for (int x : {2, 15, WIDTH / 2 - 3}) {
        const int in_image = x + WIDTH / 4;
        expect_shown(shown, x, 30, convert(*model->get_image(), in_image, 30, "Tavelion.sRGB"));
        expect_shown(shown, x + WIDTH / 2, 30, convert(*model->get_image(), in_image, 30, "Tavelion.linear"));
    }
}

TEST_F(ViewerWithoutAWindow, ZoomsAndPansByWholePixels) {
    model->set_view(viewer::ViewModel::FIRST, "Tavelion.linear");
    take_screenshot();
    model->get_camera().set_zoom(4);
    model->get_camera().pan(8, -4);
    const ShownImage shown = take_screenshot();
    // The middle of the image, two pixels to the left and one down, lies in the middle of the screen.
    for (int i : {0, 1, 5})
        expect_shown(shown, WIDTH / 2 + 4 * i + 1, HEIGHT / 2 + 2,
                     convert(*model->get_image(), WIDTH / 2 - 2 + i, HEIGHT / 2 + 1, "Tavelion.linear"));
    model->get_camera().set_zoom(0.5);
    EXPECT_EQ(take_screenshot().at(0, 0), (Rgb{13, 13, 13})) << "nothing lies beside the image";
}

TEST_F(ViewerWithoutAWindow, MakesShadersOnlyForOtherConversions) {
    const viewer::ImagePainter& painter = viewer->get_renderer().get_painter();
    take_screenshot();
    EXPECT_EQ(painter.count_shaders(), 1u);
    EXPECT_EQ(painter.count_uploads(), 1u);
    model->get_camera().set_zoom(3);
    take_screenshot();
    EXPECT_EQ(painter.count_shaders(), 1u);
    model->set_exposure(1);
    take_screenshot();
    EXPECT_EQ(painter.count_shaders(), 2u);
    for (float exposure : {0.5f, 2.0f, -3.0f}) {
        model->set_exposure(exposure);
        take_screenshot();
    }
    EXPECT_EQ(painter.count_shaders(), 2u);
    model->set_view(viewer::ViewModel::FIRST, "Tavelion.linear");
    take_screenshot();
    EXPECT_EQ(painter.count_shaders(), 3u);
    EXPECT_EQ(painter.count_uploads(), 1u);
}

TEST_F(ViewerWithoutAWindow, ReadsAPixelBeforeAndAfter) {
    take_screenshot();
    viewer::ViewRenderer& renderer = viewer->get_renderer();
    const std::optional<viewer::PixelReadout> readout = renderer.read_pixel(*model, 10.5, 20.5);
    ASSERT_TRUE(readout);
    EXPECT_EQ(readout->x, 10);
    EXPECT_EQ(readout->y, 20);
    GMathVec4<float> pixel(1.5f * 10 / (WIDTH - 1), 1.5f * 20 / (HEIGHT - 1), 0, 1);
    EXPECT_FLOAT_EQ(readout->before[0], pixel[0]);
    EXPECT_FLOAT_EQ(readout->before[1], pixel[1]);
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure_for_display("linear", "Tavelion.sRGB"));
    ASSERT_TRUE(converter.convert_pixel(pixel));
    for (int i : {0, 1}) {
        EXPECT_NEAR(readout->cpu[i], pixel[static_cast<unsigned int>(i)], 1e-5);
        EXPECT_NEAR(readout->gpu[i], pixel[static_cast<unsigned int>(i)], 0.01);
    }
    EXPECT_FALSE(renderer.read_pixel(*model, -1, 10));
    EXPECT_FALSE(renderer.read_pixel(*model, WIDTH + 1, 10));
}

TEST_F(ViewerWithoutAWindow, ComparesWhatGpuAndCpuMakeOfTheImage) {
    model->set_layout(viewer::Layout::DIFFERENCE);
    const viewer::Difference* difference = viewer->compare();
    ASSERT_TRUE(difference);
    EXPECT_GT(difference->values.largest, 1e-5) << "a LUT with 32 entries per axis is not exact";
    EXPECT_LT(difference->values.largest, 0.05);
    EXPECT_LT(difference->values.mean, difference->values.largest);
    EXPECT_EQ(difference->values.incomparable, 0u);
    // The pixel named is the one that is off so much.
    viewer::ViewRenderer& renderer = viewer->get_renderer();
    const auto readout = renderer.read_pixel(*model, difference->x + 0.5, difference->y + 0.5);
    ASSERT_TRUE(readout);
    float off = 0;
    for (int i = 0; i < 3; ++i)
        off = std::max(off, std::abs(readout->gpu[i] - readout->cpu[i]));
    EXPECT_NEAR(off, difference->values.largest, 1e-7);

    model->set_view(viewer::ViewModel::FIRST, "Tavelion.linear");
    difference = viewer->compare();
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->values.largest, 0) << "no conversion, no difference";
}

TEST_F(ViewerWithoutAWindow, ComparesEveryPixelWithItselfAlone) {
    const std::string checks = folder.file("checks.exr");
    write_image(checks, 77, 31, [](int x, int y) {
        const float value = (x + y) % 2 == 0 ? 200.0f : 0.001f;
        return Rgb{value, value, value, 1};
    });
    model->open(checks);
    model->set_layout(viewer::Layout::DIFFERENCE);
    model->set_view(viewer::ViewModel::FIRST, "Tavelion.linear");
    const viewer::Difference* difference = viewer->compare();
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->values.largest, 0) << "neighbors differ 200,000 times";
}

TEST_F(ViewerWithoutAWindow, KeepsNoDifferenceOfAnotherImage) {
    model->use_config(write_config(folder)); // The LUT of "Screen.Shown" is missing.
    model->set_layout(viewer::Layout::DIFFERENCE);
    ASSERT_TRUE(viewer->compare());
    viewer::ViewModel other(*live_config);
    other.set_layout(viewer::Layout::DIFFERENCE);
    other.set_view(viewer::ViewModel::FIRST, "Screen.Shown");
    write_ramps(folder.file("other.exr"), 8, 8);
    other.open(folder.file("other.exr"));
    viewer::ViewRenderer& renderer = viewer->get_renderer();
    renderer.draw(other, {0, 0, WIDTH, HEIGHT}, HEIGHT);
    EXPECT_FALSE(renderer.get_difference()) << "nothing can be compared";
    EXPECT_TRUE(viewer->compare()) << "what can be is compared again";
}

TEST_F(ViewerWithoutAWindow, ShowsTheDifferencesEnlarged) {
    model->set_layout(viewer::Layout::DIFFERENCE);
    const viewer::Difference* difference = viewer->compare();
    ASSERT_TRUE(difference);
    const int x = difference->x, y = difference->y;
    model->set_difference_scale(static_cast<float>(0.5 / difference->values.largest));
    const Rgb shown = take_screenshot().at(x, y);
    EXPECT_NEAR(*std::max_element(shown.begin(), shown.end()), 128, 1);
}

TEST_F(ViewerWithoutAWindow, DrawsItsPanelsBesideTheImage) {
    viewer = nullptr;
    viewer = std::make_unique<viewer::Viewer>(*model, viewer::make_offscreen({340 + WIDTH, 400}), true);
    viewer->save_screenshot(folder.file("panels.png"));
    const ShownImage shown = read_shown(folder.file("panels.png"));
    int bright = 0;
    for (int y = 0; y < 400; ++y)
        for (int x = 0; x < 340; ++x)
            bright += shown.at(x, y)[1] > 200;
    EXPECT_GT(bright, 1000) << "there is text";
    const int top = (400 - HEIGHT) / 2;
    for (int x : {0, 20, WIDTH - 1})
        expect_shown(shown, 340 + x, top + 11, convert(*model->get_image(), x, 11, "Tavelion.sRGB"));
}

} // namespace
