/// A block's way through the ACES 2.0 functions, step by step.
/// Included once per target, after hwy/highway.h.
#if defined(PIXEL_ACES2_RUN_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef PIXEL_ACES2_RUN_INL_H_
#undef PIXEL_ACES2_RUN_INL_H_
#else
#define PIXEL_ACES2_RUN_INL_H_
#endif

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include <hwy/highway.h>

#include "pixel/aces2_gamut-inl.h"

HWY_BEFORE_NAMESPACE();
namespace pixel {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

/// One block's way through some of the functions.
class Aces2Run : public Aces2GamutSteps {
public:
    Aces2Run(const Aces2& aces, Block& block) : Aces2GamutSteps(aces, block) {}

    void rgb_to_aab(const AppearanceMatrices& matrices) {
        map_colors(block_, [&](auto d, auto& r, auto& g, auto& b)
                               HWY_ATTR { multiply(d, matrices.to_cones, r, g, b); });
        raise_colors(CONE_POWER);
        map_colors(block_, [&](auto d, auto& r, auto& g, auto& b) HWY_ATTR {
            const auto offset = hn::Set(d, CONE_OFFSET);
            r = r / (offset + hn::Abs(r));
            g = g / (offset + hn::Abs(g));
            b = b / (offset + hn::Abs(b));
            multiply(d, matrices.to_aab, r, g, b);
        });
    }

    void aab_to_rgb(const AppearanceMatrices& matrices) {
        map_colors(block_, [&](auto d, auto& x, auto& y, auto& z) HWY_ATTR {
            multiply(d, matrices.from_aab, x, y, z);
            x = hn::CopySign(uncompressed(d, hn::Abs(x)), x);
            y = hn::CopySign(uncompressed(d, hn::Abs(y)), y);
            z = hn::CopySign(uncompressed(d, hn::Abs(z)), z);
        });
        raise_colors(1.0f / CONE_POWER);
        map_colors(block_, [&](auto d, auto& x, auto& y, auto& z)
                               HWY_ATTR { multiply(d, matrices.from_cones, x, y, z); });
    }

    /// Replaces the opponent colors by M and the hue; black has none.
    void to_polar() {
        map_colors(block_, [&](auto d, auto& response, auto& a, auto& b) HWY_ATTR {
            const auto black = hn::Le(response, hn::Zero(d));
            const auto m = hn::Sqrt(a * a + b * b), hue = hue_of(d, a, b);
            a = hn::IfThenZeroElse(black, m);
            b = hn::IfThenZeroElse(black, hn::IfThenElse(hn::IsNaN(m), m, hue));
        });
    }

    /// Replaces M and the hue by the opponent colors.
    void to_cartesian() {
        for_each([&](std::size_t i) HWY_ATTR {
            const auto m = load(y(), i);
            store(m * load(cosine_, i), y(), i);
            store(m * load(sine_, i), z(), i);
        });
    }

    /// Replaces achromatic responses by J.
    void response_to_j() {
        map(x(), [](auto response) HWY_ATTR { return larger(hn::Zero(Tag()), response); });
        raise(x(), aces_.model.exponent);
        map(x(), [](auto power) HWY_ATTR { return hn::Set(Tag(), 100.0f) * power; });
    }

    void j_to_response() {
        map(x(), [](auto j) HWY_ATTR { return j * hn::Set(Tag(), 0.01f); });
        raise(x(), aces_.model.root);
    }

    /// Brings hues into one turn.
    void wrap_hues() {
        map(z(), [](auto hue) HWY_ATTR { return wrapped(hue); });
    }

    void find_cosines() {
        for_each([&](std::size_t i) HWY_ATTR {
            auto cosine = hn::Zero(Tag()), sine = cosine;
            cosine_and_sine(Tag(), load(z(), i), cosine, sine);
            store(cosine, cosine_, i);
            store(sine, sine_, i);
        });
    }

    /// Looks up the reach of AP1, and where the hues are in the table of the gamut.
    void look_up_hues() {
        const Tag d;
        const hn::RebindToSigned<Tag> di;
        const auto degree_of = [&](Vector hue) HWY_ATTR {
            return hn::Min(hn::Max(to_index(d, hue), hn::Zero(di)), hn::Set(di, 360));
        };
        for_each([&](std::size_t i) HWY_ATTR {
            hn::Store(degree_of(load(z(), i)) * hn::Set(di, DEGREE_FLOATS), di, at_ + i);
        });
        const float* const table = &aces_.degrees.data()->reach.value;
        for_each([&](std::size_t i) HWY_ATTR {
            const auto hue = load(z(), i);
            auto value = hue, difference = hue, first = hue, second = hue;
            load_quads<1>(d, table, at_ + i, value, difference, first, second);
            const auto degree = degree_of(hue);
            store(interpolated<Tag>(value, difference, hue - hn::ConvertTo(d, degree)), reach_, i);
            const auto past_first = hn::VecFromMask(di, hn::RebindMask(di, hn::Gt(hue, first)));
            const auto past_second = hn::VecFromMask(di, hn::RebindMask(di, hn::Gt(hue, second)));
            const auto interval = degree - (past_first + hn::And(past_first, past_second));
            hn::Store(interval * hn::Set(di, INTERVAL_FLOATS), di, at_ + i);
        });
        for (std::size_t i = 0; aces_.search.is_needed && i < block_.padded; ++i) {
            at_[i] = found_interval(aces_, z()[i]) * INTERVAL_FLOATS;
        }
    }

    /// Replaces achromatic responses by J after the tone curve, and keeps J before it.
    void map_tones_of_responses() {
        const Tag d;
        for_each([&](std::size_t i) HWY_ATTR { store(larger(hn::Zero(d), load(x(), i)), kept_j_, i); });
        raise(kept_j_, aces_.model.exponent);
        map(kept_j_, [](auto power) HWY_ATTR { return hn::Set(Tag(), 100.0f) * power; });
        map_tones<true>();
    }

    /// Replaces J by that after the tone curve, or before it, and keeps the old one.
    template <bool FORWARD>
    void map_tones_of_j() {
        const Tag d;
        for_each([&](std::size_t i) HWY_ATTR {
            const auto j = load(x(), i);
            store(j, kept_j_, i);
            store(hn::Abs(j) * hn::Set(d, 0.01f), x(), i);
        });
        raise(x(), aces_.model.root);
        map_tones<FORWARD>();
    }

    /// Compresses M, or expands it.
    template <bool FORWARD>
    void compress_chroma() {
        const Tag d;
        float* const relative_root = scratch_[0];
        float* const ratio_root = scratch_[1];
        float* const relative = scratch_[2];
        const auto max_j = hn::Set(d, aces_.factors.max_j);
        const float* const display_j = FORWARD ? x() : kept_j_;
        const float* const scene_j = FORWARD ? kept_j_ : x();
        // 0 / 0, which emulated vectors may divide in another way.
        const auto undefined = hn::Set(d, std::numeric_limits<float>::quiet_NaN());
        for_each([&](std::size_t i) HWY_ATTR {
            const auto share = load(display_j, i) / max_j;
            store(share, relative, i);
            store(share, relative_root, i);
            const auto scene = load(scene_j, i);
            const auto ratio = load(display_j, i) / scene;
            store(hn::IfThenElse(hn::Eq(scene, hn::Zero(d)), undefined, ratio), ratio_root, i);
        });
        raise(relative_root, aces_.model.root);
        raise(ratio_root, FORWARD ? aces_.model.root : -aces_.model.root);
        for_each([&](std::size_t i) HWY_ATTR {
            const auto norm = chroma_norm(d, aces_, load(cosine_, i), load(sine_, i));
            const ChromaSite<Tag> site{load(relative, i), load(reach_, i), norm, load(relative_root, i),
                                       load(ratio_root, i)};
            store(chroma_compressed<FORWARD>(d, aces_, site, load(y(), i)), y(), i);
        });
    }

private:
    static HWY_INLINE Vector wrapped(Vector hue) {
        const Tag d;
        const auto zero = hn::Zero(d), turn = hn::Set(d, 360.0f);
        if (hn::AllTrue(d, hn::And(hn::Ge(hue, zero), hn::Lt(hue, turn)))) {
            return hue;
        }
        HWY_ALIGN float lanes[hn::MaxLanes(Tag())];
        hn::Store(hue, d, lanes);
        std::transform(lanes, lanes + hn::Lanes(d), lanes, [](float v) { return std::fmod(v, 360.0f); });
        const auto rest = hn::Load(d, lanes);
        return hn::IfThenElse(hn::Lt(rest, zero), rest + turn, rest);
    }

    /// Responses to J, with the signs of the J that was kept.
    template <bool FORWARD>
    void map_tones() {
        const Tag d;
        const auto level = hn::Set(d, aces_.model.luminance_level);
        map(x(), [&](auto a) HWY_ATTR { return uncompressed(d, hn::Set(d, aces_.model.white) * a); });
        raise(x(), 1.0f / CONE_POWER);
        map(x(), [&](auto power) HWY_ATTR {
            const auto luminance = power / level;
            return FORWARD ? tone_base(d, aces_.tone, luminance)
                           : tone_inverse_base(d, aces_.tone, luminance);
        });
        raise(x(), FORWARD ? 1.15f : 1.0f / 1.15f);
        map(x(), [&](auto power) HWY_ATTR {
            return (FORWARD ? tone_mapped(d, aces_.tone, power) : tone_unmapped(d, aces_.tone, power)) *
                   level;
        });
        raise(x(), CONE_POWER);
        map(x(), [&](auto power) HWY_ATTR {
            return power / (hn::Set(d, CONE_OFFSET) + power) * hn::Set(d, aces_.model.unwhite);
        });
        raise(x(), aces_.model.exponent);
        for_each([&](std::size_t i) HWY_ATTR {
            store(hn::CopySign(hn::Set(d, 100.0f) * load(x(), i), load(kept_j_, i)), x(), i);
        });
    }

    /// The interval of the gamut's table that holds a hue, as the reference renderer's search finds it.
    static std::int32_t found_interval(const Aces2& aces, float hue) {
        int i = 1 + (hue > 0 ? std::min(static_cast<int>(hue), 360) : 0);
        int low = std::max(0, i + aces.search.from);
        int high = std::min(static_cast<int>(HUE_ENTRIES) - 2, i + aces.search.to);
        while (low + 1 < high) {
            (hue > aces.gamut[static_cast<std::size_t>(i)].hue.value ? low : high) = i;
            i = (low + high) / 2;
        }
        return std::max(1, high) - 1;
    }

    HWY_ALIGN float cosine_[BLOCK_PIXELS];
    HWY_ALIGN float sine_[BLOCK_PIXELS];
    HWY_ALIGN float kept_j_[BLOCK_PIXELS];
};

} // namespace HWY_NAMESPACE
} // namespace pixel
HWY_AFTER_NAMESPACE();

#endif
