// Color decision lists by the thousand, against OpenColorIO called directly.

#include <string>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

std::string make_collection(int count) {
    std::string text = "<ColorCorrectionCollection xmlns=\"urn:ASC:CDL:v1.2\">\n";
    for (int i = 0; i < count; ++i)
        text +=
            "<ColorCorrection id=\"cc" + std::to_string(i) +
            "\"><SOPNode><Slope>1.1 1.2 1.3</Slope><Offset>0.01 0.02 0.03</Offset><Power>1.0 0.9 0.8</Power>"
            "</SOPNode><SATNode><Saturation>0.9</Saturation></SATNode></ColorCorrection>\n";
    return text + "</ColorCorrectionCollection>\n";
}

void add_space(const OCIO::ConfigRcPtr& config, const std::string& name,
               const OCIO::ConstTransformRcPtr& transform) {
    OCIO::ColorSpaceRcPtr space = OCIO::ColorSpace::Create();
    space->setName(name.c_str());
    space->setBitDepth(OCIO::BIT_DEPTH_F32);
    space->setAllocation(OCIO::ALLOCATION_LG2);
    space->setTransform(transform, OCIO::COLORSPACE_DIR_FROM_REFERENCE);
    config->addColorSpace(space);
}

OCIO::ConfigRcPtr make_library_config(const std::string& path) {
    OCIO::ConfigRcPtr config = OCIO::Config::CreateRaw()->createEditableCopy();
    const OCIO::GroupTransformRcPtr group = OCIO::CDLTransform::CreateGroupFromFile(path.c_str());
    for (int i = 0; i < group->getNumTransforms(); ++i)
        add_space(config, "cc" + std::to_string(i), group->getTransform(i));
    return config;
}

/// The module's configuration with a CDL library of so many corrections.
struct CDLLibrary {
    BenchFolder folder;
    BenchApp app{folder.get_path()};
    std::string path;

    explicit CDLLibrary(int count) : path(folder.write("library.ccc", make_collection(count))) {
        ColorIO::init(&app);
        app.cdl_path = path.c_str();
    }
    ~CDLLibrary() { stop_module(); }
};

void module_load_CDL_library(benchmark::State& state) {
    const CDLLibrary library(static_cast<int>(state.range(0)));
    for (auto _ : state)
        ColorIOManager::get_instance()->update_file_cdl_library_path();
    state.counters["names"] = ColorIOManager::get_instance()->get_CDL_names().get_count();
}

void library_make_and_add_spaces(benchmark::State& state) {
    const BenchFolder folder;
    const std::string path = folder.write("library.ccc", make_collection(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        OCIO::ClearAllCaches();
        benchmark::DoNotOptimize(make_library_config(path));
    }
}

void module_add_local_CDL(benchmark::State& state) {
    const CDLLibrary library(static_cast<int>(state.range(0)));
    ColorIOManager& manager = *ColorIOManager::get_instance();
    manager.update_file_cdl_library_path();
    ColorIOManager::ColorDecisionListDef grade{"input_local_CDL", "",        "", {1, 1, 1},
                                               {0, 0, 0},         {1, 1, 1}, 1,  false};
    for (auto _ : state) {
        grade.slope[0] += 0.001f;
        manager.add_local_CDL(grade);
    }
}

void library_replace_one_space(benchmark::State& state) {
    const BenchFolder folder;
    const OCIO::ConfigRcPtr config =
        make_library_config(folder.write("library.ccc", make_collection(static_cast<int>(state.range(0)))));
    add_space(config, "input_local_CDL", OCIO::CDLTransform::Create());
    OCIO::CDLTransformRcPtr grade = OCIO::CDLTransform::Create();
    double slope[3] = {1, 1, 1};
    for (auto _ : state) {
        slope[0] += 0.001;
        grade->setSlope(slope);
        add_space(config, "input_local_CDL", grade);
    }
}

void library_read_group(benchmark::State& state) {
    const BenchFolder folder;
    const std::string path = folder.write("library.ccc", make_collection(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        OCIO::ClearAllCaches();
        benchmark::DoNotOptimize(OCIO::CDLTransform::CreateGroupFromFile(path.c_str()));
    }
}

} // namespace

BENCHMARK(module_load_CDL_library)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(library_make_and_add_spaces)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(library_read_group)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(module_add_local_CDL)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(library_replace_one_space)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);
