#include "colorio/ocio/v2/explain.h"

#include "colorio/ocio/v2/pixel_bridge.h"
#include "pixel/vector_target.h"

namespace ocio {

namespace {

template <class F>
void for_each_transform(const library::ConstProcessorRcPtr& processor, F&& f) {
    const library::GroupTransformRcPtr group = processor->createGroupTransform();
    for (int i = 0; i < group->getNumTransforms(); ++i)
        f(group->getTransform(i));
}

std::vector<ExplainedStep> trace(const pixel::Program& program, const std::array<float, 4>& rgba) {
    std::vector<ExplainedStep> steps;
    for (pixel::TraceStep& step : program.trace(rgba))
        steps.push_back({std::move(step.operation), step.value});
    return steps;
}

/// The operations of `processor`, each run by itself.
std::vector<ExplainedStep> trace_each(const library::ConstProcessorRcPtr& processor,
                                      library::OptimizationFlags optimization, std::array<float, 4> rgba) {
    const library::ConstConfigRcPtr config = library::Config::CreateRaw();
    std::vector<ExplainedStep> steps;
    for_each_transform(processor, [&](const library::ConstTransformRcPtr& transform) {
        config->getProcessor(transform)->getOptimizedCPUProcessor(optimization)->applyRGBA(rgba.data());
        steps.push_back({describe(*transform), rgba});
    });
    return steps;
}

/// As OpenColorIO merges the operations, or unmerged where it refuses what it has merged.
std::vector<ExplainedStep> trace(const library::ConstProcessorRcPtr& processor,
                                 library::OptimizationFlags optimization, const std::array<float, 4>& rgba) {
    try {
        return trace_each(
            processor->getOptimizedProcessor(library::BIT_DEPTH_F32, library::BIT_DEPTH_F32, optimization),
            optimization, rgba);
    } catch (const Exception&) {
        return trace_each(processor, optimization, rgba);
    }
}

} // namespace

const char* get_vector_target() {
    return pixel::vector_target();
}

Explanation explain_nothing(const library::ConstProcessorRcPtr& processor) {
    Explanation explanation;
    for_each_transform(processor, [&](const library::ConstTransformRcPtr& transform) {
        explanation.operations.push_back(describe(*transform));
    });
    return explanation;
}

Explanation explain(const library::ConstProcessorRcPtr& processor, const Evaluator& evaluator,
                    library::OptimizationFlags optimization, const std::array<float, 4>& rgba) {
    Explanation explanation = explain_nothing(processor);
    if (const pixel::Program* program = evaluator.get_program()) {
        explanation.path = EvaluationPath::Vector;
        explanation.vector_target = pixel::vector_target();
        explanation.steps = trace(*program, rgba);
    } else {
        explanation.path = EvaluationPath::Library;
        explanation.reason = evaluator.get_why_not();
        explanation.steps = trace(processor, optimization, rgba);
    }
    return explanation;
}

} // namespace ocio
