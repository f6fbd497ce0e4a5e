#include "colorio/color_io_candidate.h"

#include <string_view>
#include <utility>

#include "colorio/cdl/cdl_document.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/config.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/sys/sys_env.h"

namespace {

using diagnostics::Code;

/// Starts the name of a config that OpenColorIO contains.
constexpr std::string_view IN_LIBRARY = "ocio://";

/// Why the file at `path` cannot be opened, with the code `missing` where there is none.
ColorIOCandidate::Fault find_file_fault(const CoreString& path, Code missing) {
    const auto opened = files::open_for_reading(path.get_data());
    if (opened)
        return {};
    diagnostics::Diagnostic fault = files::to_diagnostic(opened.get_failure());
    if (fault.code == Code::FILE_MISSING)
        fault.code = missing;
    return fault;
}

/// For an exception that OpenColorIO does not define.
ColorIOCandidate::Fault get_memory_fault() {
    return diagnostics::make_error(Code::OUT_OF_MEMORY, "out of memory");
}

/// Why the config that `load` makes cannot be used.
template <class Load>
ColorIOCandidate::Fault judge_config(const CoreString& path, Load&& load) {
    return at_boundary(get_memory_fault(), [&]() -> ColorIOCandidate::Fault {
        try {
            ocio::sanity_check(load(), ocio::KnownViews::NOTHING, path.get_data());
            return {};
        } catch (const ocio::Exception& exception) {
            return ocio::get_cause(exception);
        }
    });
}

/// Count of color corrections before the first one that cannot be read.
int count_readable_corrections(const XmlNode& document, const CoreString& path) {
    const int count = document.count_children("ColorCorrection");
    for (int i = 0; i < count; ++i) {
        ColorIOManager::ColorDecisionListDef def = make_identity_CDL();
        if (!read_color_correction(document.get_child(i), path, MissingElement::GIVE_UP, def))
            return i;
    }
    return count;
}

} // namespace

ColorIOCandidate::Fault ColorIOCandidate::check_config_file(const CoreString& path) {
    if (!ocio::is_library_config(path.get_data()))
        if (Fault fault = find_file_fault(path, Code::CONFIG_MISSING))
            return fault;
    return judge_config(path, [&] { return ocio::create_config_from_file(path.get_data()); });
}

ColorIOCandidate::Fault ColorIOCandidate::check_config_of_environment() {
    const CoreString path = sys_get_env(OCIO_VARIABLE);
    const bool is_file = !path.is_empty() && path.view().substr(0, IN_LIBRARY.size()) != IN_LIBRARY;
    if (is_file)
        if (Fault fault = find_file_fault(path, Code::CONFIG_MISSING))
            return fault;
    return judge_config(path, [] { return ocio::create_config_from_env(); });
}

ColorIOCandidate::Fault ColorIOCandidate::check_cdl_library(const CoreString& path) {
    if (Fault fault = find_file_fault(path, Code::FILE_MISSING))
        return fault;
    return at_boundary(get_memory_fault(), [&]() -> Fault {
        ColorIODiagnostics collector;
        XmlNode document;
        const bool is_readable = parse_CDL_document(path, document, Printing::SILENT);
        if (is_readable && count_readable_corrections(document, path) > 0)
            return {};
        diagnostics::Diagnostics reports = collector.take();
        if (!reports.empty())
            return *diagnostics::find_worst(reports);
        return diagnostics::make_file_error(
            Code::CDL_INVALID, "no color correction in '" + std::string(path.view()) + "' can be read",
            path.get_data());
    });
}
