#include "colorio/ocio/failure_cause.h"

#include <optional>
#include <vector>

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

    /// `owner` is what the transform belongs to; null for the conversion itself.
    void look_at(const TransformRcPtr& transform, const GraphNode* owner) {
        if (found)
            return;
        found = find_singular_part(transform, owner);
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

/// The first error of the conversion itself and of what it refers to.
std::optional<Diagnostic> find_transform_error(const ConstConfigRcPtr& config,
                                               const ConstTransformRcPtr& conversion,
                                               const ConversionParts& parts) {
    const ConfigRcPtr copy = create_editable_copy(config);
    TransformErrors errors(config);
    const auto look_at = [&](const std::vector<GraphNode>& nodes) {
        const GraphNode* const owner = nodes.empty() ? nullptr : &nodes.front();
        rewrite_conversion(copy, conversion, nodes,
                           [&](const TransformRcPtr& transform) { errors.look_at(transform, owner); });
        return errors.get().has_value();
    };
    if (!look_at({}))
        for (const GraphNode& node : parts.nodes)
            if (look_at({node}))
                break;
    return errors.get();
}

} // namespace

Diagnostic find_cause(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                      const char* words) {
    try {
        const ConversionParts parts = check_conversion(config, conversion);
        if (!parts.missing.empty())
            return describe_missing_file(config, parts.missing.front());
        if (const std::optional<Diagnostic> damage = find_damaged_file(config, parts))
            return *damage;
        if (const std::optional<Diagnostic> error = find_transform_error(config, conversion, parts))
            return *error;
        if (const std::optional<Diagnostic> singular = find_singular_file(config, conversion, parts))
            return *singular;
    } catch (const Exception&) {
        // Only OpenColorIO's message is left.
    }
    return diagnostics::make_error(Code::CONVERSION_IMPOSSIBLE, diagnostics::flatten(words));
}

} // namespace ocio
