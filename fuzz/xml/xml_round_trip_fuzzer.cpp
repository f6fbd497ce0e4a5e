// A document that was read without an error is written and read again: the tree must be equal.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/xml/fuzz_settings.h"
#include "fuzz/xml/tree_text.h"
#include "xml/xml_node.h"
#include "xml/xml_settings.h"

namespace {

void check_round_trip(const XmlNode& top, int format) {
    const std::string written = top.create_string(format);
    XmlResults results;
    const XmlNode again = XmlNode::parse_string(written.c_str(), nullptr, &results);
    if (results.error != XmlError::NONE || tree_text(again) != tree_text(top))
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    select_fuzz_settings(data[0]);
    const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    XmlResults results;
    const XmlNode top = XmlNode::parse_string(text.c_str(), nullptr, &results);
    if (results.error != XmlError::NONE)
        return 0;
    check_round_trip(top, -1);
    if (get_xml_settings().drop_white_space)
        check_round_trip(top, 0);
    return 0;
}
