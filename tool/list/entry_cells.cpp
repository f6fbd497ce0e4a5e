#include "tool/list/entry_cells.h"

namespace tool {

std::string join_texts(const CoreBasicArray<CoreString>& texts) {
    std::string line;
    for (const CoreString& text : texts)
        line += (line.empty() ? "" : ", ") + std::string(text.view());
    return line;
}

nlohmann::ordered_json texts_to_json(const CoreBasicArray<CoreString>& texts) {
    auto list = nlohmann::ordered_json::array();
    for (const CoreString& text : texts)
        list.push_back(text.get_data());
    return list;
}

void add_entry_to_json(const ColorIOInspection::Entry& entry, nlohmann::ordered_json& item) {
    item["encoding"] = entry.encoding.get_data();
    item["categories"] = texts_to_json(entry.categories);
    item["aliases"] = texts_to_json(entry.aliases);
    item["description"] = entry.description.get_data();
}

} // namespace tool
