// Configs made of few, awkward and repeated names: color spaces, roles, looks, views and named transforms
// that refer to each other, in cycles too, and context variables in the names of files, of the config and of
// the process.

#include <cstdint>
#include <cstdlib>

#include "fuzz/colorio/config_text.h"
#include "fuzz/colorio/config_use.h"
#include "fuzz/colorio/fuzz_module.h"

namespace {

void write_linked_files() {
    FuzzModule& module = FuzzModule::get();
    static const bool written = [&] {
        module.write("a", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n0.5\n}\n");
        module.write("curve.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n2\n}\n");
        module.write("A/curve.spi1d", "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n3\n}\n");
        return true;
    }();
    require(written);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    write_linked_files();
    const ConfigText config = make_config_text(data, size);
    for (const auto& [name, value] : config.process_variables)
        setenv(name.c_str(), value.c_str(), 1);
    if (load_config_file(FuzzModule::get().write("graph.ocio", config.text)))
        use_active_config();
    for (const auto& [name, value] : config.process_variables)
        unsetenv(name.c_str());
    return 0;
}
