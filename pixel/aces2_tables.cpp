#include "pixel/aces2_tables.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <map>
#include <mutex>
#include <stdexcept>
#include <utility>

#include "pixel/aces2_boundary.h"
#include "pixel/aces2_model.h"

namespace pixel {

namespace {

constexpr std::size_t DEGREES = 360;

HueStep step(float from, float to) {
    return {from, to - from};
}

/// Largest M at a hue, found in steps of 50 / 8192.
float find_reach(const AppearanceModel& model, const AppearanceMatrices& matrices, float j, float hue) {
    const auto is_outside = [&](float m) {
        const Color3 rgb = jmh_to_rgb(model, matrices, {j, m, hue});
        return rgb[0] < 0 || rgb[1] < 0 || rgb[2] < 0;
    };
    constexpr float STEP = 50, MOST = 1300;
    float low = 0, high = STEP;
    while (high < MOST && !is_outside(high)) {
        low = high;
        high += STEP;
    }
    while (static_cast<double>(high - low) > 1e-2) {
        const float middle = (high + low) / 2.0f;
        (is_outside(middle) ? high : low) = middle;
    }
    return high;
}

std::vector<HueDegree> make_degrees(const AppearanceModel& model, float max_j) {
    const AppearanceMatrices ap1 = make_appearance_matrices(model, AP1);
    std::vector<float> entries;
    for (int hue = 0; hue < static_cast<int>(DEGREES); ++hue) {
        entries.push_back(find_reach(model, ap1, max_j, static_cast<float>(hue)));
    }
    std::vector<HueDegree> degrees;
    for (std::size_t k = 0; k <= DEGREES; ++k) {
        degrees.push_back({step(entries[k % DEGREES], entries[(k + 1) % DEGREES]), 0, 0});
    }
    return degrees;
}

Aces2 make_tone(float peak) {
    Aces2 aces{};
    aces.model = make_appearance_model();
    aces.scene = make_appearance_matrices(aces.model, AP0);
    aces.tone = make_tone_curve(peak);
    aces.factors = make_compression_factors(aces.model, aces.tone, peak);
    aces.degrees = make_degrees(aces.model, aces.factors.max_j);
    return aces;
}

HueSearch find_search(const std::vector<float>& hues) {
    HueSearch search;
    for (int i = 1; i <= static_cast<int>(DEGREES); ++i) {
        const int distance = i - (1 + static_cast<int>(hues[static_cast<std::size_t>(i)]));
        search.from = std::min(search.from, distance);
        search.to = std::max(search.to, distance + 1);
    }
    search.is_needed = search.from < -1 || search.to != 2;
    return search;
}

/// The reference renderer probes entry 1 + degree first and never steps below it; and near 360 degrees its
/// search ends at the last entry but one.
void add_bounds(const std::vector<float>& hues, const HueSearch& search, std::vector<HueDegree>& degrees) {
    constexpr float INFINITE = std::numeric_limits<float>::infinity();
    for (std::size_t k = 0; k < DEGREES; ++k) {
        degrees[k].first = hues[k + 1];
        degrees[k].second = hues[k + 2];
    }
    if (search.from == 0) {
        degrees[DEGREES - 1].first = -INFINITE;
        degrees[DEGREES - 1].second = INFINITE;
    }
    degrees[DEGREES].first = degrees[DEGREES].second = INFINITE;
}

Aces2 make_gamut(float peak, const Chromaticities& limit) {
    Aces2 aces = make_tone(peak);
    aces.display = make_appearance_matrices(aces.model, limit);
    const CubeCorners corners = find_corners(aces.model, aces.display, peak / 100.0f);
    const AppearanceMatrices ap1 = make_appearance_matrices(aces.model, AP1);
    const std::vector<float> hues =
        sample_hues(corners, find_reach_hues(aces.model, ap1, aces.factors.max_j, aces.tone.forward_limit));
    aces.search = find_search(hues);
    add_bounds(hues, aces.search, aces.degrees);
    std::vector<GamutCusp> cusps = find_cusps(aces.model, aces.display, corners, hues);
    fit_upper_roots(aces, peak, hues, cusps);
    for (std::size_t i = 0; i + 1 < HUE_ENTRIES; ++i) {
        const GamutCusp &a = cusps[i], &b = cusps[i + 1];
        aces.gamut.push_back(
            {step(hues[i], hues[i + 1]), step(a.j, b.j), step(a.m, b.m), step(a.upper_root, b.upper_root)});
    }
    return aces;
}

/// The values that the library keeps of parameters.
Chromaticities rounded(Chromaticities values) {
    for (double& v : values) {
        v = static_cast<double>(static_cast<float>(v));
        if (!std::isfinite(v)) {
            throw std::invalid_argument("ACES 2.0: a chromaticity is not a finite number");
        }
    }
    return values;
}

float checked_peak(double peak) {
    if (!(peak >= 1 && peak <= 10000)) {
        throw std::invalid_argument("ACES 2.0: the peak luminance is not between 1 and 10000 nit");
    }
    return static_cast<float>(peak);
}

/// What is in use for some parameters. It is made under the lock, so that a second user waits for the first
/// one's.
class SharedTables {
public:
    template <class Make>
    std::shared_ptr<const Aces2> get(const std::vector<double>& parameters, Make&& make) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (const auto known = known_[parameters].lock()) {
            return known;
        }
        for (auto entry = known_.begin(); entry != known_.end();) {
            entry = entry->second.expired() ? known_.erase(entry) : std::next(entry);
        }
        const auto made = std::make_shared<const Aces2>(make());
        known_[parameters] = made;
        return made;
    }

private:
    std::mutex mutex_;
    std::map<std::vector<double>, std::weak_ptr<const Aces2>> known_;
};

SharedTables& shared_tables() {
    static SharedTables tables;
    return tables;
}

} // namespace

std::shared_ptr<const Aces2> make_aces2_appearance(const Chromaticities& primaries) {
    Aces2 aces{};
    aces.model = make_appearance_model();
    aces.display = make_appearance_matrices(aces.model, rounded(primaries));
    return std::make_shared<const Aces2>(std::move(aces));
}

std::shared_ptr<const Aces2> share_aces2_tone(double peak) {
    const float known = checked_peak(peak);
    return shared_tables().get({peak}, [&] { return make_tone(known); });
}

std::shared_ptr<const Aces2> share_aces2_gamut(double peak, const Chromaticities& limit) {
    const float known = checked_peak(peak);
    const Chromaticities kept = rounded(limit);
    std::vector<double> parameters{peak};
    parameters.insert(parameters.end(), kept.begin(), kept.end());
    return shared_tables().get(parameters, [&] { return make_gamut(known, kept); });
}

} // namespace pixel
