#include "pixel/compile.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "pixel/fixed_function.h"

namespace pixel {

namespace {

bool is_diagonal(const Matrix& op) {
    for (std::size_t i = 0; i < 16; ++i) {
        if (i % 5 != 0 && op.m[i] != 0) {
            return false;
        }
    }
    return true;
}

Stage compile_diagonal(const Matrix& op) {
    DiagonalStage stage{};
    for (std::size_t c = 0; c < 4; ++c) {
        stage.scale[c] = static_cast<float>(op.m[5 * c]);
        stage.offset[c] = static_cast<float>(op.offset[c]);
        stage.active.set(c, op.m[5 * c] != 1 || op.offset[c] != 0);
    }
    return stage;
}

Stage compile_matrix(const Matrix& op) {
    if (is_diagonal(op)) {
        return compile_diagonal(op);
    }
    MatrixStage stage{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            stage.m[row][column] = stage.column[column][row] = static_cast<float>(op.m[4 * row + column]);
        }
        stage.offset[row] = static_cast<float>(op.offset[row]);
        stage.has_offset = stage.has_offset || op.offset[row] != 0;
    }
    return stage;
}

Stage compile_range(const Range& op) {
    const bool low = op.min_in.has_value(), high = op.max_in.has_value();
    if (low != op.min_out.has_value() || high != op.max_out.has_value() || (!low && !high)) {
        throw std::invalid_argument("range: bounds come in pairs, and there is at least one pair");
    }
    double scale = 1, offset = 0;
    if (low && high) {
        const double width = *op.max_in - *op.min_in;
        if (!(width > 0)) {
            throw std::invalid_argument("range: the upper bound must be above the lower one");
        }
        scale = (*op.max_out - *op.min_out) / width;
        offset = *op.min_out - scale * *op.min_in;
    } else if (low ? *op.min_in != *op.min_out : *op.max_in != *op.max_out) {
        throw std::invalid_argument("range: a clamp on one side keeps the values of that side");
    }
    RangeStage stage{};
    stage.scale = static_cast<float>(scale);
    stage.offset = static_cast<float>(offset);
    stage.has_low = low;
    stage.has_high = high;
    stage.low = low ? static_cast<float>(*op.min_out) : 0.0f;
    stage.high = high ? static_cast<float>(*op.max_out) : 0.0f;
    return stage;
}

Stage compile_exponent(const Exponent& op) {
    if (op.negatives == Negatives::Linear) {
        throw std::invalid_argument("exponent: no linear style");
    }
    PowerStage stage{};
    stage.shape = op.negatives == Negatives::Clamp    ? PowerShape::Clamp
                  : op.negatives == Negatives::Mirror ? PowerShape::Mirror
                                                      : PowerShape::PassThrough;
    for (std::size_t c = 0; c < 4; ++c) {
        if (op.direction == Direction::Inverse && op.value[c] == 0) {
            throw std::invalid_argument("exponent: 0 has no inverse");
        }
        const double value = op.direction == Direction::Forward ? op.value[c] : 1 / op.value[c];
        stage.exponent[c] = static_cast<float>(value);
        stage.active.set(c, stage.shape == PowerShape::Clamp || stage.exponent[c] != 1.0f);
    }
    return stage;
}

/// gamma 1 and offset 0 are replaced by their neighbors, for which the formulas are defined.
void compile_toe_channel(double gamma, double offset, std::size_t c, ToeStage& stage) {
    const double g = std::max(1.000001, gamma), o = std::max(0.000001, offset);
    const double knee = o * g / ((g - 1) * (1 + o));
    if (stage.forward) {
        stage.scale[c] = static_cast<float>(1 / (1 + o));
        stage.offset[c] = static_cast<float>(o / (1 + o));
        stage.exponent[c] = static_cast<float>(g);
        stage.slope[c] = static_cast<float>((g - 1) / o * std::pow(knee, g));
        stage.knee[c] = static_cast<float>(o / (g - 1));
    } else {
        stage.scale[c] = static_cast<float>(1 + o);
        stage.offset[c] = static_cast<float>(o);
        stage.exponent[c] = static_cast<float>(1 / g);
        stage.slope[c] = static_cast<float>(std::pow((g - 1) / o, g - 1) * std::pow((1 + o) / g, g));
        stage.knee[c] = static_cast<float>(std::pow(knee, g));
    }
}

Stage compile_toe(const LinearToeCurve& op) {
    if (op.negatives != Negatives::Linear && op.negatives != Negatives::Mirror) {
        throw std::invalid_argument("linear-toe curve: the styles are linear and mirror");
    }
    ToeStage stage{};
    stage.forward = op.direction == Direction::Forward;
    stage.mirror = op.negatives == Negatives::Mirror;
    for (std::size_t c = 0; c < 4; ++c) {
        compile_toe_channel(op.gamma[c], op.offset[c], c, stage);
    }
    return stage;
}

Stage compile_cdl(const Cdl& op) {
    CdlStage stage{};
    stage.clamp = op.style == CdlStyle::Clamped;
    stage.forward = op.direction == Direction::Forward;
    stage.slope[3] = stage.power[3] = 1;
    // A slope, power or saturation near 0 cannot be undone; its reciprocal stops at 100.
    const auto reciprocal = [](float v) { return 1.0f / std::max(0.01f, v); };
    for (std::size_t c = 0; c < 3; ++c) {
        const auto slope = static_cast<float>(op.slope[c]), power = static_cast<float>(op.power[c]);
        stage.slope[c] = stage.forward ? slope : reciprocal(slope);
        stage.power[c] = stage.forward ? power : reciprocal(power);
        stage.offset[c] = static_cast<float>(op.offset[c]);
        stage.raises = stage.raises || stage.power[c] != 1.0f;
    }
    const auto saturation = static_cast<float>(op.saturation);
    stage.saturation = stage.forward ? saturation : reciprocal(saturation);
    return stage;
}

struct Compiler {
    Stage operator()(const Matrix& op) { return compile_matrix(op); }
    Stage operator()(const Range& op) { return compile_range(op); }
    Stage operator()(const Cdl& op) { return compile_cdl(op); }
    Stage operator()(const Exponent& op) { return compile_exponent(op); }
    Stage operator()(const LinearToeCurve& op) { return compile_toe(op); }
    Stage operator()(const Log& op) { return compile_log(op); }
    Stage operator()(const LogAffine& op) { return compile_log_affine(op); }
    Stage operator()(const Lut1D& op) { return compile_table(op); }
    Stage operator()(const Lut3D& op) { return compile_cube(op); }
    Stage operator()(const FixedFunction& op) { return compile_fixed_function(op); }
    Stage operator()(const RgbCurve& op) { return compile_curve(op); }
    Stage operator()(const HueCurve& op) { return compile_hue_curve(op); }
    Stage operator()(const ExposureContrast& op) { return compile_exposure(op); }
    Stage operator()(const GradingPrimary& op) { return compile_primary(op); }
    Stage operator()(const GradingTone& op) { return compile_tone(op); }
};

} // namespace

Stage compile(const Op& op) {
    return std::visit(Compiler{}, op);
}

} // namespace pixel
