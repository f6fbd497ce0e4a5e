#include "tests/viewer/screen_fixture.h"

ScreenTest::ScreenTest() {
    write_ramps(image, WIDTH, HEIGHT);
    write_lut(folder, 0.5);
    config = write_config(folder);
    workflow::SessionOptions options;
    options.config_path = config;
    options.no_preferences = true;
    live_config = std::make_unique<workflow::LiveConfig>(options);
    model = std::make_unique<viewer::ViewModel>(*live_config);
    model->open(image);
    auto owned = std::make_unique<IdleScreen>(viewer::Screen::Size{PANELS + WIDTH, HEIGHT});
    screen = owned.get();
    viewer = std::make_unique<viewer::Viewer>(*model, std::move(owned), true);
    screen->wake();
    viewer->act();
}

const viewer::Items::Item& ScreenTest::find(const std::string& name) const {
    const viewer::Items::Item* item = viewer->get_items().find(name);
    EXPECT_TRUE(item) << "there is no '" << name << "'";
    static const viewer::Items::Item NOTHING = {"nothing", -1, -1};
    return item ? *item : NOTHING;
}

void ScreenTest::click(const std::string& name) {
    const viewer::Items::Item& item = find(name);
    viewer->get_hand().click(item.x, item.y);
    viewer->act();
}

void ScreenTest::double_click(const std::string& name) {
    const viewer::Items::Item& item = find(name);
    viewer->get_hand().double_click(item.x, item.y);
    viewer->act();
}

void ScreenTest::press(const std::string& key) {
    viewer->get_hand().press(key);
    viewer->act();
}

void ScreenTest::type(const std::string& text) {
    viewer->get_hand().type(text);
    viewer->act();
}

ShownImage ScreenTest::take_screenshot() {
    const std::string path = folder.file("screenshot.png");
    viewer->save_screenshot(path);
    return read_shown(path);
}

void ScreenTest::expect_shown(double gain) {
    const ShownImage shown = take_screenshot();
    ASSERT_EQ(shown.width, PANELS + WIDTH);
    for (int y = 0; y < HEIGHT; y += 7)
        for (int x = 0; x < WIDTH; x += 5) {
            const float right = 1.5f * static_cast<float>(x) / (WIDTH - 1);
            const float down = 1.5f * static_cast<float>(y) / (HEIGHT - 1);
            const auto factor = static_cast<float>(gain);
            const float color[] = {factor * right, factor * down, factor * 0.25f * (right + down)};
            const Rgb expected = to_screen(color), pixel = shown.at(PANELS + x, y);
            for (size_t i = 0; i < 3; ++i)
                ASSERT_NEAR(pixel[i], expected[i], 2) << "channel " << i << " at " << x << ", " << y;
        }
}

int ScreenTest::count_error_pixels() {
    const ShownImage shown = take_screenshot();
    int count = 0;
    for (int y = 0; y < shown.height; ++y)
        for (int x = 0; x < PANELS; ++x) {
            const Rgb color = shown.at(x, y);
            count += color[0] > 200 && color[1] > 80 && color[1] < 140 && color[2] > 70 && color[2] < 130;
        }
    return count;
}
