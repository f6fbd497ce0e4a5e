#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "colorio/color_io_inspection.h"

namespace tool {

/// "lin, render space".
std::string join_texts(const CoreBasicArray<CoreString>& texts);
nlohmann::ordered_json texts_to_json(const CoreBasicArray<CoreString>& texts);

/// Adds what colour spaces and named transforms both say of themselves: "encoding", "categories", "aliases",
/// "description".
void add_entry_to_json(const ColorIOInspection::Entry& entry, nlohmann::ordered_json& item);

} // namespace tool
