#include "colorio/ocio/failure_cause.h"

#include <cctype>
#include <filesystem>
#include <optional>

#include "colorio/ocio/config.h"
#include "colorio/ocio/config_side.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/rewritten_conversion.h"
#include "colorio/ocio/search_folders.h"

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

/// True for a matrix without an inverse, and for a CDL with saturation 0.
bool cannot_be_inverted(const library::Transform& transform) {
    if (const auto* cdl = dynamic_cast<const library::CDLTransform*>(&transform))
        return cdl->getSat() == 0; // Saturation 0 maps every color to gray.
    const auto* matrix = dynamic_cast<const library::MatrixTransform*>(&transform);
    return matrix && is_singular(*matrix);
}

/// The first context variable that `path` names as $X, ${X} or %X%; empty for none.
std::string find_variable(const std::string& path) {
    const auto is_name_character = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    };
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (path[i] != '$' && path[i] != '%')
            continue;
        const bool is_braced = path.compare(i, 2, "${") == 0;
        const std::size_t start = i + (is_braced ? 2 : 1);
        std::size_t end = start;
        while (end < path.size() && is_name_character(path[end]))
            ++end;
        const char close = path[i] == '%' ? '%' : is_braced ? '}' : '\0';
        if (end > start && (close == '\0' || (end < path.size() && path[end] == close)))
            return path.substr(start, end - start);
    }
    return {};
}

Diagnostic describe_missing(const ConstConfigRcPtr& config, const std::string& source) {
    const std::string resolved = resolve_variables(config, source);
    Diagnostic cause;
    if (!find_variable(resolved).empty()) {
        const std::string variable = find_variable(resolved);
        cause = diagnostics::make_error(
            Code::CONFIG_VARIABLE,
            "the context variable '" + variable + "' in the path '" + source + "' is not set", variable);
        cause.hint = "set it in the environment or in the config";
    } else {
        cause = diagnostics::make_error(Code::LUT_MISSING, "the file '" + resolved + "' is missing", source);
        cause.hint = "looked for as " + list_places(config, resolved);
    }
    cause.file = resolved;
    return cause;
}

/// OpenColorIO's error for a file alone; empty when it can read it.
std::optional<Diagnostic> find_damage(const std::string& path) {
    try {
        const library::FileTransformRcPtr file = library::FileTransform::Create();
        file->setSrc(path.c_str());
        file->setInterpolation(INTERP_LINEAR);
        create_config()->getProcessor(file);
        return std::nullopt;
    } catch (const std::exception& exception) {
        return diagnostics::make_file_error(Code::LUT_DAMAGED,
                                            "the file '" + path + "' is damaged or of an unknown kind: " +
                                                diagnostics::flatten(exception.what()),
                                            path);
    }
}

/// Checks single transforms, and keeps the first error.
class TransformErrors {
public:
    explicit TransformErrors(ConstConfigRcPtr config) : config(std::move(config)) {}

    void look_at(const TransformRcPtr& transform) {
        if (found)
            return;
        if (cannot_be_inverted(*transform))
            found = diagnostics::make_error(
                Code::MATRIX_SINGULAR, "its matrix cannot be inverted, so this direction does not exist");
        else if (const auto* spaces = dynamic_cast<const library::ColorSpaceTransform*>(transform.get()))
            for (const char* name : {spaces->getSrc(), spaces->getDst()})
                require_space(name);
        else if (const auto* looks = dynamic_cast<const library::LookTransform*>(transform.get()))
            for (const char* name : {looks->getSrc(), looks->getDst()})
                require_space(name);
    }

    const std::optional<Diagnostic>& get() const { return found; }

private:
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
        for (const auto& [source, path] : parts.files)
            if (const std::optional<Diagnostic> damage = find_damage(path))
                return *damage;
        TransformErrors errors(config);
        const auto look = [&](const TransformRcPtr& transform) { errors.look_at(transform); };
        rewrite_conversion(create_editable_copy(config), conversion, parts.nodes, look);
        if (errors.get())
            return *errors.get();
    } catch (const Exception&) {
        // Only OpenColorIO's message is left.
    }
    return diagnostics::make_error(Code::CONVERSION_IMPOSSIBLE, diagnostics::flatten(words));
}

} // namespace ocio
