// Any bytes as a .cc, .ccc or .cdl file, in one of three uses that the first byte chooses: as the CDL
// library, as a document read into a record, and as the file that a record names. The library is written as a
// collection, which must read back as the same names.

#include <cstdint>

#include "colorio/color_io_manager.h"
#include "fuzz/colorio/fuzz_module.h"

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

constexpr const char* FILE_NAMES[] = {"grade.cc", "grade.ccc", "grade.cdl", "grade.CCC"};

ColorDecisionListDef make_record() {
    return {"record", "", "", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1, false};
}

void load_library(const CoreString& path) {
    FuzzModule::get().get_app().set_cdl_library_file_path(path);
    ColorIOManager::get_instance()->update_file_cdl_library_path();
}

void read_document(const CoreString& path) {
    for (const bool is_collection : {false, true}) {
        ColorDecisionListDef def = make_record();
        ColorIOManager::get_instance()->read_CDL_from_XML(path, def, is_collection);
        require(def.name == "record" && def.file.is_empty());
    }
}

void add_record_of_file(const CoreString& path, const CoreString& cccid) {
    ColorDecisionListDef def = make_record();
    def.file = path;
    def.cccid = cccid;
    require(ColorIOManager::get_instance()->add_local_CDL(def));
}

/// The records that the library at `path` brought, the built-in one left out.
CoreVector<ColorDecisionListDef> get_library(const CoreString& path) {
    CoreVector<ColorDecisionListDef> records;
    for (const auto& def : ColorIOManager::get_instance()->get_tavelion_color_decision_lists())
        if (def.file == path && def.name != ColorIOManager::s_default_CDL_name)
            records.append(def);
    return records;
}

void check_round_trip(const CoreVector<ColorDecisionListDef>& written) {
    if (written.is_empty())
        return;
    const CoreString path = FuzzModule::get().get_path("written.ccc").c_str();
    require(ColorIOManager::get_instance()->create_XML_from_CDL(written, path, true));
    load_library(path);
    const CoreVector<ColorDecisionListDef> read = get_library(path);
    require(read.get_count() == written.get_count());
    for (unsigned int i = 0; i < read.get_count(); ++i)
        require(read[i].name == written[i].name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    FuzzModule& module = FuzzModule::get();
    const CoreString path = module.write(FILE_NAMES[data[0] & 3], data + 1, size - 1);
    switch ((data[0] >> 2) & 3) {
    case 0:
        load_library(path);
        check_round_trip(get_library(path));
        break;
    case 1:
        read_document(path);
        break;
    default:
        add_record_of_file(path, (data[0] & 16) != 0 ? "0" : "look");
        break;
    }
    return 0;
}
