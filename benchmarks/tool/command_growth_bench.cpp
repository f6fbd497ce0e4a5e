// How whole commands grow with the config, beside what the library takes to load it and to make the same
// conversions. Times are processor time, of the user and of the system.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>
#include <benchmark/benchmark.h>

namespace OCIO = OCIO_NAMESPACE;

namespace {

constexpr int FAMILIES = 20;
constexpr int VIEWS_OF_A_DISPLAY = 100;

/// A config below the temporary folder, where the commands also keep their settings and files. All of it goes
/// away with the object.
class ConfigFolder {
public:
    explicit ConfigFolder(int spaces) {
        std::string name = (std::filesystem::temp_directory_path() / "qb_bench_XXXXXX").string();
        folder = mkdtemp(name.data());
        setenv("XDG_CACHE_HOME", folder.c_str(), 1);
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
        unsetenv("OCIO");
        std::ofstream(get_config()) << make_config(spaces);
    }
    ~ConfigFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    ConfigFolder(const ConfigFolder&) = delete;
    ConfigFolder& operator=(const ConfigFolder&) = delete;

    std::string get_config() const { return folder + "/show.ocio"; }

private:
    /// As many views as color spaces, in displays of a hundred.
    static std::string make_config(int spaces) {
        std::string text = "ocio_profile_version: 1\nsearch_path: .\n"
                           "roles: {scene_linear: space0, default: space0}\ndisplays:\n";
        for (int i = 0; i < spaces; ++i) {
            const std::string number = std::to_string(i);
            if (i % VIEWS_OF_A_DISPLAY == 0)
                text += "  display" + number + ":\n";
            text += "    - !<View> {name: view" + number + ", colorspace: space" + number + "}\n";
        }
        text += "colorspaces:\n";
        for (int i = 0; i < spaces; ++i) {
            const std::string number = std::to_string(i);
            text += "  - !<ColorSpace>\n    name: space" + number + "\n    family: family" +
                    std::to_string(i % FAMILIES) +
                    "\n    to_reference: !<MatrixTransform> {matrix: [1, 0, 0, 0, 0, 2, 0, 0, 0, 0, 3, 0, 0, "
                    "0, 0, 1]}\n";
        }
        return text;
    }

    std::string folder;
};

double get_seconds(const rusage& usage) {
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Processor time of a command whose output goes nowhere; below 0 where it fails.
double run_tool(const std::vector<std::string>& arguments) {
    std::vector<char*> words = {const_cast<char*>(QB_TOOL)};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    const int error = posix_spawn(&process, QB_TOOL, &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage = {};
    if (error != 0 || wait4(process, &status, 0, &usage) != process || status != 0)
        return -1;
    return get_seconds(usage);
}

void run_command(benchmark::State& state, const char* command) {
    const ConfigFolder folder(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const double seconds = run_tool({command, "--config", folder.get_config()});
        if (seconds < 0)
            state.SkipWithError("the command failed");
        state.SetIterationTime(seconds);
    }
}

void list(benchmark::State& state) {
    run_command(state, "list");
}

void check(benchmark::State& state) {
    run_command(state, "check");
}

template <class Work>
void time_library(benchmark::State& state, const Work& work) {
    const ConfigFolder folder(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        rusage before = {}, after = {};
        getrusage(RUSAGE_SELF, &before);
        work(folder.get_config());
        getrusage(RUSAGE_SELF, &after);
        state.SetIterationTime(get_seconds(after) - get_seconds(before));
    }
}

void library_load(benchmark::State& state) {
    time_library(state, [](const std::string& path) {
        benchmark::DoNotOptimize(OCIO::Config::CreateFromFile(path.c_str()));
    });
}

/// What a list of the color spaces asks the library for.
void library_load_and_look_up(benchmark::State& state) {
    time_library(state, [](const std::string& path) {
        const OCIO::ConstConfigRcPtr config = OCIO::Config::CreateFromFile(path.c_str());
        for (int i = 0; i < config->getNumColorSpaces(); ++i)
            benchmark::DoNotOptimize(config->getColorSpace(config->getColorSpaceNameByIndex(i)));
    });
}

/// What `check` tries: every color space both ways, and every view.
void library_load_and_convert(benchmark::State& state) {
    time_library(state, [](const std::string& path) {
        const OCIO::ConstConfigRcPtr config = OCIO::Config::CreateFromFile(path.c_str());
        const auto make = [&](const OCIO::ConstProcessorRcPtr& processor) {
            benchmark::DoNotOptimize(processor->getOptimizedCPUProcessor(OCIO::OPTIMIZATION_LOSSLESS));
        };
        for (int i = 1; i < config->getNumColorSpaces(); ++i) {
            const char* const name = config->getColorSpaceNameByIndex(i);
            make(config->getProcessor(name, "space0"));
            make(config->getProcessor("space0", name));
        }
        for (int display = 0; display < config->getNumDisplays(); ++display)
            for (int view = 0; view < config->getNumViews(config->getDisplay(display)); ++view)
                make(config->getProcessor("space0", config->getDisplay(display),
                                          config->getView(config->getDisplay(display), view),
                                          OCIO::TRANSFORM_DIR_FORWARD));
    });
}

void with_sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int spaces : {1, 1000, 2000, 4000, 8000})
        benchmark->Arg(spaces);
    benchmark->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

} // namespace

BENCHMARK(list)->Apply(with_sizes);
BENCHMARK(check)->Apply(with_sizes);
BENCHMARK(library_load)->Apply(with_sizes);
BENCHMARK(library_load_and_look_up)->Apply(with_sizes);
BENCHMARK(library_load_and_convert)->Apply(with_sizes);
