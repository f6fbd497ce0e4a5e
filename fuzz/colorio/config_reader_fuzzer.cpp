// Any bytes as an OCIO config: loaded, checked and used like one that a user chose.

#include <cstdint>

#include "fuzz/colorio/config_use.h"
#include "fuzz/colorio/fuzz_module.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (load_config_file(FuzzModule::get().write("config.ocio", data, size)))
        use_active_config();
    return 0;
}
