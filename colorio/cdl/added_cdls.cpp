#include "colorio/cdl/added_cdls.h"

#include <algorithm>
#include <cstring>

#include "host/sys/sys_filesystem.h"

namespace {

using Def = AddedCDLs::Def;

/// Compares bits, so that a record with NaN equals itself.
bool have_equal_numbers(const Def& a, const Def& b) {
    const auto equal = [](const float* x, const float* y, std::size_t count) {
        return std::memcmp(x, y, count * sizeof(float)) == 0;
    };
    return equal(a.slope, b.slope, 3) && equal(a.offset, b.offset, 3) && equal(a.power, b.power, 3) &&
           equal(&a.saturation, &b.saturation, 1);
}

std::string get_key(const Def& def) {
    return std::string(def.name.get_lower_case().view());
}

} // namespace

bool AddedCDLs::holds(const Def& def, bool from_file) const {
    const auto found = sources.find(get_key(def));
    if (found == sources.end() || found->second.from_file != from_file)
        return false;
    const Def& held = found->second.def;
    return held.name == def.name && held.file == def.file && held.cccid == def.cccid &&
           have_equal_numbers(held, def);
}

void AddedCDLs::remember(const Def& def, bool from_file) {
    const std::string key = get_key(def);
    sources.insert_or_assign(key, Source{def, from_file});
    const auto record = listed.find(key);
    if (record != listed.end())
        replaced_key = holds(record->second, from_file) ? "" : key;
}

bool AddedCDLs::holds_as_before(const Def& def) const {
    const auto file = list_files.find(def.file.get_data());
    return holds(def, file != list_files.end() && file->second);
}

void AddedCDLs::note_list(const List& list) {
    complete_list = nullptr;
    listed.clear();
    list_files.clear();
    replaced_key.clear();
    for (const Def& def : list) {
        if (def.is_builtin)
            continue;
        if (!def.file.is_empty() && list_files.count(def.file.get_data()) == 0)
            list_files.emplace(def.file.get_data(), SysFilesystem::file_exists(def.file));
        if (!holds_as_before(def))
            return;
    }
    for (const Def& def : list)
        if (!def.is_builtin)
            listed.emplace(get_key(def), def);
    // A record that overwrites a built-in one is added before a custom one of the same name, which replaces
    // it at once.
    const bool has_hidden_name = std::any_of(list.begin(), list.end(), [this](const Def& def) {
        return def.is_builtin && listed.count(get_key(def)) != 0;
    });
    if (!has_hidden_name)
        complete_list = &list;
}

void AddedCDLs::forget_list() {
    complete_list = nullptr;
}

bool AddedCDLs::is_complete(const List& list) const {
    return complete_list == &list && std::all_of(list_files.begin(), list_files.end(), [](const auto& file) {
               return SysFilesystem::file_exists(file.first.c_str()) == file.second;
           });
}

const Def* AddedCDLs::find_replaced(const Def& def) const {
    if (replaced_key.empty() || replaced_key == get_key(def))
        return nullptr;
    return &listed.at(replaced_key);
}
