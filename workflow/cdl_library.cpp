#include "workflow/cdl_library.h"

#include <cstring>
#include <filesystem>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "colorio/color_io_candidate.h"
#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "host/sys/sys_filesystem.h"
#include "standalone/sys/process_folder.h"
#include "standalone/sys/user_folders.h"
#include "workflow/correction_file.h"
#include "workflow/exact_document.h"
#include "xml/xml_node.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;
using diagnostics::Diagnostics;

constexpr char EXTENSION[] = "ccc";
constexpr char FOLDER_NAME[] = "cdl_library";

std::string get_stem(const std::string& path) {
    return std::filesystem::path(path).stem().string();
}

/// The color corrections that can be published, each with its name as the id.
struct Publishable {
    std::vector<Correction> corrections;
    std::set<std::string> given_names;
    Diagnostics warnings;
};

/// Throws diagnostics::Failure if there is none.
Publishable read_publishable(const std::string& path) {
    std::vector<Correction> all = read_corrections(path);
    Publishable found;
    std::set<std::string> names;
    for (std::size_t i = 0; i < all.size(); ++i) {
        Correction& correction = all[i];
        const auto leave_out = [&](Code code, const std::string& reason) {
            const std::string id = correction.id.empty() ? "" : fmt::format(" ('{}')", correction.id);
            found.warnings.push_back(diagnostics::make_file_warning(
                code, fmt::format("color correction {}{} is not published as a CDL: {}", i + 1, id, reason),
                path));
            found.warnings.back().line = correction.line;
        };
        if (const std::string problem = find_invalid_number(correction); !problem.empty()) {
            leave_out(Code::CDL_INVALID, problem);
            continue;
        }
        const bool has_id = !correction.id.empty();
        const std::string name = has_id            ? correction.id
                                 : all.size() == 1 ? get_stem(path)
                                                   : fmt::format("{} {}", get_stem(path), i + 1);
        if (!names.insert(name).second) {
            leave_out(Code::NAME_DUPLICATE, "an earlier one has the same name");
            continue;
        }
        if (!has_id)
            found.given_names.insert(name);
        correction.id = name;
        found.corrections.push_back(std::move(correction));
    }
    if (found.corrections.empty())
        throw diagnostics::Failure(diagnostics::add_context(
            fmt::format("cannot use the CDL library '{}'", path), found.warnings, Code::CDL_INVALID));
    return found;
}

bool is_exactly(const XmlNode& node, const char* name) {
    return node.get_name() && std::strcmp(node.get_name(), name) == 0;
}

/// Whether the child with exactly this name contains numbers that are separated by spaces alone.
bool has_spaced_numbers(const XmlNode& parent, const char* name) {
    const XmlNode node = parent.get_child(name);
    return is_exactly(node, name) && node.get_text(0) &&
           std::string_view(node.get_text(0)).find_first_of("\t\r\n") == std::string_view::npos;
}

bool has_module_form(const XmlNode& correction) {
    const XmlNode sop = correction.get_child("SOPNode");
    const XmlNode saturation = correction.get_child("SATNode");
    return is_exactly(correction, "ColorCorrection") && is_exactly(sop, "SOPNode") &&
           has_spaced_numbers(sop, "Slope") && has_spaced_numbers(sop, "Offset") &&
           has_spaced_numbers(sop, "Power") &&
           (is_exactly(saturation, "SATNode") || is_exactly(saturation, "SatNode")) &&
           has_spaced_numbers(saturation, "Saturation");
}

/// The top element, below declarations and comments; the empty node if it is not a collection.
XmlNode find_collection(const std::string& path) {
    XmlNode node = XmlNode::parse_file_as_guessed(path.c_str());
    while (!node.is_empty() && !is_exactly(node, "ColorCorrectionCollection"))
        node = node.get_child(0);
    return node;
}

/// Whether the module reads all of the file by itself.
bool is_module_readable(const std::string& path, const Publishable& content) {
    if (SysFilesystem::get_file_extension(path.c_str()) != EXTENSION || !content.warnings.empty() ||
        !content.given_names.empty() || ColorIOCandidate::check_cdl_library(path.c_str()))
        return false;
    const XmlNode collection = find_collection(path);
    if (static_cast<std::size_t>(collection.count_children()) != content.corrections.size())
        return false;
    for (int i = 0; i < collection.count_children(); ++i)
        if (!has_module_form(collection.get_child(i)))
            return false;
    return true;
}

/// The diagnostic of the Failure that `action` throws; empty when it throws none.
template <class Action>
std::optional<Diagnostic> find_failure(const Action& action) {
    try {
        action();
        return {};
    } catch (const diagnostics::Failure& failure) {
        return failure.get_worst();
    }
}

} // namespace

std::optional<Diagnostic> check_cdl_library(const std::string& path) {
    return find_failure([&] { read_publishable(path); });
}

CdlLibrary::CdlLibrary() = default;
CdlLibrary::~CdlLibrary() = default;

/// Path of the copy of a library in the temporary folder, which is made if necessary. The file has the
/// original's name, by which it is recognized in log messages.
std::string CdlLibrary::make_copy_path(const std::string& path) {
    if (!folder) {
        auto made = ProcessFolder::make();
        if (!made)
            throw diagnostics::Failure(files::to_diagnostic(made.get_failure()));
        const std::string reason =
            make_private_folder((*made)->get_path(), ProcessFolder::GROUP_NAME, FOLDER_NAME);
        if (!reason.empty())
            diagnostics::fail(Code::FILE_UNWRITABLE,
                              fmt::format("cannot copy the CDL library '{}': {}", path, reason));
        folder = std::move(*made);
    }
    const std::string stem = get_stem(path);
    return fmt::format("{}/{}/{}/{}.{}", folder->get_path(), ProcessFolder::GROUP_NAME, FOLDER_NAME,
                       stem.empty() ? FOLDER_NAME : stem, EXTENSION);
}

std::optional<Diagnostic> CdlLibrary::load(const std::string& path) {
    return find_failure([&] {
        Publishable content = read_publishable(path);
        const bool needs_copy = !is_module_readable(path, content);
        if (needs_copy) {
            const std::string copy_path = make_copy_path(path);
            write_exact_document(copy_path, content.corrections, true);
            copy = copy_path;
        }
        original = path;
        module_path = needs_copy ? copy : path;
        given_names = std::move(content.given_names);
        warnings = std::move(content.warnings);
    });
}

CdlLibrary::Origin CdlLibrary::find_origin(const std::string& file, const std::string& id) const {
    if (copy.empty() || file != copy)
        return {file, id};
    return {original, given_names.count(id) ? "" : id};
}

Diagnostics CdlLibrary::name_original(Diagnostics reports) const {
    if (copy.empty())
        return reports;
    for (Diagnostic& report : reports) {
        if (report.file == copy)
            report.file = original;
        for (std::string* text : {&report.message, &report.hint})
            for (std::size_t at = 0; (at = text->find(copy, at)) != std::string::npos; at += original.size())
                text->replace(at, copy.size(), original);
    }
    return reports;
}

} // namespace workflow
