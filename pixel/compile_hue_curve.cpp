#include <utility>

#include "pixel/compile.h"
#include "pixel/hue_spline.h"
#include "pixel/spline.h"

namespace pixel {

namespace {

/// The curve of hues, to which that of shifts is added: it is the sum that has an inverse.
Spline<float> shifted_hues(Spline<float> shifts) {
    for (auto& piece : shifts.pieces) {
        piece.b += 1;
        piece.c += piece.knot;
    }
    return shifts;
}

bool is_inverted(HueCurveKind kind) {
    return kind == HueCurveKind::HueHue || kind == HueCurveKind::SaturationSaturation ||
           kind == HueCurveKind::LuminanceLuminance || kind == HueCurveKind::HueShift;
}

} // namespace

Stage compile_hue_curve(const HueCurve& op) {
    HueCurveStage stage{{}, op.style, op.converts_to_hsy, op.direction == Direction::Forward};
    for (std::size_t i = 0; i < op.curve.size(); ++i) {
        const auto kind = static_cast<HueCurveKind>(i);
        Spline<float> spline = fit_hue_spline(kind, op.curve[i]);
        const bool inverted = !stage.forward && is_inverted(kind);
        if (inverted && kind == HueCurveKind::HueShift) {
            spline = shifted_hues(std::move(spline));
        }
        stage.curve.push_back(spline_table(spline, !inverted));
    }
    return stage;
}

} // namespace pixel
