#include "colorio/cdl/cdl_document.h"

#include <charconv>
#include <string_view>

#include "colorio/color_io_cdl_ranges.h"
#include "colorio/facade/color_io_log.h"
#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"

namespace {

using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

/// Slope, offset and power with three components each, then saturation, as consecutive numbers.
constexpr unsigned int NUMBER_COUNT = 10;
constexpr unsigned int SATURATION_NUMBER = 9;

float& get_number(ColorDecisionListDef& def, unsigned int index) {
    if (index >= SATURATION_NUMBER)
        return def.saturation;
    float* const rows[] = {def.slope, def.offset, def.power};
    return rows[index / 3][index % 3];
}

void read_numbers(const XmlNode& element, unsigned int first, unsigned int end, ColorDecisionListDef& def) {
    unsigned int index = first;
    for (const CoreString& word : CoreString(element.get_text(0)).split_word(" ")) {
        if (index == end)
            return;
        get_number(def, index++) = static_cast<float>(word.to_double());
    }
}

/// Whether the element's text is exactly `count` valid numbers.
bool holds_numbers(const XmlNode& element, unsigned int count, CDLNumber kind) {
    const CoreVector<CoreString> words = CoreString(element.get_text(0)).split_word(" ");
    for (const CoreString& word : words) {
        const std::string_view text = word.view();
        double value = 0;
        const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
        if (read.ec != std::errc() || read.ptr != text.data() + text.size() ||
            !is_valid_CDL_number(kind, value))
            return false;
    }
    return words.get_count() == count;
}

} // namespace

bool is_valid_correction(const XmlNode& correction) {
    const XmlNode sop = correction.get_child("SOPNode");
    return holds_numbers(sop.get_child("Slope"), 3, CDLNumber::SLOPE) &&
           holds_numbers(sop.get_child("Offset"), 3, CDLNumber::OFFSET) &&
           holds_numbers(sop.get_child("Power"), 3, CDLNumber::POWER) &&
           holds_numbers(correction.get_child("SATNode").get_child("Saturation"), 1, CDLNumber::SATURATION);
}

ColorDecisionListDef make_identity_CDL() {
    return {"", "", "", {1.0f, 1.0f, 1.0f}, {0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}, 1.0f, false};
}

XmlNode get_document_element(XmlNode top) {
    if (!top.get_name() || CoreString(top.get_name()).start_with("xml"))
        top = top.get_child(0);
    while (top.is_declaration())
        top = top.get_child(0);
    return top;
}

diagnostics::Diagnostic describe_malformed(const CoreString& path, const XmlResults& results) {
    if (const auto opened = files::open_for_reading(path.get_data()); !opened)
        return files::to_diagnostic(opened.get_failure());
    const std::string reason = get_error_reason(results.error);
    diagnostics::Diagnostic error = diagnostics::make_file_error(
        diagnostics::Code::XML_MALFORMED,
        results.line > 0 ? reason : "cannot read '" + std::string(path.view()) + "': " + reason,
        path.get_data());
    error.line = static_cast<unsigned int>(results.line);
    error.column = static_cast<unsigned int>(results.column);
    return error;
}

bool parse_CDL_document(const CoreString& path, XmlNode& element, Printing printing) {
    XmlResults results;
    const auto parse =
        printing == Printing::PRINTED ? XmlNode::parse_file_or_report : XmlNode::parse_file_as_guessed;
    const XmlNode top = parse(path.get_data(), nullptr, &results);
    if (top.is_empty() || results.error != XmlError::NONE) {
        log_message(LOG_ERROR, "XML Error with file '", path, "'.\n");
        ColorIODiagnostics::report(describe_malformed(path, results));
        return false;
    }
    element = get_document_element(top);
    return true;
}

void log_missing_node(const char* element, const CoreString& path) {
    log_message(LOG_ERROR, "Node '", element, "' not find in '", path, "'.\n");
    report_file(LOG_ERROR, diagnostics::Code::CDL_INVALID, path,
                "no element '" + std::string(element) + "' in '" + std::string(path.view()) + "'");
}

CoreString get_correction_id(const XmlNode& correction) {
    for (int i = 0; i < correction.count_attributes(); ++i)
        if (CoreString("id") == correction.get_attribute_name(i))
            return correction.get_attribute_value(i);
    return CoreString();
}

bool read_color_correction(const XmlNode& correction, const CoreString& path, MissingElement missing,
                           ColorDecisionListDef& def) {
    const bool give_up = missing == MissingElement::GIVE_UP;
    const XmlNode sop = correction.get_child("SOPNode");
    if (sop.is_empty()) {
        log_missing_node("SOPNode", path);
        if (give_up)
            return false;
    } else {
        unsigned int first = 0;
        for (const char* name : {"Slope", "Offset", "Power"}) {
            const XmlNode element = sop.get_child(name);
            if (!element.is_empty()) {
                read_numbers(element, first, NUMBER_COUNT, def);
            } else {
                log_missing_node(name, path);
                if (give_up)
                    return false;
            }
            first += 3;
        }
    }
    const XmlNode saturation = correction.get_child("SATNode").get_child("Saturation");
    if (saturation.is_empty()) {
        log_missing_node("Saturation", path);
        return !give_up;
    }
    if (const char* text = saturation.get_text(0))
        def.saturation = static_cast<float>(CoreString(text).to_double());
    def.is_builtin = false;
    return true;
}
