#include "colorio/ocio/failure_cause.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string_view>
#include <vector>

#include "colorio/ocio/config.h"
#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/literal_paths.h"
#include "colorio/ocio/look_list.h"
#include "colorio/ocio/profile_version.h"
#include "colorio/ocio/rewritten_conversion.h"
#include "colorio/ocio/search_folders.h"
#include "colorio/ocio/transform.h"
#include "colorio/ocio/transform_graph.h"

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

/// "its matrix", or its CDL with the numbers: the part of a transform without an inverse. Empty if there is
/// none.
std::string find_singular_part(const TransformRcPtr& transform) {
    if (const auto cdl = library::DynamicPtrCast<library::CDLTransform>(transform)) {
        float slope[3];
        get_slope(cdl, slope);
        std::ostringstream text;
        text << "its CDL (slope " << slope[0] << ' ' << slope[1] << ' ' << slope[2] << ", saturation "
             << cdl->getSat() << ')';
        const bool loses_colors = cdl->getSat() == 0 || std::find(slope, slope + 3, 0.0f) != slope + 3;
        return loses_colors ? text.str() : "";
    }
    const auto matrix = library::DynamicPtrCast<library::MatrixTransform>(transform);
    return matrix && is_singular(*matrix) ? "its matrix" : "";
}

Diagnostic describe_singular(const std::string& part) {
    return diagnostics::make_error(Code::MATRIX_SINGULAR,
                                   part + " cannot be inverted, so this direction does not exist");
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

Diagnostic describe_missing(const ConstConfigRcPtr& config, const std::string& source) {
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
        cause.hint = "looked for as " + list_places(config, resolved) + ask_for_search_path(config);
    }
    cause.file = resolved;
    return cause;
}

bool is_cdl_file(const std::string& path) {
    std::string extension = std::filesystem::path(path).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".cc" || extension == ".ccc" || extension == ".cdl";
}

/// What the reader of the file's format says, without the preamble of OpenColorIO 2 or 1. Nothing is
/// concluded from it.
std::string quote_reader(const std::string& words) {
    std::string quoted = words;
    for (const std::string_view preamble : {"failed with: ", "could not be loaded. "}) {
        const std::size_t end = words.find(preamble);
        if (end != words.npos) {
            quoted = words.substr(end + preamble.size());
            break;
        }
    }
    return diagnostics::flatten(quoted.substr(0, quoted.find("\n    '")));
}

/// `words` are OpenColorIO's: that it tried all formats, followed by the error of each reader.
Diagnostic describe_damage(const std::string& path, const std::string& words) {
    const std::string version = find_newer_transform_version(path);
    return diagnostics::make_file_error(
        Code::LUT_DAMAGED,
        "the file '" + path + "' is " +
            (version.empty() ? "damaged or of an unknown kind: " + quote_reader(words)
                             : "of version " + version + ", which needs a newer OpenColorIO"),
        path);
}

/// Why the color correction cannot be read from a CDL file; empty when it can.
std::optional<Diagnostic> find_cdl_damage(const std::string& path, const std::string& cccid) {
    try {
        create_CDL_transform_from_file(path.c_str(), cccid.c_str());
        return std::nullopt;
    } catch (const Exception& exception) {
        const Diagnostic cause = get_cause(exception);
        const bool is_about_id = cause.code == Code::CDL_ID_MISSING || cause.code == Code::CDL_ID_REPEATED;
        return is_about_id ? cause : describe_damage(path, cause.message);
    }
}

/// OpenColorIO's error for a file alone in one direction; empty if it accepts the file.
std::optional<std::string> find_refusal(const std::string& path, TransformDirection direction) {
    try {
        const library::FileTransformRcPtr file = library::FileTransform::Create();
        file->setSrc(path.c_str());
        file->setInterpolation(INTERP_LINEAR);
        file->setDirection(direction);
        create_config()->getProcessor(file);
        return std::nullopt;
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

/// OpenColorIO's error for a file alone; empty when it can read it.
std::optional<Diagnostic> find_lut_damage(const std::string& path) {
    const std::optional<std::string> words = find_refusal(path, TRANSFORM_DIR_FORWARD);
    return words ? std::optional(describe_damage(path, *words)) : std::nullopt;
}

/// The first file that cannot be read; empty when all can.
std::optional<Diagnostic> find_damaged_file(const ConstConfigRcPtr& config, const ConversionParts& parts) {
    for (const FileUse& use : parts.uses) {
        const std::string& path = parts.files.at(use.source);
        const std::optional<Diagnostic> damage =
            is_cdl_file(path) ? find_cdl_damage(path, resolve_variables(config, use.cccid))
                              : find_lut_damage(path);
        if (damage)
            return damage;
    }
    return std::nullopt;
}

bool can_be_made(const Conversion& conversion) {
    try {
        conversion.config->getProcessor(conversion.transform);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

/// True when the conversion exists with the file applied in the other direction.
bool needs_other_direction(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                           const ConversionParts& parts, const std::string& source) {
    const auto turn = [&](const TransformRcPtr& transform) {
        const auto file = library::DynamicPtrCast<library::FileTransform>(transform);
        if (file && file->getSrc() == source)
            file->setDirection(file->getDirection() == TRANSFORM_DIR_FORWARD ? TRANSFORM_DIR_INVERSE
                                                                             : TRANSFORM_DIR_FORWARD);
    };
    return can_be_made(rewrite_conversion(create_editable_copy(config), conversion, parts.nodes, turn));
}

/// A file that is applied in the direction in which it does not exist: that of a singular matrix, or of a LUT
/// that OpenColorIO cannot invert.
std::optional<Diagnostic> find_singular_file(const ConstConfigRcPtr& config,
                                             const ConstTransformRcPtr& conversion,
                                             const ConversionParts& parts) {
    for (const auto& [source, path] : parts.files)
        if (find_refusal(path, TRANSFORM_DIR_INVERSE) &&
            needs_other_direction(config, conversion, parts, source)) {
            Diagnostic cause = describe_singular("the file '" + path + "'");
            cause.file = path;
            return cause;
        }
    return std::nullopt;
}

/// Checks single transforms, and keeps the first error.
class TransformErrors {
public:
    explicit TransformErrors(ConstConfigRcPtr config) : config(std::move(config)) {}

    void look_at(const TransformRcPtr& transform) {
        if (found)
            return;
        if (const std::string part = find_singular_part(transform); !part.empty())
            found = describe_singular(part);
        else if (const auto* spaces = dynamic_cast<const library::ColorSpaceTransform*>(transform.get()))
            for (const char* name : {spaces->getSrc(), spaces->getDst()})
                require_space(name);
        else if (const auto* looks = dynamic_cast<const library::LookTransform*>(transform.get()))
            look_at_looks(*looks);
    }

    const std::optional<Diagnostic>& get() const { return found; }

private:
    void look_at_looks(const library::LookTransform& transform) {
        for (const char* name : {transform.getSrc(), transform.getDst()})
            require_space(name);
        for (const LookStep& look : all_look_steps(resolve_variables(config, transform.getLooks())))
            if (!found && !config->getLook(look.name.c_str()))
                found = diagnostics::make_error(Code::LOOK_UNKNOWN, "unknown look '" + look.name + "'",
                                                look.name);
    }

    void require_space(const char* name) {
        const std::string resolved = resolve_variables(config, name);
        if (!found && !resolved.empty() && !knows_space(config, resolved))
            found = diagnostics::make_error(Code::COLOR_SPACE_UNKNOWN,
                                            "unknown color space '" + resolved + "'", resolved);
    }

    ConstConfigRcPtr config;
    std::optional<Diagnostic> found;
};

} // namespace

Diagnostic find_cause(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                      const char* words) {
    try {
        const ConversionParts parts = check_conversion(config, conversion);
        if (!parts.missing.empty())
            return describe_missing(config, parts.missing.front());
        if (const std::optional<Diagnostic> damage = find_damaged_file(config, parts))
            return *damage;
        TransformErrors errors(config);
        const auto look = [&](const TransformRcPtr& transform) { errors.look_at(transform); };
        rewrite_conversion(create_editable_copy(config), conversion, parts.nodes, look);
        if (errors.get())
            return *errors.get();
        if (const std::optional<Diagnostic> singular = find_singular_file(config, conversion, parts))
            return *singular;
    } catch (const Exception&) {
        // Only OpenColorIO's message is left.
    }
    return diagnostics::make_error(Code::CONVERSION_IMPOSSIBLE, diagnostics::flatten(words));
}

std::optional<Diagnostic> find_unset_variable(const ConstConfigRcPtr& config) {
    const TransformGraph graph(config);
    for (const GraphNode& node : graph.get_nodes())
        for (const auto& [source, cccid] : graph.dependencies_of(node).files)
            if (!find_variables(resolve_variables(config, source)).empty() &&
                locate_file(config, source).empty())
                return describe_missing(config, source);
    return std::nullopt;
}

} // namespace ocio
