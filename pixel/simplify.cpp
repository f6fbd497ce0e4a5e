#include "pixel/simplify.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "pixel/compile.h"
#include "pixel/hue_spline.h"

namespace pixel {

namespace {

bool all_equal(const double* values, std::size_t count, double to) {
    return std::all_of(values, values + count, [to](double v) { return v == to; });
}

struct IdentityTest {
    bool operator()(const Matrix& op) const {
        for (std::size_t i = 0; i < 16; ++i) {
            if (op.m[i] != (i % 5 == 0 ? 1 : 0)) {
                return false;
            }
        }
        return all_equal(op.offset.data(), 4, 0);
    }
    bool operator()(const Cdl& op) const {
        return op.style == CdlStyle::Unclamped && op.saturation == 1 && all_equal(op.slope.data(), 3, 1) &&
               all_equal(op.offset.data(), 3, 0) && all_equal(op.power.data(), 3, 1);
    }
    bool operator()(const Exponent& op) const {
        return op.negatives != Negatives::Clamp && all_equal(op.value.data(), 4, 1);
    }
    bool operator()(const LinearToeCurve& op) const {
        return all_equal(op.gamma.data(), 4, 1) && all_equal(op.offset.data(), 4, 0);
    }
    bool operator()(const RgbCurve& op) const {
        return std::all_of(op.curve.begin(), op.curve.end(), [](const std::vector<ControlPoint>& curve) {
            return std::all_of(curve.begin(), curve.end(),
                               [](const ControlPoint& p) { return p.x == p.y && p.slope == 0; });
        });
    }
    bool operator()(const HueCurve& op) const {
        for (std::size_t i = 0; i < op.curve.size(); ++i) {
            if (!is_neutral(static_cast<HueCurveKind>(i), op.curve[i])) {
                return false;
            }
        }
        return true;
    }
    bool operator()(const ExposureContrast& op) const {
        return op.exposure == 0 && op.contrast == 1 && op.gamma == 1;
    }
    bool operator()(const GradingPrimary& op) const { return changes_nothing(op); }
    bool operator()(const GradingTone& op) const {
        const ToneZone* const zones[] = {&op.blacks, &op.shadows, &op.midtones, &op.highlights, &op.whites};
        return op.s_contrast == 1 &&
               std::all_of(std::begin(zones), std::end(zones), [](const ToneZone* zone) {
                   return zone->value == Rgbm{1, 1, 1, 1};
               });
    }
    template <class Other>
    bool operator()(const Other&) const {
        return false;
    }
};

Matrix product(const Matrix& first, const Matrix& second) {
    Matrix out{};
    for (std::size_t row = 0; row < 4; ++row) {
        out.offset[row] = second.offset[row];
        for (std::size_t k = 0; k < 4; ++k) {
            out.offset[row] += second.m[4 * row + k] * first.offset[k];
            for (std::size_t column = 0; column < 4; ++column) {
                out.m[4 * row + column] += second.m[4 * row + k] * first.m[4 * k + column];
            }
        }
    }
    return out;
}

bool is_clamp(const Range& op) {
    return op.min_in == op.min_out && op.max_in == op.max_out;
}

double clamped(double v, const Range& op) {
    v = op.min_in ? std::max(v, *op.min_in) : v;
    return op.max_in ? std::min(v, *op.max_in) : v;
}

/// One clamp for two. NaN takes a clamp's lower bound if it has one, else its upper bound, which the joint
/// clamp only repeats when the first has a lower bound or the second has none.
std::optional<Range> joint_clamp(const Range& first, const Range& second) {
    if (!is_clamp(first) || !is_clamp(second) || (!first.min_in && second.min_in)) {
        return std::nullopt;
    }
    Range out = first;
    out.min_in = first.min_in ? std::optional<double>(clamped(*first.min_in, second)) : std::nullopt;
    out.max_in = first.max_in ? std::optional<double>(clamped(*first.max_in, second)) : second.max_in;
    out.min_out = out.min_in;
    out.max_out = out.max_in;
    if (out.min_in && out.max_in && !(*out.min_in < *out.max_in)) {
        return std::nullopt;
    }
    return out;
}

bool is_unit_clamp(const Op& op) {
    const auto* range = std::get_if<Range>(&op);
    return range && is_clamp(*range) && range->min_in == 0.0 && range->max_in == 1.0;
}

bool clamps_input_to_unit(const Op& op) {
    const auto* table = std::get_if<Lut1D>(&op);
    return std::holds_alternative<Lut3D>(op) ||
           (table && table->domain == InputDomain::Unit && table->direction == Direction::Forward &&
            !table->restores_hue);
}

/// Joins `next` to the last operation of `chain` where that is possible.
bool join(OpChain& chain, const Op& next) {
    Op& last = chain.back();
    if (std::holds_alternative<Matrix>(last) && std::holds_alternative<Matrix>(next)) {
        last = product(std::get<Matrix>(last), std::get<Matrix>(next));
        return true;
    }
    if (std::holds_alternative<Range>(last) && std::holds_alternative<Range>(next)) {
        if (const auto joint = joint_clamp(std::get<Range>(last), std::get<Range>(next))) {
            last = *joint;
            return true;
        }
    }
    if (is_unit_clamp(last) && clamps_input_to_unit(next)) {
        last = next;
        return true;
    }
    return false;
}

} // namespace

bool is_identity(const Op& op) {
    return std::visit(IdentityTest{}, op);
}

OpChain simplify(const OpChain& chain) {
    OpChain out;
    for (const Op& op : chain) {
        if (is_identity(op) || (!out.empty() && join(out, op))) {
            if (!out.empty() && is_identity(out.back())) {
                out.pop_back();
            }
            continue;
        }
        out.push_back(op);
    }
    return out;
}

} // namespace pixel
