#include "colorio/color_io_candidate.h"

#include <utility>

#include "colorio/cdl/cdl_document.h"
#include "colorio/color_io_diagnostics.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/config.h"
#include "host/sys/sys_filesystem.h"

namespace {

using diagnostics::Code;

ColorIOCandidate::Fault make_missing(const CoreString& path) {
    return diagnostics::make_file_error(
        Code::FILE_MISSING, "cannot read '" + std::string(path.view()) + "': no such file", path.get_data());
}

/// Why the config that `load` makes cannot be used.
template <class Load>
ColorIOCandidate::Fault judge_config(Load&& load) {
    ColorIOCandidate::Fault fault;
    at_boundary([&] {
        try {
            ocio::sanity_check(load());
        } catch (const ocio::Exception& exception) {
            fault = ocio::get_cause(exception);
        }
    });
    return fault;
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
    if (!SysFilesystem::file_exists(path))
        return make_missing(path);
    return judge_config([&] { return ocio::create_config_from_file(path.get_data()); });
}

ColorIOCandidate::Fault ColorIOCandidate::check_config_of_environment() {
    return judge_config([] { return ocio::create_config_from_env(); });
}

ColorIOCandidate::Fault ColorIOCandidate::check_cdl_library(const CoreString& path) {
    if (!SysFilesystem::file_exists(path))
        return make_missing(path);
    return at_boundary(Fault(), [&]() -> Fault {
        ColorIODiagnostics collector;
        XmlNode document;
        const bool is_readable = parse_CDL_document(path, document);
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
