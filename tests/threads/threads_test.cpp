#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <locale>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "host/core/core_log.h"
#include "standalone/standalone_app.h"
#include "tests/support/temp_dir.h"

// Several threads configure and apply conversions while the configuration stays the same. Also built with
// ThreadSanitizer, by ./dev test --threads.

namespace {

constexpr int THREADS = 8;
constexpr int ROUNDS = 12;
constexpr unsigned int WIDTH = 8, HEIGHT = 4;
constexpr std::size_t FLOATS = std::size_t{WIDTH} * HEIGHT * 4;

const char CONFIG[] = R"(ocio_profile_version: 1
search_path: luts
roles:
  scene_linear: lin
displays:
  Monitor:
    - !<View> {name: Film, colorspace: film}
    - !<View> {name: Graded, colorspace: video, looks: warm}
looks:
  - !<Look>
    name: warm
    process_space: lin
    transform: !<CDLTransform> {slope: [1.2, 1, 0.8], sat: 0.9}
colorspaces:
  - !<ColorSpace>
    name: lin
    allocation: lg2
    allocationvars: [-10, 6]
  - !<ColorSpace>
    name: film
    to_reference: !<FileTransform> {src: film.spi1d, interpolation: linear}
  - !<ColorSpace>
    name: video
    from_reference: !<ExponentTransform> {value: [0.45, 0.45, 0.45, 1]}
  - !<ColorSpace>
    name: wide
    to_reference: !<GroupTransform>
      children:
        - !<ColorSpaceTransform> {src: film, dst: lin}
        - !<MatrixTransform> {matrix: [0.7, 0.2, 0.1, 0, 0.1, 0.8, 0.1, 0, 0, 0.1, 0.9, 0, 0, 0, 0, 1]}
        - !<FileTransform> {src: grade.cc}
)";

const char FILM[] = "Version 1\nFrom 0.0 1.0\nLength 3\nComponents 1\n{\n0.0\n0.25\n1.0\n}\n";
const char GRADE[] = "<ColorCorrection id=\"g\"><SOPNode><Slope>1.5 1 1</Slope><Offset>0 0.1 0</Offset>"
                     "<Power>1 1 1.2</Power></SOPNode></ColorCorrection>";

ColorIOManager::ColorDecisionListDef cdl(const char* name, float slope) {
    ColorIOManager::ColorDecisionListDef def{};
    def.name = name;
    for (int i = 0; i < 3; ++i) {
        def.slope[i] = slope;
        def.power[i] = 1.1f;
    }
    def.saturation = 0.8f;
    return def;
}

using Pixels = std::vector<float>;

Pixels source_pixels() {
    Pixels pixels(FLOATS);
    for (std::size_t i = 0; i < FLOATS; ++i)
        pixels[i] = static_cast<float>(i % 37) / 36.0f;
    return pixels;
}

/// Ways to convert the pixels; each makes its converter.
using Job = Pixels (*)();

template <class Configure>
Pixels convert(Configure configure) {
    ColorIOConverter converter;
    Pixels pixels = source_pixels();
    if (!configure(converter) || !converter.convert_buffer(pixels.data(), WIDTH, HEIGHT, 4))
        pixels.clear();
    return pixels;
}

Pixels between(const char* destination, const char* source) {
    Pixels pixels = source_pixels();
    const unsigned int width = WIDTH, channels = 4;
    if (!ColorIO::convert_buffer(pixels.data(), width, HEIGHT, channels, destination, source))
        pixels.clear();
    return pixels;
}

Pixels shader_of(const char* source, const char* destination) {
    ColorIOConverter converter;
    CoreString text;
    CoreArray<float> lut;
    if (!converter.configure(source, destination) ||
        !converter.get_gpu_shader_data(text, lut, ColorIOConverter::GLSL_VERSION_CORE))
        return {};
    Pixels values(lut.begin(), lut.end());
    values.push_back(static_cast<float>(text.view().size()));
    return values;
}

const Job JOBS[] = {
    [] { return between("film", "lin"); },
    [] { return between("lin", "film"); },
    [] { return between("video", "wide"); },
    [] { return between("lin", "wide"); },
    [] {
        return convert(
            [](ColorIOConverter& c) { return c.configure_for_display("wide", "Monitor", "Film"); });
    },
    [] {
        return convert(
            [](ColorIOConverter& c) { return c.configure_for_display("lin", "Monitor", "Graded"); });
    },
    [] { return convert([](ColorIOConverter& c) { return c.configure_CDL("one", "two"); }); },
    [] { return shader_of("lin", "film"); },
};
constexpr std::size_t JOB_COUNT = std::size(JOBS);

/// Runs `work` in several threads at once, each with its number.
template <class Work>
void run_in_threads(Work work) {
    std::atomic<int> waiting{THREADS};
    std::vector<std::thread> threads;
    for (int i = 0; i < THREADS; ++i)
        threads.emplace_back([&, i] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            work(i);
        });
    for (std::thread& thread : threads)
        thread.join();
}

class Threads : public testing::Test {
protected:
    Threads() {
        folder.write("luts/film.spi1d", FILM);
        folder.write("luts/grade.cc", GRADE);
        EXPECT_TRUE(ColorIO::init(&app));
        app.set_color_space_file_path(folder.write("config.ocio", CONFIG).c_str());
        app.set_use_color_space_file(true);
        CoreVector<ColorIOManager::ColorDecisionListDef> cdls;
        cdls.append(cdl("one", 1.5f));
        cdls.append(cdl("two", 0.7f));
        ColorIOManager::get_instance()->set_tavelion_config(cdls);
    }
    ~Threads() override {
        ColorIO::destroy();
        ColorIOAutoDetection::destroy();
    }

    TempDir folder;
    StandaloneApp app{folder.get_path().c_str()};
};

TEST_F(Threads, ThatConfigureAndApplyAtOnceGetTheSameResults) {
    std::vector<Pixels> expected;
    for (const Job job : JOBS) {
        expected.push_back(job());
        ASSERT_FALSE(expected.back().empty()) << expected.size();
    }
    std::array<int, THREADS> wrong{};
    run_in_threads([&](int thread) {
        for (int round = 0; round < ROUNDS; ++round) {
            const std::size_t job = static_cast<std::size_t>(thread + round) % JOB_COUNT;
            wrong[static_cast<std::size_t>(thread)] += JOBS[job]() != expected[job];
        }
    });
    for (const int count : wrong)
        EXPECT_EQ(count, 0);
}

TEST_F(Threads, ThatApplyOneConverterGetTheSameResults) {
    ColorIOConverter converter;
    ASSERT_TRUE(converter.configure("wide", "film"));
    Pixels expected = source_pixels();
    ASSERT_TRUE(converter.convert_buffer(expected.data(), WIDTH, HEIGHT, 4));
    std::array<int, THREADS> wrong{};
    run_in_threads([&](int thread) {
        for (int round = 0; round < ROUNDS; ++round) {
            Pixels pixels = source_pixels();
            const bool converted = converter.convert_buffer(pixels.data(), WIDTH, HEIGHT, 4);
            wrong[static_cast<std::size_t>(thread)] += !converted || pixels != expected;
        }
    });
    for (const int count : wrong)
        EXPECT_EQ(count, 0);
}

/// Counts messages in place of the main log handler.
class CountingLog : public CoreLogHandler {
public:
    CountingLog() : replaced_(set_main_log_handler(this)) { set_level(LOG_WARNING); }
    ~CountingLog() override { set_main_log_handler(replaced_); }

    void log(unsigned int, const CoreLogStream&) override { ++count; }

    std::atomic<int> count{0};

private:
    CoreLogHandler* replaced_;
};

TEST_F(Threads, ThatAskForAMissingNameAllGetFalseAndAMessage) {
    CountingLog log;
    std::array<int, THREADS> converted{};
    run_in_threads([&](int thread) {
        for (int round = 0; round < ROUNDS; ++round)
            converted[static_cast<std::size_t>(thread)] += !between("absent", "lin").empty();
    });
    for (const int count : converted)
        EXPECT_EQ(count, 0);
    EXPECT_EQ(log.count, THREADS * ROUNDS);
}

/// Writes numbers as many languages do.
struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST_F(Threads, ThatPrintNumbersMeanwhileKeepTheirLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    std::array<int, THREADS> wrong{};
    run_in_threads([&](int thread) {
        for (int round = 0; round < ROUNDS * 10; ++round) {
            if (thread % 2 == 0) {
                wrong[static_cast<std::size_t>(thread)] += round % 10 == 0 && between("film", "wide").empty();
                continue;
            }
            std::ostringstream text;
            text << 0.5;
            wrong[static_cast<std::size_t>(thread)] += text.str() != "0,5";
        }
    });
    std::locale::global(before);
    for (const int count : wrong)
        EXPECT_EQ(count, 0);
}

} // namespace
