#include "tool/entry_cells.h"
#include "tool/json.h"

namespace tool {

std::string join_texts(const CoreBasicArray<CoreString>& texts) {
    std::string line;
    for (const CoreString& text : texts)
        line += (line.empty() ? "" : ", ") + std::string(text.view());
    return line;
}

Json texts_to_json(const CoreBasicArray<CoreString>& texts) {
    Json list = Json::array();
    for (const CoreString& text : texts)
        list.push(text.get_data());
    return list;
}

void add_entry_to_json(const ColorIOInspection::Entry& entry, Json& item) {
    item.set("encoding", entry.encoding.get_data());
    item.set("categories", texts_to_json(entry.categories));
    item.set("aliases", texts_to_json(entry.aliases));
    item.set("description", entry.description.get_data());
}

} // namespace tool
