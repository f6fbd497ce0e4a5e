#include "colorio/color_io_candidate.h"

#include <string_view>
#include <utility>

#include "colorio/cdl/cdl_document.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/config_location.h"
#include "colorio/ocio/profile_version.h"
#include "files/diagnosis.h"
#include "files/input_file.h"
#include "host/sys/sys_env.h"

namespace {

using diagnostics::Code;

/// Starts the name of a config that OpenColorIO contains.
constexpr std::string_view IN_LIBRARY = "ocio://";

/// Why the file at `path` cannot be opened, with the code `missing` where there is none.
ColorIOCandidate::Error find_file_error(const CoreString& path, Code missing) {
    const auto opened = files::open_for_reading(path.get_data());
    if (opened)
        return {};
    diagnostics::Diagnostic error = files::to_diagnostic(opened.get_failure());
    if (error.code == Code::FILE_MISSING)
        error.code = missing;
    return error;
}

/// For an exception that OpenColorIO does not define.
ColorIOCandidate::Error get_memory_error() {
    return diagnostics::make_error(Code::OUT_OF_MEMORY, "out of memory");
}

/// Why the config that `load` makes cannot be used.
template <class Load>
ColorIOCandidate::Error judge_config(const CoreString& path, Load&& load) {
    return at_boundary(get_memory_error(), [&]() -> ColorIOCandidate::Error {
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

ColorIOCandidate::Error ColorIOCandidate::check_config_file(const CoreString& path) {
    if (!ocio::is_library_config(path.get_data()))
        if (Error error = find_file_error(path, Code::CONFIG_MISSING))
            return error;
    return judge_config(path, [&] { return ocio::create_config_from_file(path.get_data()); });
}

ColorIOCandidate::Error ColorIOCandidate::check_config_of_environment() {
    const CoreString path = sys_get_env(OCIO_VARIABLE);
    const bool is_file = !path.is_empty() && path.view().substr(0, IN_LIBRARY.size()) != IN_LIBRARY;
    if (is_file)
        if (Error error = find_file_error(path, Code::CONFIG_MISSING))
            return error;
    return judge_config(path, [] { return ocio::create_config_from_env(); });
}

void ColorIOCandidate::locate_in_config(diagnostics::Diagnostic& error) {
    at_boundary(false, [&] {
        ocio::locate_in_config(error);
        return true;
    });
}

ColorIOCandidate::Error ColorIOCandidate::check_cdl_library(const CoreString& path) {
    if (Error error = find_file_error(path, Code::FILE_MISSING))
        return error;
    return at_boundary(get_memory_error(), [&]() -> Error {
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
