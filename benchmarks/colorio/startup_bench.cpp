// Starting the module, compared with building the same config with OpenColorIO directly and writing the same
// files.

#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

#include "benchmarks/colorio/bench_module.h"
#include "colorio/color_io.h"
#include "host/sys/sys_file.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

const char* const LUT_FILES[] = {"srgb.spi1d", "cineon.spi1d"};

void module_init_warm(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp first(folder.get_path());
    ColorIO::init(&first);
    stop_module();
    for (auto _ : state) {
        BenchApp app(folder.get_path());
        ColorIO::init(&app);
        stop_module();
    }
}

void module_init_cold(benchmark::State& state) {
    const BenchFolder folder;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(folder.get_path() + "/luts");
        state.ResumeTiming();
        BenchApp app(folder.get_path());
        ColorIO::init(&app);
        stop_module();
    }
}

/// A color space as the module describes it, except for what it converts.
OCIO::ColorSpaceRcPtr make_space(const char* name, const char* description, OCIO::Allocation allocation,
                                 float from, float to) {
    OCIO::ColorSpaceRcPtr space = OCIO::ColorSpace::Create();
    space->setName(name);
    space->setFamily("Tavelion");
    space->setDescription(description);
    space->setBitDepth(OCIO::BIT_DEPTH_F32);
    space->setAllocation(allocation);
    const float variables[] = {from, to};
    space->setAllocationVars(2, variables);
    return space;
}

OCIO::ConfigRcPtr make_empty_config(const std::string& folder) {
    OCIO::ConfigRcPtr config = OCIO::Config::Create();
    config->setMajorVersion(1);
    config->addSearchPath(".");
    config->setWorkingDir(folder.c_str());
    return config;
}

/// The built-in color spaces with their views. Each LUT file is looked for, as the module does.
OCIO::ConfigRcPtr make_colors(const std::string& folder) {
    OCIO::ConfigRcPtr config = make_empty_config(folder);
    const char* const names[] = {"sRGB", "Cineon"};
    const char* const descriptions[] = {"Standard RGB Display Space.", "Cineon (Log Film Scan)."};
    for (int i = 0; i < 2; ++i) {
        struct stat status;
        if (stat((folder + "/" + LUT_FILES[i]).c_str(), &status) != 0 || !S_ISREG(status.st_mode))
            std::abort();
        const OCIO::ColorSpaceRcPtr space =
            make_space(names[i], descriptions[i], OCIO::ALLOCATION_UNIFORM, -0.125f, 1.125f);
        const OCIO::FileTransformRcPtr transform = OCIO::FileTransform::Create();
        transform->setSrc(LUT_FILES[i]);
        transform->setInterpolation(OCIO::INTERP_LINEAR);
        space->setTransform(transform, OCIO::COLORSPACE_DIR_TO_REFERENCE);
        config->addColorSpace(space);
        config->addDisplayView("Tavelion", names[i], names[i], "");
    }
    config->addDisplayView("Tavelion", "linear", "linear", "");
    config->addColorSpace(make_space("linear",
                                     "Scene-linear, high dynamic range. Used for rendering and compositing.",
                                     OCIO::ALLOCATION_LG2, -15.0f, 6.0f));
    return config;
}

/// The configuration for CDLs, with the one that changes nothing.
OCIO::ConfigRcPtr make_cdls(const std::string& folder) {
    OCIO::ConfigRcPtr config = make_empty_config(folder);
    const OCIO::CDLTransformRcPtr transform = OCIO::CDLTransform::Create();
    transform->setID("No CDL");
    const double ones[] = {1.0, 1.0, 1.0}, zeros[] = {0.0, 0.0, 0.0};
    transform->setSlope(ones);
    transform->setOffset(zeros);
    transform->setPower(ones);
    transform->setSat(1.0);
    transform->setDirection(OCIO::TRANSFORM_DIR_FORWARD);
    const OCIO::ColorSpaceRcPtr space = OCIO::ColorSpace::Create();
    space->setName("No CDL");
    space->setBitDepth(OCIO::BIT_DEPTH_F32);
    space->setAllocation(OCIO::ALLOCATION_LG2);
    space->setTransform(transform, OCIO::COLORSPACE_DIR_FROM_REFERENCE);
    config->addColorSpace(space);
    config->addDisplayView("Tavelion", transform->getID(), "No CDL", "");
    return config;
}

/// What the module builds, by the library alone: the same color spaces, views and CDL, the same looks for LUT
/// files. `checked` has the library check each configuration once.
template <bool checked>
void library_same_config(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    stop_module();
    const std::string luts = folder.get_path() + "/luts";
    for (auto _ : state) {
        const OCIO::ConfigRcPtr colors = make_colors(luts);
        const OCIO::ConfigRcPtr cdls = make_cdls(luts);
        if (checked) {
            colors->validate();
            cdls->validate();
        }
        benchmark::DoNotOptimize(colors->getNumColorSpaces() + cdls->getNumColorSpaces());
    }
}

/// Writing the two LUT files in one write each, computed beforehand; `durable` through the host's files,
/// which replace a file whole and wait for the disk.
template <bool durable>
void write_two_files(benchmark::State& state) {
    const BenchFolder folder;
    BenchApp app(folder.get_path());
    ColorIO::init(&app);
    stop_module();
    std::string texts[2];
    for (int i = 0; i < 2; ++i) {
        const std::string path = folder.get_path() + "/luts/" + LUT_FILES[i];
        texts[i].resize(std::filesystem::file_size(path));
        std::FILE* file = std::fopen(path.c_str(), "rb");
        texts[i].resize(std::fread(texts[i].data(), 1, texts[i].size(), file));
        std::fclose(file);
    }
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(folder.get_path() + "/plain");
        state.ResumeTiming();
        std::filesystem::create_directories(folder.get_path() + "/plain");
        for (int i = 0; i < 2; ++i) {
            const std::string path = folder.get_path() + "/plain/" + LUT_FILES[i];
            if (durable) {
                SysFile file(path.c_str(), SysFile::MODE_WRITE, 0);
                file.write(texts[i].c_str());
                file.close();
                continue;
            }
            std::FILE* file = std::fopen(path.c_str(), "wb");
            std::fwrite(texts[i].data(), 1, texts[i].size(), file);
            std::fclose(file);
        }
    }
}

} // namespace

BENCHMARK(module_init_warm)->Unit(benchmark::kMicrosecond);
BENCHMARK(library_same_config<false>)->Unit(benchmark::kMicrosecond);
BENCHMARK(library_same_config<true>)->Unit(benchmark::kMicrosecond);
BENCHMARK(module_init_cold)->Unit(benchmark::kMicrosecond);
BENCHMARK(write_two_files<true>)->Unit(benchmark::kMicrosecond);
BENCHMARK(write_two_files<false>)->Unit(benchmark::kMicrosecond);
