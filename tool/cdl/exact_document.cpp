#include "tool/cdl/exact_document.h"

#include <fmt/format.h>

#include "tool/cdl/correction_text.h"
#include "tool/exit_code.h"
#include "xml/xml_error.h"
#include "xml/xml_node.h"

namespace tool {

namespace {

constexpr char ASC_CDL_NAMESPACE[] = "urn:ASC:CDL:v1.2";

void add_numbers(XmlNode& parent, const char* name, const std::string& numbers) {
    parent.add_child(name).add_text(numbers.c_str());
}

void fill_element(XmlNode& element, const Correction& correction) {
    element.add_attribute("id", correction.id.c_str());
    XmlNode sop = element.add_child("SOPNode");
    add_numbers(sop, "Slope", format_triple(correction.slope));
    add_numbers(sop, "Offset", format_triple(correction.offset));
    add_numbers(sop, "Power", format_triple(correction.power));
    XmlNode sat = element.add_child("SATNode");
    add_numbers(sat, "Saturation", format_number(correction.saturation));
}

} // namespace

void write_exact_document(const std::string& path, const std::vector<Correction>& corrections,
                          bool is_collection) {
    XmlNode top = XmlNode::create_top_node(is_collection ? "ColorCorrectionCollection" : "ColorCorrection");
    top.add_attribute("xmlns", ASC_CDL_NAMESPACE);
    if (!is_collection)
        fill_element(top, corrections.front());
    else
        for (const Correction& correction : corrections) {
            XmlNode element = top.add_child("ColorCorrection");
            fill_element(element, correction);
        }
    const XmlError error = top.write_to_file(path.c_str());
    if (error != XmlError::NONE)
        throw CommandError(fmt::format("cannot write '{}': {}", path, get_error_text(error)));
}

} // namespace tool
