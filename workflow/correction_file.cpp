#include "workflow/correction_file.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>

#include <strings.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/file_failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "workflow/correction_text.h"
#include "workflow/nearest_names.h"
#include "xml/xml_error.h"
#include "xml/xml_node.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using diagnostics::fail_file;

constexpr std::string_view BLANKS = " \t\r\n";

/// Elements of a ColorCorrection that are not reported as ignored.
constexpr const char* CORRECTION_ELEMENTS[] = {"SOPNode", "SatNode", "Description", "InputDescription",
                                               "ViewingDescription"};

bool is_called(const XmlNode& node, const char* name) {
    return node.get_name() && strcasecmp(node.get_name(), name) == 0;
}

bool is_file(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error);
}

[[noreturn]] void fail_to_read(const files::Failure& failure) {
    throw diagnostics::Failure(files::to_diagnostic(failure));
}

[[noreturn]] void fail_at(const std::string& path, unsigned int line, std::string message) {
    Diagnostic error = diagnostics::make_file_error(Code::CDL_INVALID, std::move(message), path);
    error.line = line;
    throw diagnostics::Failure(std::move(error));
}

XmlNode parse_document(const std::string& path) {
    if (const auto opened = files::open_for_reading(path); !opened)
        fail_to_read(opened.get_failure());
    XmlResults results;
    XmlNode top = XmlNode::parse_file_as_guessed(path.c_str(), nullptr, &results);
    if (results.error == XmlError::NONE)
        return top;
    const std::string reason = get_error_reason(results.error);
    Diagnostic error = diagnostics::make_file_error(
        Code::XML_MALFORMED, results.line > 0 ? reason : fmt::format("cannot read '{}': {}", path, reason),
        path);
    error.line = static_cast<unsigned int>(results.line);
    error.column = static_cast<unsigned int>(results.column);
    throw diagnostics::Failure(std::move(error));
}

/// Reads one ColorCorrection element.
class CorrectionReader {
public:
    CorrectionReader(const XmlNode& element, const std::string& path, std::size_t position)
        : element(element), path(path), position(position) {}

    Correction read() {
        correction.line = static_cast<unsigned int>(element.get_line());
        for (int i = 0; i < element.count_attributes(); ++i)
            if (std::strcmp(element.get_attribute_name(i), "id") == 0)
                correction.id = element.get_attribute_value(i);
        collect_descriptions(element);
        read_slope_offset_power(element.get_child("SOPNode"));
        read_saturation(element.get_child("SatNode"));
        find_unread_elements();
        return std::move(correction);
    }

private:
    void find_unread_elements() {
        for (int i = 0; i < element.count_children(); ++i) {
            const XmlNode child = element.get_child(i);
            const bool is_known = std::any_of(std::begin(CORRECTION_ELEMENTS), std::end(CORRECTION_ELEMENTS),
                                              [&](const char* name) { return is_called(child, name); });
            if (!is_known)
                correction.unread_elements.emplace_back(child.get_name());
        }
    }

    void collect_descriptions(const XmlNode& node) {
        int next = 0;
        for (int count = node.count_children("Description"); count > 0; --count)
            if (const char* text = node.get_child("Description", &next).get_text(0))
                correction.descriptions.emplace_back(text);
    }

    void read_slope_offset_power(const XmlNode& node) {
        if (node.is_empty())
            return;
        correction.has_usual_names = std::strcmp(node.get_name(), "SOPNode") == 0;
        collect_descriptions(node);
        read_numbers(node, "Slope", correction.slope, std::size(correction.slope));
        read_numbers(node, "Offset", correction.offset, std::size(correction.offset));
        read_numbers(node, "Power", correction.power, std::size(correction.power));
    }

    void read_saturation(const XmlNode& node) {
        if (node.is_empty())
            return;
        collect_descriptions(node);
        read_numbers(node, "Saturation", &correction.saturation, 1);
    }

    void read_numbers(const XmlNode& parent, const char* name, float* values, std::size_t count) const {
        const XmlNode node = parent.get_child(name);
        if (node.is_empty())
            fail(parent, fmt::format("{} is missing", name));
        std::string_view text = node.get_text(0) ? node.get_text(0) : "";
        std::size_t found = 0;
        for (std::size_t start; (start = text.find_first_not_of(BLANKS)) != std::string_view::npos; ++found) {
            text.remove_prefix(start);
            const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
            const auto value = parse_number(word);
            if (!value)
                fail(node, fmt::format("{} contains '{}', which is not a number", name, word));
            if (found < count)
                values[found] = *value;
            text.remove_prefix(word.size());
        }
        if (found != count)
            fail(node, fmt::format("{} has {} numbers instead of {}", name, found, count));
    }

    [[noreturn]] void fail(const XmlNode& place, const std::string& reason) const {
        const std::string name = correction.id.empty() ? "" : fmt::format(" ('{}')", correction.id);
        fail_at(path, static_cast<unsigned int>(place.get_line()),
                fmt::format("color correction {}{}: {}", position, name, reason));
    }

    const XmlNode& element;
    const std::string& path;
    const std::size_t position; ///< From 1.
    Correction correction;
};

/// An element whose children are being visited.
struct Visited {
    XmlNode node;
    int next_child;
};

std::vector<std::string> get_ids(const std::vector<Correction>& corrections) {
    std::vector<std::string> ids;
    for (const Correction& correction : corrections)
        ids.push_back(correction.id);
    return ids;
}

void add_unread_elements(const Correction& correction, const std::string& path,
                         diagnostics::Diagnostics& notes) {
    if (correction.unread_elements.empty())
        return;
    Diagnostic& warning = notes.emplace_back(diagnostics::make_file_warning(
        Code::CDL_ELEMENT_IGNORED,
        fmt::format(
            "the color correction '{}' contains elements that are ignored here and by OpenColorIO: {}",
            correction.id, fmt::join(correction.unread_elements, ", ")),
        path));
    warning.subject = correction.id;
    warning.line = correction.line;
}

/// OpenColorIO, too, takes the first color correction of a file where no id is given.
void note_later_corrections(const Correction& correction, const std::string& path,
                            diagnostics::Diagnostics& notes) {
    if (correction.later_ids.empty())
        return;
    std::vector<std::string> ids = correction.later_ids;
    ids.insert(ids.begin(), correction.id);
    const std::size_t count = ids.size();
    ids.erase(std::remove(ids.begin(), ids.end(), ""), ids.end());
    Diagnostic note = diagnostics::make_file_note(
        Code::CDL_CHOSEN,
        fmt::format("'{}' has {} color corrections, and the first one{} is used", path, count,
                    correction.id.empty() ? "" : fmt::format(", '{}',", correction.id)),
        path);
    note.subject = correction.id;
    notes.push_back(ids.empty() ? std::move(note)
                                : with_hint(std::move(note), fmt::format("choose one with {}:ID; its ids: {}",
                                                                         path, fmt::join(ids, ", "))));
}

} // namespace

std::vector<Correction> read_corrections(const std::string& path) {
    std::vector<Correction> corrections;
    // Not recursive: documents may nest deeper than the stack.
    std::vector<Visited> open = {{parse_document(path), 0}};
    while (!open.empty()) {
        Visited& current = open.back();
        const bool is_correction = is_called(current.node, "ColorCorrection");
        if (is_correction)
            corrections.push_back(CorrectionReader(current.node, path, corrections.size() + 1).read());
        if (is_correction || current.next_child == current.node.count_children())
            open.pop_back();
        else
            open.push_back({current.node.get_child(current.next_child++), 0});
    }
    if (corrections.empty())
        diagnostics::fail_to_read(Code::CDL_INVALID, path, "no ColorCorrection element");
    return corrections;
}

void add_correction_notes(const Correction& correction, const std::string& path,
                          diagnostics::Diagnostics& notes) {
    add_unread_elements(correction, path, notes);
    note_later_corrections(correction, path, notes);
}

CorrectionSource parse_correction_source(const std::string& text) {
    if (is_file(text))
        return {text, ""};
    for (std::size_t colon = text.rfind(':'); colon != std::string::npos && colon > 0;
         colon = text.rfind(':', colon - 1))
        if (is_file(text.substr(0, colon)))
            return {text.substr(0, colon), text.substr(colon + 1)};
    fail_to_read(files::open_for_reading(text).get_failure());
}

Correction read_correction(const CorrectionSource& source) {
    std::vector<Correction> corrections = read_corrections(source.path);
    if (source.id.empty()) {
        Correction first = std::move(corrections.front());
        corrections.erase(corrections.begin());
        first.later_ids = get_ids(corrections);
        return first;
    }
    const auto found = std::find_if(corrections.begin(), corrections.end(),
                                    [&](const Correction& candidate) { return candidate.id == source.id; });
    if (found != corrections.end())
        return *found;
    Diagnostic missing = diagnostics::make_file_error(
        Code::CDL_ID_MISSING, fmt::format("no color correction '{}' in '{}'", source.id, source.path),
        source.path);
    missing.subject = source.id;
    missing.hint = did_you_mean(source.id, get_ids(corrections));
    throw diagnostics::Failure(std::move(missing));
}

Correction read_valid_correction(const CorrectionSource& source) {
    Correction correction = read_correction(source);
    const std::string problem = find_invalid_number(correction);
    if (problem.empty())
        return correction;
    const std::string name = correction.id.empty() ? "" : fmt::format(" '{}'", correction.id);
    fail_at(source.path, correction.line, fmt::format("invalid CDL{}: {}", name, problem));
}

} // namespace workflow
