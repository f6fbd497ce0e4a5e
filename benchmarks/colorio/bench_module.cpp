#include "benchmarks/colorio/bench_module.h"

#include <stdlib.h>

#include <fstream>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "host/core/core_log.h"

BenchApp::BenchApp(std::string folder) : folder(std::move(folder)) {
    CoreLogHandler::get_main_log_handler().set_level(0);
}

BenchFolder::BenchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "qb_bench_XXXXXX").string();
    path = mkdtemp(name.data());
}

BenchFolder::~BenchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string BenchFolder::write(const std::string& name, const std::string& text) const {
    const std::string file = path + "/" + name;
    std::ofstream(file, std::ios::binary) << text;
    return file;
}

void stop_module() {
    ColorIO::destroy();
    ColorIOAutoDetection::destroy();
    // The facade outlives the manager and connects to its own events with every start; a process starts once.
    ColorIO::___class_destructor__(ColorIO::s_singleton, false);
    ColorIO::s_singleton = nullptr;
}
