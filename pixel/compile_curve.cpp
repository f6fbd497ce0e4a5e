#include "pixel/compile.h"
#include "pixel/spline.h"

namespace pixel {

namespace {

/// Logarithms and powers magnify roundings, so curves between them are computed in double precision.
Stage compile_between_logarithms(const RgbCurve& op, bool forward) {
    SequenceStage stage{};
    stage.logarithmic = true;
    for (std::size_t c = 0; c < 3; ++c) {
        for (const std::size_t i : {forward ? c : 3, forward ? 3 : c}) {
            WideStep step{};
            (forward ? step.evaluated : step.solved) = spline_table(fit_spline<double>(op.curve[i]), forward);
            stage.steps[c].push_back(step);
        }
    }
    return stage;
}

} // namespace

Stage compile_curve(const RgbCurve& op) {
    const bool forward = op.direction == Direction::Forward;
    if (op.style == GradingStyle::Linear && !op.bypass_lin_to_log) {
        return compile_between_logarithms(op, forward);
    }
    CurveStage stage{};
    stage.forward = forward;
    for (const std::vector<ControlPoint>& points : op.curve) {
        stage.curve.push_back(spline_table(fit_spline<float>(points), forward));
    }
    return stage;
}

} // namespace pixel
