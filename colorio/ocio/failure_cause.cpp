#include "colorio/ocio/failure_cause.h"

#include <optional>

#include "colorio/ocio/config.h"
#include "colorio/ocio/context_variables.h"
#include "colorio/ocio/conversion_check.h"
#include "colorio/ocio/damaged_files.h"
#include "colorio/ocio/look_list.h"
#include "colorio/ocio/missing_files.h"
#include "colorio/ocio/rewritten_conversion.h"
#include "colorio/ocio/singular_parts.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

/// Checks single transforms, and keeps the first error.
class TransformErrors {
public:
    explicit TransformErrors(ConstConfigRcPtr config) : config(std::move(config)) {}

    void look_at(const TransformRcPtr& transform) {
        if (found)
            return;
        found = find_singular_part(transform);
        if (const auto* spaces = dynamic_cast<const library::ColorSpaceTransform*>(transform.get()))
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
            return describe_missing_file(config, parts.missing.front());
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

} // namespace ocio
