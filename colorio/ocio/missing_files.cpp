#include "colorio/ocio/missing_files.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <vector>

#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/file_location.h"
#include "colorio/ocio/search_folders.h"
#include "colorio/ocio/transform_graph.h"
#include "diagnostics/failure.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

/// Paths where the file was searched: "'/show/luts/film.cube', '/show/film.cube'".
std::string list_places(const ConstConfigRcPtr& config, const std::string& source) {
    if (std::filesystem::path(source).is_absolute())
        return "'" + source + "'";
    std::string places;
    for (const std::string& folder : get_search_folders(config))
        places += (places.empty() ? "'" : ", '") + (std::filesystem::path(folder) / source).string() + "'";
    return places;
}

/// The context variables in `path`, written as $X, ${X} or %X%: each once, in order.
std::vector<std::string> find_variables(const std::string& path) {
    const auto is_name_character = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    };
    std::vector<std::string> names;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '$' && path[i] != '%')
            continue;
        const bool is_braced = path.compare(i, 2, "${") == 0;
        const std::size_t start = i + (is_braced ? 2 : 1);
        std::size_t end = start;
        while (end < path.size() && is_name_character(path[end]))
            ++end;
        const char close = path[i] == '%' ? '%' : is_braced ? '}' : '\0';
        if (end == start || (close != '\0' && (end == path.size() || path[end] != close)))
            continue;
        const std::string name = path.substr(start, end - start);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
        i = close == '\0' ? end - 1 : end;
    }
    return names;
}

/// "context variable 'A'", "context variables 'A', 'B'".
std::string list_variables(const std::vector<std::string>& names) {
    std::string list = names.size() == 1 ? "context variable " : "context variables ";
    for (const std::string& name : names)
        list += (&name == &names.front() ? "'" : ", '") + name + "'";
    return list;
}

/// "; is the context variable 'LUTS' of the search path set?", since names of folders may contain such signs;
/// empty if there are none.
std::string ask_for_search_path(const ConstConfigRcPtr& config) {
    std::string entries;
    for (const std::string& entry : search_path_entries(config))
        entries += resolve_variables(config, entry) + ":";
    const std::vector<std::string> unset = find_variables(entries);
    if (unset.empty())
        return {};
    return (unset.size() == 1 ? "; is the " : "; are the ") + list_variables(unset) +
           " of the search path set?";
}

} // namespace

Diagnostic describe_missing_file(const ConstConfigRcPtr& config, const std::string& source) {
    const std::string resolved = resolve_variables(config, source);
    const std::vector<std::string> unset = find_variables(resolved);
    const bool is_one = unset.size() == 1;
    Diagnostic cause;
    if (!unset.empty()) {
        cause = diagnostics::make_error(Code::CONFIG_VARIABLE,
                                        "the " + list_variables(unset) + " in the path '" + source + "' " +
                                            (is_one ? "is" : "are") + " not set",
                                        unset.front());
        cause.hint = std::string("set ") + (is_one ? "it" : "them") + " in the environment or in the config";
    } else {
        cause = diagnostics::make_error(Code::LUT_MISSING, "the file '" + resolved + "' is missing", source);
        cause.hint = "searched paths: " + list_places(config, resolved) + ask_for_search_path(config);
    }
    cause.file = resolved;
    return cause;
}

std::optional<Diagnostic> find_unset_variable(const ConstConfigRcPtr& config) {
    const TransformGraph graph(config);
    for (const GraphNode& node : graph.get_nodes())
        for (const auto& [source, cccid] : graph.dependencies_of(node).files)
            if (!find_variables(resolve_variables(config, source)).empty() &&
                locate_file(config, source).empty())
                return describe_missing_file(config, source);
    return std::nullopt;
}

} // namespace ocio
