#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <epoxy/gl.h>

#include "image/reader_server.h"
#include "tool/console.h"
#include "viewer/conversion_shader.h"
#include "viewer/image_painter.h"
#include "viewer/screen.h"
#include "workflow/conversion.h"
#include "workflow/file_space.h"
#include "workflow/live_config.h"

// The time from choosing another view in the viewer to its shader and LUT, and to the first frame of a 4K
// float image. $OCIO names the config; default: the built-in one.

namespace {

/// At the start of the program, before any thread.
const bool image_readers_are_ready = (image::start_reader_server(), true);

constexpr int WIDTH = 3840;
constexpr int HEIGHT = 2160;

/// The module, and a 4K screen without a window. The driver compiles every shader again.
class Bench {
public:
    static Bench& get() {
        static Bench bench;
        return bench;
    }

    /// Makes a conversion from scene-linear through a view, each view in turn.
    std::shared_ptr<const workflow::Conversion> make_conversion(bool takes_exposure = false) {
        const std::vector<std::string>& views = live_config.get_views();
        workflow::ConversionRequest request;
        request.from = workflow::find_file_space("render.exr", {}, "").color_space;
        request.view = views[turn++ % views.size()];
        request.takes_exposure = takes_exposure;
        return std::make_shared<const workflow::Conversion>(live_config.get_session(), request);
    }

    std::shared_ptr<const viewer::Image> make_image() const {
        auto image = std::make_shared<viewer::Image>();
        image->width = WIDTH;
        image->height = HEIGHT;
        image->rgba.resize(std::size_t{4} * WIDTH * HEIGHT);
        for (std::size_t i = 0; i < image->rgba.size(); ++i)
            image->rgba[i] = static_cast<float>(i * 2654435761u % 65536) / 32768.0f;
        return image;
    }

private:
    Bench() { setenv("MESA_SHADER_CACHE_DISABLE", "true", 1); }

    workflow::LiveConfig live_config{workflow::SessionOptions{}};
    std::size_t turn = 0;
};

void draw(viewer::ImagePainter& painter, const viewer::ImagePainter::Subject& subject) {
    const viewer::Viewport screen = {0, 0, WIDTH, HEIGHT};
    painter.draw(subject, screen, screen, {0, 0, 1}, HEIGHT);
    glFinish();
}

void configure_view(benchmark::State& state) {
    Bench& bench = Bench::get();
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.make_conversion());
}

void configure_view_and_make_shader(benchmark::State& state) {
    Bench& bench = Bench::get();
    const std::unique_ptr<viewer::Screen> screen = viewer::make_offscreen({WIDTH, HEIGHT});
    for (auto _ : state) {
        const auto chain = bench.make_conversion();
        const viewer::ConversionShader shader(chain.get());
        glFinish();
    }
}

void switch_view_and_draw_4k(benchmark::State& state) {
    Bench& bench = Bench::get();
    const std::unique_ptr<viewer::Screen> screen = viewer::make_offscreen({WIDTH, HEIGHT});
    viewer::ImagePainter painter;
    const auto image = bench.make_image();
    screen->begin_frame();
    draw(painter, {image, bench.make_conversion(), 0});
    for (auto _ : state)
        draw(painter, {image, bench.make_conversion(), 0});
    state.counters["shaders"] = painter.count_shaders();
}

void change_exposure_and_draw_4k(benchmark::State& state) {
    Bench& bench = Bench::get();
    const std::unique_ptr<viewer::Screen> screen = viewer::make_offscreen({WIDTH, HEIGHT});
    viewer::ImagePainter painter;
    const auto image = bench.make_image();
    const auto chain = bench.make_conversion(true);
    screen->begin_frame();
    draw(painter, {image, chain, 0});
    float exposure = 0;
    for (auto _ : state)
        draw(painter, {image, chain, exposure += 0.01f});
    state.counters["shaders"] = painter.count_shaders();
}

void upload_4k_image(benchmark::State& state) {
    const std::unique_ptr<viewer::Screen> screen = viewer::make_offscreen({WIDTH, HEIGHT});
    screen->begin_frame();
    for (auto _ : state) {
        viewer::ImagePainter painter;
        state.PauseTiming();
        const auto image = Bench::get().make_image();
        state.ResumeTiming();
        const viewer::Viewport pixel = {0, 0, 1, 1};
        painter.draw({image, nullptr, 0}, pixel, pixel, {0, 0, 1}, HEIGHT);
        glFinish();
    }
}

BENCHMARK(configure_view)->Unit(benchmark::kMillisecond);
BENCHMARK(configure_view_and_make_shader)->Unit(benchmark::kMillisecond);
BENCHMARK(switch_view_and_draw_4k)->Unit(benchmark::kMillisecond);
BENCHMARK(change_exposure_and_draw_4k)->Unit(benchmark::kMillisecond);
BENCHMARK(upload_4k_image)->Unit(benchmark::kMillisecond);

} // namespace
