// Publishing the names of a very large config, compared with OpenColorIO's lookups.

#include <string>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr int VIEW_COUNT = 1000;

std::string make_config(int space_count) {
    std::string text =
        "ocio_profile_version: 1\nsearch_path: .\nroles:\n  scene_linear: s0\n  default: s0\ndisplays:\n"
        "  D:\n";
    for (int i = 0; i < VIEW_COUNT; ++i)
        text += "    - !<View> {name: v" + std::to_string(i) + ", colorspace: s" +
                std::to_string(i % space_count) + "}\n";
    text += "colorspaces:\n";
    for (int i = 0; i < space_count; ++i)
        text += "  - !<ColorSpace>\n    name: s" + std::to_string(i) + "\n    family: f" +
                std::to_string(i % 10) + "\n";
    return text;
}

/// Reloading the configuration from its file, which settles the defaults, and publishing it.
void module_reload_and_publish(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    app.config_path = folder.write("big.ocio", make_config(static_cast<int>(state.range(0)))).c_str();
    ColorIOManager& manager = *ColorIOManager::get_instance();
    manager.use_file_config(true);
    const CoreVector<ColorIOManager::ColorSpaceDef> none;
    for (auto _ : state) {
        // Nothing custom is set; the active configuration stays the file's and is published again.
        manager.set_tavelion_config(none);
    }
    state.counters["names"] = manager.get_color_space_names().get_count();
    stop_module();
}

/// Lower bound: loading it, and one lookup per color space.
void library_load_and_look_up_each(benchmark::State& state) {
    const BenchFolder folder;
    const std::string path = folder.write("big.ocio", make_config(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        const OCIO::ConstConfigRcPtr config = OCIO::Config::CreateFromFile(path.c_str());
        std::size_t length = 0;
        for (int i = 0; i < config->getNumColorSpaces(); ++i)
            length += config->getColorSpace(config->getColorSpaceNameByIndex(i))->getFamily()[0];
        benchmark::DoNotOptimize(length);
    }
}

void library_load(benchmark::State& state) {
    const BenchFolder folder;
    const std::string path = folder.write("big.ocio", make_config(static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(OCIO::Config::CreateFromFile(path.c_str()));
}

} // namespace

BENCHMARK(module_reload_and_publish)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(library_load_and_look_up_each)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(library_load)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
