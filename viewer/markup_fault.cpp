#include "viewer/markup_fault.h"

#include <fmt/format.h>

#include "xml/xml_error.h"
#include "xml/xml_node.h"

namespace tool {

std::string find_markup_fault(const std::string& path) {
    XmlResults results;
    XmlNode::parse_file(path.c_str(), nullptr, &results);
    if (results.error == XmlError::NONE)
        return "";
    std::string text = get_error_text(results.error);
    while (!text.empty() && (text.back() == '.' || text.back() == '\n'))
        text.pop_back();
    return results.line > 0 ? fmt::format("{} at line {}, column {}", text, results.line, results.column)
                            : text;
}

} // namespace tool
