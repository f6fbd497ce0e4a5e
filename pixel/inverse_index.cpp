#include "pixel/inverse_index.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace pixel {

namespace {

/// Bit patterns of positive floats order like the floats, so buckets of equal width in bits are fine near 0
/// and coarse far from it; the bias says how much of the curve lies near 0.
std::uint32_t bits_of(float positive) {
    std::uint32_t bits;
    std::memcpy(&bits, &positive, sizeof bits);
    return bits;
}

struct Bucketing {
    float bias;
    std::uint32_t base;
    int shift;
    std::size_t buckets;
    float crowded_span; ///< how much of the curve's rise lies between knots that may share a bucket
};

/// The coarsest buckets for one bias that keep all but 1/64 of the neighboring knots apart, and are no more
/// than `most`. Looks at every `step`-th pair of neighbors.
Bucketing fit_buckets(const std::vector<float>& sorted, float bias, std::size_t most, std::size_t step) {
    std::array<std::size_t, 33> gaps_of_width{};
    std::array<float, 33> span_of_width{};
    for (std::size_t i = 1; i < sorted.size(); i += step) {
        const std::uint32_t gap = bits_of(sorted[i] + bias) - bits_of(sorted[i - 1] + bias);
        const std::size_t width = gap == 0 ? 0 : 32 - static_cast<std::size_t>(__builtin_clz(gap));
        ++gaps_of_width[width];
        span_of_width[width] += sorted[i] - sorted[i - 1];
    }
    // Knots whose keys differ by 2^shift or more are never in one bucket.
    const std::uint32_t base = bits_of(sorted.front() + bias);
    const std::uint32_t keys = bits_of(sorted.back() + bias) - base;
    const std::size_t allowed = sorted.size() / step / 64;
    int shift = 0;
    std::size_t crowded = gaps_of_width[0];
    float crowded_span = span_of_width[0];
    const auto coarsen = [&] {
        ++shift;
        crowded += gaps_of_width[static_cast<std::size_t>(shift)];
        crowded_span += span_of_width[static_cast<std::size_t>(shift)];
    };
    while (shift < 31 && crowded + gaps_of_width[static_cast<std::size_t>(shift) + 1] <= allowed) {
        coarsen();
    }
    while ((keys >> shift) >= most) {
        coarsen();
    }
    return {bias, base, shift, static_cast<std::size_t>(keys >> shift) + 1, crowded_span};
}

/// Tries biases on a sample of the knots; then fits the best one to all of them. Where no bias will do, as
/// when the span overflows, an infinite one puts all values into one bucket.
Bucketing choose_buckets(const std::vector<float>& sorted) {
    constexpr float INF = std::numeric_limits<float>::infinity();
    constexpr std::size_t SAMPLE = 512, MOST = 65536;
    const std::size_t count = sorted.size();
    const std::size_t most = std::max(2 * count, std::min(8 * count, MOST));
    const float low = sorted.front(), span = sorted.back() - low;
    Bucketing best{INF, bits_of(INF), 0, 1, INF};
    for (const float share : {1.0f, 0x1p-3f, 0x1p-5f, 0x1p-7f, 0x1p-9f, 0x1p-12f, 0x1p-16f}) {
        const float bias = span * share - low;
        if (count < 2 || !(low + bias > 0) || !std::isfinite(sorted.back() + bias)) {
            continue;
        }
        const Bucketing found = fit_buckets(sorted, bias, most, std::max<std::size_t>(1, count / SAMPLE));
        const bool as_clear = found.crowded_span <= std::max(best.crowded_span, span / 64);
        const bool clearer = best.crowded_span > span / 64 && found.crowded_span < best.crowded_span;
        if (clearer || (as_clear && found.buckets < best.buckets)) {
            best = found;
        }
    }
    return std::isinf(best.bias) ? best : fit_buckets(sorted, best.bias, most, 1);
}

/// Any value below `v`, far enough for their difference to be exact in relation to itself.
float some_value_below(float v) {
    return v > 0 ? 0.0f : v * 2 - 1;
}

/// Bucket b keeps the first knot whose bucket is b or later: values of the bucket lie around it or before it.
std::vector<Knot> index_knots(const std::vector<float>& sorted, std::size_t first,
                              const Bucketing& bucketing) {
    const auto bucket_of = [&](std::size_t i) {
        return static_cast<std::size_t>((bits_of(sorted[i] + bucketing.bias) - bucketing.base) >>
                                        bucketing.shift);
    };
    constexpr float CROWDED = std::numeric_limits<float>::quiet_NaN();
    std::vector<Knot> knots(bucketing.buckets);
    std::size_t filled = 0;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        const std::size_t own = bucket_of(i);
        if (own < filled) { // shared with the knot before
            knots[own].index = CROWDED;
            continue;
        }
        const float below = i > 0 ? sorted[i - 1] : some_value_below(sorted[0]);
        const float above = i + 1 < sorted.size() ? sorted[i + 1] : sorted[i];
        const bool usable =
            below < sorted[i] && below >= -std::numeric_limits<float>::max() && sorted.size() > 1;
        const Knot knot{below, sorted[i], above, usable ? static_cast<float>(first + i) : CROWDED};
        while (filled <= own) {
            knots[filled++] = knot;
        }
    }
    return knots;
}

} // namespace

InverseCurve make_inverse_curve(const float* entries, std::size_t length, bool rising_table) {
    if (!std::all_of(entries, entries + length, [](float v) { return std::isfinite(v); })) {
        throw std::invalid_argument("a 1D LUT with NaN or infinity has no inverse");
    }
    InverseCurve curve{};
    curve.sign = rising_table ? 1.0f : -1.0f;
    std::vector<float> rising(length);
    float reached = -std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < length; ++i) {
        reached = std::max(reached, entries[i] * curve.sign);
        rising[i] = reached;
    }
    std::size_t first = 0, last = length - 1;
    while (last > 0 && rising[last - 1] == rising[last]) {
        --last;
    }
    while (first < last && rising[first + 1] == rising[first]) {
        ++first;
    }
    curve.first = first;
    curve.sorted.assign(rising.begin() + static_cast<std::ptrdiff_t>(first),
                        rising.begin() + static_cast<std::ptrdiff_t>(last) + 1);
    const Bucketing bucketing = choose_buckets(curve.sorted);
    curve.bias = bucketing.bias;
    curve.base = bucketing.base;
    curve.shift = bucketing.shift;
    curve.knots = index_knots(curve.sorted, first, bucketing);
    curve.crowded = std::any_of(curve.knots.begin(), curve.knots.end(),
                                [](const Knot& k) { return std::isnan(k.index); });
    return curve;
}

Position search_position(const InverseCurve& curve, float value) {
    const auto& sorted = curve.sorted;
    auto above =
        static_cast<std::size_t>(std::lower_bound(sorted.begin(), sorted.end(), value) - sorted.begin());
    const std::size_t below = above > 0 ? above - 1 : 0;
    above = std::min(below + 1, sorted.size() - 1);
    const float gap = sorted[above] - sorted[below];
    const float part = gap > 0 ? (value - sorted[below]) / gap : 0.0f;
    return {curve.first + below, part};
}

} // namespace pixel
