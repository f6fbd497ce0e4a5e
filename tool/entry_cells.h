#pragma once

#include "tool/json.h"

#include <string>

#include "colorio/color_io_inspection.h"

namespace tool {

/// "lin, render space".
std::string join_texts(const CoreBasicArray<CoreString>& texts);
Json texts_to_json(const CoreBasicArray<CoreString>& texts);

/// Adds what color spaces and named transforms both say of themselves: "encoding", "categories", "aliases",
/// "description".
void add_entry_to_json(const ColorIOInspection::Entry& entry, Json& item);

} // namespace tool
