#pragma once

#include "tool/json.h"

#include <string>

#include "colorio/color_io_inspection.h"

namespace tool {

/// The texts in one line: "lin, render space".
std::string join_texts(const CoreBasicArray<CoreString>& texts);
Json texts_to_json(const CoreBasicArray<CoreString>& texts);

/// Adds the members that color spaces and named transforms share: "encoding", "categories", "aliases",
/// "description".
void add_entry_to_json(const ColorIOInspection::Entry& entry, Json& item);

} // namespace tool
