// Time for large configs by their size, next to OpenColorIO's for the same calls.

#include <string>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_inspection.h"
#include "colorio/color_io_manager.h"
#include "host/parser/parser_entry.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr char LUT[] = "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n1\n}\n";

std::string name_of(int i) {
    return "space" + std::to_string(i);
}

using Defs = CoreVector<ColorIOManager::ColorSpaceDef>;

/// The built-in color spaces and `count` custom ones, all of one LUT file.
Defs make_defs(int count, const BenchFolder& folder) {
    const CoreString lut = folder.write("two.spi1d", LUT).c_str();
    Defs defs = ColorIOManager::get_instance()->get_tavelion_color_spaces();
    for (int i = 0; i < count; ++i)
        defs.append({name_of(i).c_str(),
                     lut,
                     "",
                     "",
                     OCIO::BIT_DEPTH_F32,
                     OCIO::ALLOCATION_UNIFORM,
                     {0.0f, 1.0f, 0.0f},
                     false});
    return defs;
}

void module_set_custom_spaces(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    ColorIOManager& manager = *ColorIOManager::get_instance();
    const Defs defs = make_defs(static_cast<int>(state.range(0)), folder);
    for (auto _ : state)
        manager.set_tavelion_config(defs);
    state.counters["names"] = manager.get_color_space_names().get_count();
    stop_module();
}

/// Reading the same color spaces from the preferences.
void module_load_custom_spaces(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    ColorIOManager& manager = *ColorIOManager::get_instance();
    const Defs none = manager.get_tavelion_color_spaces();
    manager.set_tavelion_config(make_defs(static_cast<int>(state.range(0)), folder));
    ParserEntry entry("color_management");
    manager.save_config(&entry);
    for (auto _ : state) {
        state.PauseTiming();
        manager.set_tavelion_config(none);
        state.ResumeTiming();
        manager.load_config(&entry);
    }
    state.counters["names"] = manager.get_color_space_names().get_count();
    stop_module();
}

/// Lower bound: adding as many color spaces and views, without checks.
void library_add_same_spaces(benchmark::State& state) {
    for (auto _ : state) {
        const OCIO::ConfigRcPtr config = OCIO::Config::Create();
        config->setMajorVersion(1);
        for (int i = 0; i < state.range(0); ++i) {
            const std::string name = name_of(i);
            const OCIO::ColorSpaceRcPtr space = OCIO::ColorSpace::Create();
            space->setName(name.c_str());
            space->setFamily("Tavelion");
            const OCIO::FileTransformRcPtr transform = OCIO::FileTransform::Create();
            transform->setSrc("two.spi1d");
            space->setTransform(transform, OCIO::COLORSPACE_DIR_FROM_REFERENCE);
            config->addColorSpace(space);
            config->addDisplayView("Tavelion", name.c_str(), name.c_str(), "");
        }
    }
}

/// Each space is made from the one before it; most are too deep to be converted.
std::string chain_config(int count) {
    std::string text =
        "ocio_profile_version: 1\nsearch_path: .\nroles: {scene_linear: space0, default: space0}\n"
        "displays:\n  D:\n    - !<View> {name: V, colorspace: space0}\ncolorspaces:\n"
        "  - !<ColorSpace> {name: space0}\n";
    for (int i = 1; i < count; ++i)
        text += "  - !<ColorSpace>\n    name: " + name_of(i) +
                "\n    to_reference: !<ColorSpaceTransform> {src: " + name_of(i - 1) + ", dst: space0}\n";
    return text;
}

/// What `colorio check` tries: every space, both ways.
void module_check_chain(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    const int count = static_cast<int>(state.range(0));
    app.config_path = folder.write("chain.ocio", chain_config(count)).c_str();
    ColorIOManager::get_instance()->use_file_config(true);
    for (auto _ : state) {
        const ColorIOInspection::Batch batch;
        ColorIOConverter converter;
        int made = 0;
        for (int i = 1; i < count; ++i) {
            made += converter.configure(name_of(i).c_str(), "space0");
            made += converter.configure("space0", name_of(i).c_str());
        }
        state.counters["made"] = made;
    }
    stop_module();
}

/// Following a change of the path, publishing included.
void module_reload(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    app.config_path = folder.write("chain.ocio", chain_config(static_cast<int>(state.range(0)))).c_str();
    for (auto _ : state)
        ColorIOManager::get_instance()->update_file_config_path();
    stop_module();
}

void library_parse(benchmark::State& state) {
    const BenchFolder folder;
    const std::string path = folder.write("chain.ocio", chain_config(static_cast<int>(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(OCIO::Config::CreateFromFile(path.c_str()));
}

} // namespace

BENCHMARK(module_set_custom_spaces)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(8000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(module_load_custom_spaces)
    ->Arg(1000)
    ->Arg(2000)
    ->Arg(4000)
    ->Arg(8000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(library_add_same_spaces)->Arg(1000)->Arg(2000)->Arg(4000)->Arg(8000)->Unit(benchmark::kMillisecond);
BENCHMARK(module_check_chain)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(module_reload)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(library_parse)->Arg(1000)->Arg(5000)->Unit(benchmark::kMillisecond);
