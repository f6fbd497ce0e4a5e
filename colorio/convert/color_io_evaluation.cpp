#include "colorio/color_io_evaluation.h"

#include "colorio/convert/color_io_converter_state.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"

namespace {

ColorIOEvaluation::Path to_path(ocio::EvaluationPath path) {
    switch (path) {
    case ocio::EvaluationPath::None:
        break;
    case ocio::EvaluationPath::Vector:
        return ColorIOEvaluation::PATH_VECTOR;
    case ocio::EvaluationPath::Library:
        return ColorIOEvaluation::PATH_LIBRARY;
    }
    return ColorIOEvaluation::PATH_NONE;
}

ColorIOEvaluation::Explanation to_host(const ocio::Explanation& explanation) {
    ColorIOEvaluation::Explanation out;
    for (const std::string& operation : explanation.operations)
        out.operations.append(operation.c_str());
    for (const auto& [operation, pixel] : explanation.steps)
        out.steps.append({operation.c_str(), {pixel[0], pixel[1], pixel[2], pixel[3]}});
    out.path = to_path(explanation.path);
    out.reason = explanation.reason.c_str();
    out.vector_target = explanation.vector_target.c_str();
    return out;
}

ColorIOEvaluation::Origin find_origin(const ocio::Processor& processor) {
    ColorIOEvaluation::Origin origin;
    for (const std::string& file : processor.get_files())
        origin.files.append(file.c_str());
    origin.digest = processor.get_digest().c_str();
    return origin;
}

/// Calls `action`, which needs a configured converter.
template <class Action>
bool evaluate(const ColorIOConverter& converter, const Action& action) {
    if (!converter.is_configured()) {
        report(LOG_ERROR, diagnostics::Code::USAGE, CoreString(), "the converter is not configured");
        return false;
    }
    return at_boundary(false, [&] {
        action();
        return true;
    });
}

} // namespace

bool ColorIOEvaluation::explain(const ColorIOConverter& converter, const GMathVec4<float>& pixel,
                                Explanation& explanation) {
    return evaluate(converter, [&] {
        explanation =
            converter.is_enabled()
                ? to_host(converter.state->processor->explain({pixel[0], pixel[1], pixel[2], pixel[3]}))
                : Explanation();
    });
}

bool ColorIOEvaluation::find_origin(const ColorIOConverter& converter, Origin& origin) {
    return evaluate(converter, [&] {
        origin = converter.is_enabled() ? ::find_origin(*converter.state->processor) : Origin();
    });
}

void ColorIOEvaluation::set_vector_code(bool enabled) {
    ocio::set_fast_path(enabled);
}

bool ColorIOEvaluation::get_vector_code() {
    return ocio::get_fast_path();
}

const char* ColorIOEvaluation::get_vector_target() {
    return ocio::get_vector_target();
}

const char* ColorIOEvaluation::get_library_version() {
    return ocio::get_version();
}
