// Starting the module, compared with building the same config with OpenColorIO directly and writing the same
// files.

#include <cstdio>
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

OCIO::ColorSpaceRcPtr make_space(const char* name, const char* lut) {
    OCIO::ColorSpaceRcPtr space = OCIO::ColorSpace::Create();
    space->setName(name);
    space->setFamily("Tavelion");
    space->setBitDepth(OCIO::BIT_DEPTH_F32);
    if (lut) {
        OCIO::FileTransformRcPtr transform = OCIO::FileTransform::Create();
        transform->setSrc(lut);
        transform->setInterpolation(OCIO::INTERP_LINEAR);
        space->setTransform(transform, OCIO::COLORSPACE_DIR_TO_REFERENCE);
    }
    return space;
}

/// The calls of the library that the module makes: color configuration and CDL configuration; `checked`
/// validates them too, as the module does.
template <bool checked>
void library_same_config(benchmark::State& state) {
    for (auto _ : state) {
        OCIO::ConfigRcPtr colors = OCIO::Config::Create();
        colors->setMajorVersion(1);
        colors->addSearchPath(".");
        const char* const names[] = {"sRGB", "Cineon", "linear"};
        for (int i = 0; i < 3; ++i) {
            colors->addColorSpace(make_space(names[i], i < 2 ? LUT_FILES[i] : nullptr));
            colors->addDisplayView("Tavelion", names[i], names[i], "");
        }
        OCIO::ConfigRcPtr cdls = OCIO::Config::Create();
        cdls->setMajorVersion(1);
        OCIO::ColorSpaceRcPtr identity = make_space("No CDL", nullptr);
        identity->setTransform(OCIO::CDLTransform::Create(), OCIO::COLORSPACE_DIR_FROM_REFERENCE);
        cdls->addColorSpace(identity);
        cdls->addDisplayView("Tavelion", "No CDL", "No CDL", "");
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
