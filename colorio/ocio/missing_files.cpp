#include "colorio/ocio/missing_files.h"

#include <filesystem>

#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/search_folders.h"
#include "colorio/ocio/unset_variables.h"
#include "diagnostics/failure.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

bool is_absolute(const std::string& path) {
    return std::filesystem::path(path).is_absolute();
}

/// "searched paths: '/show/luts/film.cube', '/show/film.cube'".
std::string list_places(const ConstConfigRcPtr& config, const std::string& file) {
    std::string places;
    if (is_absolute(file))
        places = "'" + file + "'";
    else
        for (const std::string& folder : get_search_folders(config))
            places += (places.empty() ? "'" : ", '") + (std::filesystem::path(folder) / file).string() + "'";
    return "searched paths: " + places;
}

} // namespace

Diagnostic describe_missing_file(const ConstConfigRcPtr& config, const std::string& source) {
    if (!find_unset_variables(config, source).empty())
        return describe_unset_path(config, source);
    const std::string resolved = resolve_variables(config, source);
    const std::string what = "the file '" + resolved + "' is missing";
    const std::string entry = is_absolute(resolved) ? "" : find_unset_search_entry(config);
    Diagnostic cause = entry.empty() ? diagnostics::make_error(Code::LUT_MISSING, what, source)
                                     : describe_unset_variables(config, entry, "search path");
    if (entry.empty())
        cause.file = resolved;
    else
        cause.message = what + ": " + cause.message;
    cause.hint += (cause.hint.empty() ? "" : "; ") + list_places(config, resolved);
    return cause;
}

} // namespace ocio
