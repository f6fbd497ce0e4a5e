#include "pixel/compile.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace pixel {

namespace {

void check_base(double base) {
    if (!(base > 0) || base == 1) {
        throw std::invalid_argument("log: the base is positive and not 1");
    }
}

/// The constants of one channel, rounded to floats where the reference renderer rounds them.
struct LogConstants {
    float log_slope, log_offset, lin_slope, lin_offset;
    float scaled_slope; ///< log_slope / log2(base)
    float log_of_base;
    float lin_break, log_break, line_slope, line_offset;
};

LogConstants log_constants(const LogAffine& op, std::size_t c) {
    const auto base = static_cast<float>(op.base);
    LogConstants k{};
    k.log_slope = static_cast<float>(op.log_slope[c]);
    k.log_offset = static_cast<float>(op.log_offset[c]);
    k.lin_slope = static_cast<float>(op.lin_slope[c]);
    k.lin_offset = static_cast<float>(op.lin_offset[c]);
    k.log_of_base = std::log2(base);
    k.scaled_slope = static_cast<float>(op.log_slope[c] / static_cast<double>(k.log_of_base));
    if (!op.lin_break) {
        return k;
    }
    const double at_break = op.lin_slope[c] * (*op.lin_break)[c] + op.lin_offset[c];
    const double tangent =
        op.log_slope[c] * op.lin_slope[c] / (at_break * std::log(static_cast<double>(base)));
    k.lin_break = static_cast<float>((*op.lin_break)[c]);
    k.line_slope = static_cast<float>(op.linear_slope ? (*op.linear_slope)[c] : tangent);
    const double log_at_break = static_cast<double>(k.log_slope) * std::log2(static_cast<float>(at_break)) /
                                std::log2(static_cast<double>(base));
    k.log_break = static_cast<float>(log_at_break) + k.log_offset;
    k.line_offset = k.log_break - k.line_slope * k.lin_break;
    return k;
}

Stage compile_forward(const LogAffine& op) {
    LogStage stage{};
    stage.affine = true;
    stage.has_line = op.lin_break.has_value();
    for (std::size_t c = 0; c < 3; ++c) {
        const LogConstants k = log_constants(op, c);
        stage.lin_slope[c] = k.lin_slope;
        stage.lin_offset[c] = k.lin_offset;
        stage.log_slope[c] = k.scaled_slope;
        stage.log_offset[c] = k.log_offset;
        stage.lin_break[c] = k.lin_break;
        stage.line_slope[c] = k.line_slope;
        stage.line_offset[c] = k.line_offset;
    }
    return stage;
}

Stage compile_inverse(const LogAffine& op) {
    ExpStage stage{};
    stage.affine = true;
    stage.has_line = op.lin_break.has_value();
    for (std::size_t c = 0; c < 3; ++c) {
        const LogConstants k = log_constants(op, c);
        stage.log_offset[c] = k.log_offset;
        stage.log_slope[c] = k.log_of_base / k.log_slope;
        stage.lin_offset[c] = k.lin_offset;
        stage.lin_slope[c] = 1.0f / k.lin_slope;
        stage.log_break[c] = k.log_break;
        stage.line_offset[c] = k.line_offset;
        stage.line_slope[c] = stage.has_line ? 1.0f / k.line_slope : 0.0f;
    }
    return stage;
}

} // namespace

Stage compile_log(const Log& op) {
    check_base(op.base);
    const double log_of_base = std::log2(op.base);
    if (op.direction == Direction::Forward) {
        LogStage stage{};
        std::fill_n(stage.log_slope, 3, static_cast<float>(1 / log_of_base));
        return stage;
    }
    ExpStage stage{};
    std::fill_n(stage.log_slope, 3, static_cast<float>(log_of_base));
    return stage;
}

Stage compile_log_affine(const LogAffine& op) {
    check_base(op.base);
    for (std::size_t c = 0; c < 3; ++c) {
        if (op.log_slope[c] == 0 || op.lin_slope[c] == 0) {
            throw std::invalid_argument("log: slopes are not 0");
        }
    }
    return op.direction == Direction::Forward ? compile_forward(op) : compile_inverse(op);
}

} // namespace pixel
