#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <benchmark/benchmark.h>
#include <epoxy/gl.h>

#include "diagnostics/failure.h"
#include "image/reader_server.h"
#include "tool/console.h"
#include "viewer/viewer.h"

// How long it takes from a saved edit of a LUT to the first frame of a 4K float image that shows it: in a
// window, whose loop sleeps between events (needs a display), and in memory, where it does not.

namespace {

namespace fs = std::filesystem;

/// At the start of the program, before any thread.
const bool image_readers_are_ready = (image::start_reader_server(), true);

constexpr int WIDTH = 3840;
constexpr int HEIGHT = 2160;

constexpr char CONFIG[] = R"(ocio_profile_version: 1
search_path: .
roles: {default: lin, scene_linear: lin}
displays:
  Screen:
    - !<View> {name: Shown, colorspace: shown}
colorspaces:
  - !<ColorSpace> {name: lin, allocation: lg2, allocationvars: [-8, 2]}
  - !<ColorSpace>
    name: shown
    from_reference: !<FileTransform> {src: shown.spi1d, interpolation: linear}
)";

/// A folder with a configuration, its LUT and an image, until the end of the scope.
class Folder {
public:
    Folder() : path(fs::temp_directory_path() / ("qb_bench_" + std::to_string(getpid()))) {
        fs::create_directories(path);
        std::ofstream(path / "config.ocio") << CONFIG;
        write_lut();
        const std::vector<float> pixels(std::size_t{3} * WIDTH * HEIGHT, 0.25f);
        const auto output = OIIO::ImageOutput::create(get("image.tif"));
        if (!output || !output->open(get("image.tif"), {WIDTH, HEIGHT, 3, OIIO::TypeDesc::FLOAT}) ||
            !output->write_image(OIIO::TypeDesc::FLOAT, pixels.data()) || !output->close())
            throw std::runtime_error("cannot write the image: " + OIIO::geterror());
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string get(const char* name) const { return (path / name).string(); }
    /// Different from the previous one.
    void write_lut() {
        ++edits;
        std::ofstream lut(path / "shown.spi1d");
        lut << "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n" << 1 + 0.01 * edits << "\n}\n";
    }

private:
    fs::path path;
    int edits = 0;
};

void show_edits(benchmark::State& state, std::unique_ptr<viewer::Screen> screen) {
    Folder folder;
    workflow::SessionOptions options;
    options.config_path = folder.get("config.ocio");
    options.no_preferences = true;
    workflow::LiveConfig live_config(options);
    viewer::ViewModel model(live_config);
    model.open(folder.get("image.tif"));
    viewer::Viewer viewer(model, std::move(screen), true);
    for (int frame = 0; frame < 10; ++frame)
        viewer.run_frame();
    const viewer::ImagePainter& painter = viewer.get_renderer().get_painter();
    for (auto _ : state) {
        const unsigned int shaders = painter.count_shaders();
        folder.write_lut();
        const auto start = std::chrono::steady_clock::now();
        while (painter.count_shaders() == shaders && model.get_errors().empty())
            viewer.run_frame();
        glFinish();
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        // The window goes back to sleep.
        for (int frame = 0; frame < 10; ++frame)
            viewer.run_frame();
    }
    if (!model.get_errors().empty())
        state.SkipWithError(model.get_errors().front().message.c_str());
}

void show_edited_lut_in_memory(benchmark::State& state) {
    show_edits(state, viewer::make_offscreen({WIDTH, HEIGHT}));
}

void show_edited_lut_in_window(benchmark::State& state) {
    try {
        show_edits(state, viewer::make_window({WIDTH, HEIGHT}, "benchmark"));
    } catch (const diagnostics::Failure& error) {
        state.SkipWithError(error.what());
    }
}

BENCHMARK(show_edited_lut_in_memory)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(show_edited_lut_in_window)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace
