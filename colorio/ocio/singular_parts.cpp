#include "colorio/ocio/singular_parts.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include "colorio/ocio/config.h"
#include "colorio/ocio/damaged_files.h"
#include "colorio/ocio/rewritten_conversion.h"
#include "colorio/ocio/transform.h"
#include "diagnostics/failure.h"

namespace ocio {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

/// "the matrix", or "the CDL", if it has no inverse; empty otherwise.
std::string name_singular_part(const TransformRcPtr& transform) {
    if (const auto cdl = library::DynamicPtrCast<library::CDLTransform>(transform)) {
        float slope[3];
        get_slope(cdl, slope);
        const bool loses_colors = cdl->getSat() == 0 || std::find(slope, slope + 3, 0.0f) != slope + 3;
        return loses_colors ? "the CDL" : "";
    }
    const auto matrix = library::DynamicPtrCast<library::MatrixTransform>(transform);
    return matrix && is_singular(*matrix) ? "the matrix" : "";
}

/// " (slope 0 1 1, saturation 1)" for a CDL; empty for others.
std::string list_numbers(const TransformRcPtr& transform) {
    const auto cdl = library::DynamicPtrCast<library::CDLTransform>(transform);
    if (!cdl)
        return "";
    float slope[3];
    get_slope(cdl, slope);
    std::ostringstream text;
    text << " (slope " << slope[0] << ' ' << slope[1] << ' ' << slope[2] << ", saturation " << cdl->getSat()
         << ')';
    return text.str();
}

/// "the color space 'log'".
std::string name_node(const GraphNode& node) {
    const char* const kind = node.kind == NodeKind::COLOR_SPACE       ? "color space"
                             : node.kind == NodeKind::LOOK            ? "look"
                             : node.kind == NodeKind::NAMED_TRANSFORM ? "named transform"
                                                                      : "view transform";
    return std::string("the ") + kind + " '" + node.name + "'";
}

Diagnostic describe_singular(const std::string& part) {
    return diagnostics::make_error(Code::MATRIX_SINGULAR,
                                   part + " cannot be inverted, so this direction does not exist");
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

} // namespace

std::optional<Diagnostic> find_singular_part(const TransformRcPtr& transform, const GraphNode* owner) {
    const std::string part = name_singular_part(transform);
    if (part.empty())
        return std::nullopt;
    const std::string place = owner ? " of " + name_node(*owner) : "";
    Diagnostic cause = describe_singular(part + place + list_numbers(transform));
    if (owner)
        cause.subject = owner->name;
    return cause;
}

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

} // namespace ocio
