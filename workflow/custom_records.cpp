#include "workflow/custom_records.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_converter.h"
#include "colorio/color_io_diagnostics.h"
#include "diagnostics/failure.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/sys/sys_filesystem.h"
#include "workflow/correction_file.h"
#include "workflow/correction_text.h"
#include "workflow/custom_spaces.h"
#include "workflow/nearest_names.h"

namespace workflow {

namespace {

using diagnostics::Code;
using diagnostics::fail;

using ColorSpaceDef = ColorIOManager::ColorSpaceDef;
using ColorDecisionListDef = ColorIOManager::ColorDecisionListDef;

/// The module looks up color corrections by id in files with this extension only.
constexpr char COLLECTION_EXTENSION[] = "ccc";

/// Whether the file is a collection, of which the id selects a color correction. Throws for a collection
/// without an id.
bool is_collection(const CorrectionSource& source) {
    if (SysFilesystem::get_file_extension(source.path.c_str()) != COLLECTION_EXTENSION)
        return false;
    if (source.id.empty())
        fail(Code::USAGE, fmt::format("'{}' is a collection", source.path),
             fmt::format("choose a color correction: {}:ID", source.path));
    return true;
}

CoreString make_absolute(const std::string& path) {
    return std::filesystem::absolute(path).c_str();
}

void take_cdl(const std::string& text, ColorSpaceDef& record) {
    const CorrectionSource source = parse_correction_source(text);
    if (!read_valid_correction(source).has_usual_names)
        diagnostics::fail_file(
            Code::CDL_INVALID,
            fmt::format("OpenColorIO does not accept the element names in '{}'; it requires SOPNode",
                        source.path),
            source.path);
    if (!is_collection(source) && !source.id.empty())
        fail(Code::USAGE, fmt::format("ids are looked up in .ccc files only, not in '{}'", source.path));
    record.cdl_file = make_absolute(source.path);
    record.cccid = source.id.c_str();
}

/// The custom color spaces of the module, with what their errors call them.
struct Spaces {
    using Record = ColorSpaceDef;
    static constexpr char KIND[] = "color space";
    static constexpr char CANNOT[] = "cannot add the color space";
    static constexpr Code INVALID = Code::CUSTOM_COLOR_SPACE_INVALID;

    static const CoreVector<Record>& get() {
        return ColorIOManager::get_instance()->get_tavelion_color_spaces();
    }
    static bool can_use(const Record& record) {
        return is_usable(record) &&
               ColorIOConverter().configure(ColorIO::get_ROLE_SCENE_LINEAR(), record.name);
    }
};

/// The same for the custom CDLs.
struct Cdls {
    using Record = ColorDecisionListDef;
    static constexpr char KIND[] = "CDL";
    static constexpr char CANNOT[] = "cannot use the CDL";
    static constexpr Code INVALID = Code::CDL_INVALID;

    static const CoreVector<Record>& get() {
        return ColorIOManager::get_instance()->get_tavelion_color_decision_lists();
    }
    static bool can_use(const Record& record) {
        return ColorIOConverter().configure_CDL(ColorIO::get_default_CDL_name(), record.name);
    }
};

template <class Records>
void add_record(const typename Records::Record& record) {
    using Record = typename Records::Record;
    CoreVector<Record> records = Records::get();
    const CoreString name = record.name.get_lower_case();
    const auto known = std::find_if(records.begin(), records.end(),
                                    [&](const Record& one) { return one.name.get_lower_case() == name; });
    if (known != records.end())
        fail(Code::NAME_DUPLICATE,
             fmt::format("a {} named '{}' already exists", Records::KIND, known->name.view()),
             known->is_builtin ? "choose another name" : "");
    records.append(record);
    ColorIODiagnostics collector;
    ColorIOManager::get_instance()->set_tavelion_config(records);
    if (!Records::can_use(record))
        throw diagnostics::Failure(add_context(fmt::format("{} '{}'", Records::CANNOT, record.name.view()),
                                               select(collector.take(), record.name.get_data()),
                                               Records::INVALID));
}

template <class Records>
void remove_record(const std::string& name) {
    using Record = typename Records::Record;
    CoreVector<Record> left;
    std::vector<std::string> names;
    for (const Record& record : Records::get()) {
        if (!record.is_builtin)
            names.emplace_back(record.name.view());
        if (record.is_builtin || record.name != name.c_str())
            left.append(record);
    }
    if (left.get_count() == Records::get().get_count())
        fail(Code::USAGE_REFUSED, fmt::format("no custom {} '{}'", Records::KIND, name),
             did_you_mean(name, names));
    ColorIOManager::get_instance()->set_tavelion_config(left);
}

/// Throws diagnostics::Failure for anything but the numbers of the allocation.
void take_range(const CustomSpaceRequest& request, ColorSpaceDef& record) {
    record.allocation_vars[1] = 1.0f;
    const std::size_t most = request.allocation == "lg2" ? 3 : 2;
    if (!request.range.empty() && (request.range.size() < 2 || request.range.size() > most))
        fail(Code::USAGE, fmt::format("the range takes {} numbers for {}", most == 2 ? "2" : "2 or 3",
                                      request.allocation));
    for (std::size_t i = 0; i < request.range.size(); ++i)
        record.allocation_vars[i] = require_number(request.range[i]);
}

} // namespace

ColorSpaceDef make_custom_space(const CustomSpaceRequest& request) {
    if (request.name.empty() || request.name.find(ColorIOManager::FAMILY_SEPARATOR) != std::string::npos)
        fail(Code::USAGE,
             fmt::format("invalid color space name '{}': names are not empty and do not contain '{}'",
                         request.name, ColorIOManager::FAMILY_SEPARATOR));
    ColorSpaceDef record{};
    record.name = request.name.c_str();
    if (!request.lut.empty()) {
        if (const auto opened = files::open_for_reading(request.lut); !opened)
            throw diagnostics::Failure(files::to_diagnostic(opened.get_failure()));
        record.lut_file = make_absolute(request.lut);
    }
    if (!request.cdl.empty())
        take_cdl(request.cdl, record);
    record.bit_depth = parse_depth(request.depth);
    record.allocation = parse_allocation(request.allocation);
    take_range(request, record);
    return record;
}

ColorDecisionListDef make_custom_cdl(const std::string& name, const std::string& source,
                                     diagnostics::Diagnostics& notes) {
    const CorrectionSource found = parse_correction_source(source);
    const Correction correction = read_valid_correction(found);
    add_correction_notes(correction, found.path, notes);
    ColorDecisionListDef record = make_cdl_record(correction, name);
    const bool has_id_lookup = is_collection(found);
    const std::vector<Correction> all = read_corrections(found.path);
    const auto invalid = std::find_if(
        all.begin(), all.end(), [](const Correction& other) { return !find_invalid_number(other).empty(); });
    if (!correction.has_usual_names) {
        notes.push_back(diagnostics::make_file_note(
            Code::CDL_COPIED,
            fmt::format("OpenColorIO does not accept the element names in '{}': the numbers are copied, and "
                        "later edits of the file have no effect",
                        found.path),
            found.path));
    } else if (invalid != all.end()) {
        notes.push_back(diagnostics::make_file_note(
            Code::CDL_COPIED,
            fmt::format(
                "OpenColorIO reads no color correction of '{}', because of '{}', {}: the numbers are copied, "
                "and later edits of the file have no effect",
                found.path, invalid->id, find_invalid_number(*invalid)),
            found.path));
    } else if (!has_id_lookup && !found.id.empty()) {
        notes.push_back(diagnostics::make_file_note(
            Code::CDL_COPIED,
            fmt::format("ids are looked up in .ccc files only: the numbers are copied, and later edits of "
                        "'{}' have no effect",
                        found.path),
            found.path));
    } else {
        record.file = make_absolute(found.path);
        record.cccid = found.id.c_str();
    }
    return record;
}

void add_custom_space(Session&, const ColorSpaceDef& record) {
    add_record<Spaces>(record);
}

void add_custom_cdl(Session&, const ColorDecisionListDef& record) {
    add_record<Cdls>(record);
}

void remove_custom_space(Session&, const std::string& name) {
    remove_record<Spaces>(name);
}

void remove_custom_cdl(Session&, const std::string& name) {
    remove_record<Cdls>(name);
}

} // namespace workflow
