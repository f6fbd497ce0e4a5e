#include "colorio/ocio/cdl_document.h"

#include <charconv>
#include <string_view>

#include "colorio/ocio/error.h"
#include "colorio/ocio/types.h"

namespace ocio {

namespace {

constexpr std::string_view DECLARATION = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view NAMESPACE = " xmlns=\"urn:ASC:CDL:v1.01\"";
/// More characters than the shortest text of any double has that reads back as that double.
constexpr std::size_t MAX_NUMBER_LENGTH = 32;

std::string escaped(std::string_view text) {
    std::string result;
    for (const char c : text)
        switch (c) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '"':
            result += "&quot;";
            break;
        default:
            result += c;
        }
    return result;
}

std::string to_text(double number) {
    char text[MAX_NUMBER_LENGTH];
    return {text, std::to_chars(text, text + MAX_NUMBER_LENGTH, number).ptr};
}

std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}

std::string element(const std::string& name, const double rgb[3]) {
    return element(name, to_text(rgb[0]) + " " + to_text(rgb[1]) + " " + to_text(rgb[2]));
}

/// `attributes` go to the element besides the id, which is left out where there is none.
std::string correction_element(const CdlNumbers& numbers, std::string_view attributes) {
    std::string text = "<ColorCorrection";
    text += attributes;
    if (!numbers.id.empty())
        text += " id=\"" + escaped(numbers.id) + "\"";
    return text + ">\n    " +
           element("SOPNode", element("Slope", numbers.slope) + element("Offset", numbers.offset) +
                                  element("Power", numbers.power)) +
           "\n    " + element("SatNode", element("Saturation", to_text(numbers.saturation))) +
           "\n</ColorCorrection>\n";
}

} // namespace

/// This version's writer supports single corrections only, and writes seven digits.
std::string write_cdl_document(const std::vector<CdlNumbers>& corrections, bool is_collection) {
    std::string document(DECLARATION);
    if (!is_collection) {
        if (corrections.size() != 1)
            throw_error(diagnostics::Code::CDL_INVALID,
                        "a document of a single CDL contains exactly one color correction");
        return document + correction_element(corrections.front(), NAMESPACE);
    }
    document += "<ColorCorrectionCollection";
    document += NAMESPACE;
    document += ">\n";
    for (const CdlNumbers& numbers : corrections)
        document += correction_element(numbers, "");
    return document + "</ColorCorrectionCollection>\n";
}

} // namespace ocio
