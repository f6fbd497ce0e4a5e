// Any bytes as a mapping file. Reading it twice doubles its rows; every row can be asked for, tidied, saved
// and loaded.

#include <cstdint>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "fuzz/colorio/fuzz_module.h"
#include "host/parser/parser_entry.h"

namespace {

/// Rows of the active table.
unsigned int ask_for_every_row(ColorIOAutoDetection& detection) {
    const unsigned int count = detection.get_categories_count();
    for (unsigned int i = 0; i < count; ++i) {
        const CoreString format = detection.get_file_format(i);
        detection.get_extension_from_file_format(format);
        detection.get_default_color_space_from_file_format(format);
        require(detection.get_color_space(count).is_empty());
        for (const CoreString& extension : detection.get_extensions(i).split_word(","))
            detection.get_default_color_space_from_extension(extension);
    }
    detection.check_mappings();
    require(detection.get_categories_count() == count);
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzModule& module = FuzzModule::get();
    const CoreString path = module.write("mapping.yaml", data, size);
    ColorIOAutoDetection detection(&module.get_app());
    const bool is_read = detection.build_from_file(path);
    if (!is_read)
        return 0;
    detection.use_file_config(true);
    const unsigned int count = ask_for_every_row(detection);
    require(detection.build_from_file(path));
    require(detection.get_categories_count() == 2 * count);
    ParserEntry entry("color_space_by_extension");
    detection.save_config(&entry);
    detection.load_config(&entry);
    return 0;
}
