#include "fuzz/colorio/fuzz_module.h"

#include <cstdlib>
#include <filesystem>

#include "colorio/color_io.h"
#include "host/core/core_log.h"

void require(bool condition) {
    if (!condition)
        std::abort();
}

FuzzModule::FuzzModule() : app(folder.get_path().c_str()) {
    CoreLogHandler::get_main_log_handler().set_level(0);
    require(ColorIO::init(&app));
}

FuzzModule& FuzzModule::get() {
    static FuzzModule module;
    return module;
}

CoreString FuzzModule::write(const std::string& name, const std::uint8_t* data, std::size_t size) {
    return folder.write(name, std::string(reinterpret_cast<const char*>(data), size)).c_str();
}

CoreString FuzzModule::write(const std::string& name, const std::string& text) {
    return folder.write(name, text).c_str();
}

void FuzzModule::remove(const std::string& name) const {
    std::filesystem::remove(folder.file(name));
}
