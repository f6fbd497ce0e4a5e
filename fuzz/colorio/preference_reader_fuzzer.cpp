// Any bytes as the preference file. What the program and the module load from it and save is a file that
// loads again, and saving that changes nothing.

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_manager.h"
#include "fuzz/colorio/fuzz_module.h"
#include "host/parser/parser_entry.h"
#include "standalone/preferences.h"

namespace {

std::string read_file(const CoreString& path) {
    std::ifstream file(path.get_data(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Sets the built-in ones of the module's records again, unless these are all: the module makes a config for
/// every change.
template <class Record>
void keep_builtin(const CoreVector<Record>& records) {
    CoreVector<Record> builtin;
    for (const Record& record : records)
        if (record.is_builtin)
            builtin.append(record);
    if (builtin.get_count() != records.get_count())
        ColorIOManager::get_instance()->set_tavelion_config(builtin);
}

/// Loading adds to what is there: without this an input would meet what earlier ones left.
void forget_preferences(StandaloneApp& app) {
    app.set_use_color_space_file(false);
    app.set_color_space_file_path("");
    app.set_cdl_library_file_path("");
    app.set_default_color_space_name("linear");
    app.set_use_color_space_by_extension_file(0);
    app.set_color_space_by_extension_file_path("");
    ColorIOAutoDetection::destroy();
    ColorIOAutoDetection::static_init(&app);
    const ColorIOManager& manager = *ColorIOManager::get_instance();
    keep_builtin(manager.get_tavelion_color_spaces());
    keep_builtin(manager.get_tavelion_color_decision_lists());
}

bool load_and_save(const CoreString& path) {
    static bool is_untouched = true; // forgetting takes longer than refusing most inputs
    StandaloneApp& app = FuzzModule::get().get_app();
    if (!is_untouched)
        forget_preferences(app);
    PreferenceFile file(path);
    is_untouched = !file.load(app);
    if (is_untouched)
        return false;
    ColorIO::load_config(&file.get_color_management());
    require(file.save(app, ColorIO::save_config));
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzModule& module = FuzzModule::get();
    const CoreString path = module.write("preferences.yaml", data, size);
    if (!load_and_save(path)) {
        // Else the next damaged file takes the first free one of ever more names.
        module.remove("preferences.yaml.damaged-1");
        return 0;
    }
    const std::string saved = read_file(path);
    require(load_and_save(path));
    require(read_file(path) == saved);
    return 0;
}
