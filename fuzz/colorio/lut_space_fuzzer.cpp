// Any bytes as the LUT file of a custom color space, of every extension that OpenColorIO reads.

#include <cstdint>
#include <string>

#include "colorio/color_io_manager.h"
#include "colorio/ocio/types.h"
#include "fuzz/colorio/conversion_use.h"
#include "fuzz/colorio/fuzz_module.h"

namespace {

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

constexpr const char* EXTENSIONS[] = {"cube", "spi1d", "spi3d", "spimtx", "3dl",  "lut", "csp", "cub",
                                      "hdl",  "vf",    "mga",   "m3d",    "look", "itx", "clf", "ctf",
                                      "icc",  "cc",    "ccc",   "cdl",    "amf",  "ICM", "",    "discard"};
constexpr const char* NAME = "fuzzed";

/// The built-in records and one of the LUT at `path`; `choice` sets its allocation.
CoreVector<ColorSpaceDef> make_records(const CoreString& path, std::uint8_t choice) {
    CoreVector<ColorSpaceDef> records;
    for (const ColorSpaceDef& record : ColorIOManager::get_instance()->get_tavelion_color_spaces())
        if (record.is_builtin)
            records.append(record);
    ColorSpaceDef record{};
    record.name = NAME;
    record.lut_file = path;
    record.bit_depth = choice & 15;
    record.allocation = (choice >> 4) & 3;
    record.allocation_vars[0] = (choice & 64) != 0 ? -8.0f : 0.0f;
    record.allocation_vars[1] = (choice & 128) != 0 ? 8.0f : 1.0f;
    records.append(record);
    return records;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const char* const extension = EXTENSIONS[data[0] % (sizeof EXTENSIONS / sizeof *EXTENSIONS)];
    ocio::clear_all_caches(); // OpenColorIO caches files by their names.
    const CoreString path = FuzzModule::get().write(std::string("lut.") + extension, data + 2, size - 2);
    ColorIOManager& manager = *ColorIOManager::get_instance();
    manager.set_tavelion_config(make_records(path, data[1]));
    require(manager.is_using_tavelion_config());
    ColorIOConverter converter;
    for (const auto& [source, destination] : {std::pair("linear", NAME), std::pair(NAME, "linear")})
        if (converter.configure(source, destination) && converter.is_enabled())
            use_converter(converter);
    // The LUT of a shader takes five times as long as everything else.
    if (converter.is_enabled() && size % 16 == 0)
        use_shaders(converter);
    return 0;
}
