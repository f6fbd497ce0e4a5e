#include "workflow/color_identity.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include <strings.h>

#include <fmt/format.h>

#include "workflow/correction_text.h"
#include "workflow/icc_profile.h"

namespace workflow {

namespace {

constexpr char FILM_SCAN[] = "log_film_scan";

/// x and y of red, green, blue and white, under the name that interop IDs have for them.
struct Primaries {
    const char* name;
    std::array<double, 8> xy;
};

// ITU-R BT.709, SMPTE ST 2065-1, S-2014-004, SMPTE EG 432-1, ITU-R BT.2020, Adobe RGB (1998).
constexpr Primaries PRIMARIES[] = {
    {"rec709", {0.64, 0.33, 0.30, 0.60, 0.15, 0.06, 0.3127, 0.3290}},
    {"ap0", {0.7347, 0.2653, 0.0, 1.0, 0.0001, -0.0770, 0.32168, 0.33767}},
    {"ap1", {0.713, 0.293, 0.165, 0.830, 0.128, 0.044, 0.32168, 0.33767}},
    {"p3d65", {0.680, 0.320, 0.265, 0.690, 0.150, 0.060, 0.3127, 0.3290}},
    {"rec2020", {0.708, 0.292, 0.170, 0.797, 0.131, 0.046, 0.3127, 0.3290}},
    {"adobergb", {0.64, 0.33, 0.21, 0.71, 0.15, 0.06, 0.3127, 0.3290}},
};
constexpr double SAME_CHROMATICITY = 0.002;
constexpr double SAME_COLORANT = 0.003;

/// A transfer function under the name that interop IDs have for it.
struct Transfer {
    const char* name;
    double (*to_linear)(double);
};

template <int HUNDREDTHS>
double to_power(double x) {
    return std::pow(x, HUNDREDTHS / 100.0);
}

/// IEC 61966-2-1.
double srgb_to_linear(double x) {
    return x <= 0.04045 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
}

constexpr Transfer TRANSFERS[] = {
    {"lin", to_power<100>}, {"srgb", srgb_to_linear}, {"g18", to_power<180>},
    {"g22", to_power<220>}, {"g24", to_power<240>},   {"g26", to_power<260>},
};
constexpr double SAME_TRANSFER = 0.004;

/// Primaries and transfer of ITU-T H.273.
struct CodePoints {
    int primaries;
    int transfer;
    const char* id;
};
constexpr CodePoints CODE_POINTS[] = {
    {1, 13, "srgb_rec709"}, {12, 13, "srgb_p3d65"}, {1, 1, "g24_rec709"},  {1, 6, "g24_rec709"},
    {1, 4, "g22_rec709"},   {1, 8, "lin_rec709"},   {9, 8, "lin_rec2020"}, {12, 8, "lin_p3d65"},
    {9, 16, "pq_rec2020"},  {9, 18, "hlg_rec2020"}, {12, 16, "pq_p3d65"},
};

/// What SMPTE ST 268 calls its transfer characteristics, in OpenImageIO's words.
struct DpxTransfer {
    const char* name;
    const char* id;
};
constexpr DpxTransfer DPX_TRANSFERS[] = {
    {"Printing density", FILM_SCAN}, {"Logarithmic", FILM_SCAN},    {"Linear", "lin_rec709"},
    {"SMPTE 274M", "g24_rec709"},    {"ITU-R 709-4", "g24_rec709"},
};

struct CommonNames {
    const char* id;
    std::vector<const char*> names;
};

/// The names and aliases of the configs of the ACES project and of OpenColorIO, and of the built-in config.
const std::vector<CommonNames>& get_name_table() {
    static const std::vector<CommonNames> table = {
        {"lin_ap1_scene", {"lin_ap1", "ACEScg", "ACES - ACEScg"}},
        {"lin_ap0_scene", {"lin_ap0", "ACES2065-1", "ACES - ACES2065-1", "aces"}},
        {"lin_rec709_scene",
         {"lin_rec709", "lin_rec709_srgb", "lin_srgb", "Linear Rec.709 (sRGB)", "Linear Rec.709",
          "Utility - Linear - sRGB", "Utility - Linear - Rec.709", "Tavelion|linear"}},
        {"lin_p3d65_scene", {"lin_p3d65", "Linear P3-D65", "Utility - Linear - P3-D65"}},
        {"lin_rec2020_scene", {"lin_rec2020", "Linear Rec.2020", "Utility - Linear - Rec.2020"}},
        {"lin_adobergb_scene", {"lin_adobergb", "Linear AdobeRGB", "Utility - Linear - Adobe RGB"}},
        {"srgb_rec709_scene",
         {"srgb_tx", "sRGB - Texture", "srgb_texture", "sRGB Encoded Rec.709 (sRGB)",
          "Utility - sRGB - Texture", "Tavelion|sRGB", "sRGB"}},
        {"srgb_rec709_display", {"sRGB - Display", "srgb_display", "sRGB Display"}},
        {"g22_rec709_scene",
         {"g22_rec709", "g22_rec709_tx", "Gamma 2.2 Rec.709 - Texture", "Gamma 2.2 Encoded Rec.709",
          "Utility - Gamma 2.2 - Rec.709 - Texture"}},
        {"g22_rec709_display", {"Gamma 2.2 Rec.709 - Display", "g22_rec709_display"}},
        {"g18_rec709_scene",
         {"g18_rec709", "g18_rec709_tx", "Gamma 1.8 Rec.709 - Texture", "Gamma 1.8 Encoded Rec.709",
          "Utility - Gamma 1.8 - Rec.709 - Texture"}},
        {"g24_rec709_scene",
         {"g24_rec709", "g24_rec709_tx", "Gamma 2.4 Rec.709 - Texture", "Gamma 2.4 Encoded Rec.709",
          "Utility - Gamma 2.4 - Rec.709 - Texture"}},
        {"g24_rec709_display", {"rec1886_rec709_display", "Rec.1886 Rec.709 - Display"}},
        {"g24_rec2020_display", {"rec1886_rec2020_display", "Rec.1886 Rec.2020 - Display"}},
        {"srgb_ap1_scene", {"srgb_ap1", "srgb_encoded_ap1_tx", "sRGB Encoded AP1 - Texture"}},
        {"g22_ap1_scene", {"g22_ap1", "g22_ap1_tx", "Gamma 2.2 AP1 - Texture", "Gamma 2.2 Encoded AP1"}},
        {"srgb_p3d65_scene",
         {"srgb_p3d65", "srgb_encoded_p3d65_tx", "sRGB Encoded P3-D65 - Texture", "sRGB Encoded P3-D65"}},
        {"srgb_p3d65_display", {"displayp3_display", "Display P3 - Display", "display_p3"}},
        {"g22_adobergb_scene", {"g22_adobergb", "Gamma 2.2 Encoded AdobeRGB", "Adobe RGB (1998)"}},
        {"g26_p3d65_display", {"p3d65_display", "P3-D65 - Display"}},
        {"pq_rec2020_display", {"rec2100_pq_display", "Rec.2100-PQ - Display"}},
        {"hlg_rec2020_display", {"rec2100_hlg_display", "Rec.2100-HLG - Display"}},
        {"pq_p3d65_display", {"st2084_p3d65_display", "ST2084-P3-D65 - Display"}},
        {FILM_SCAN, {"Tavelion|Cineon", "Cineon", "ADX10", "Input - ADX - ADX10", "lg10"}},
        {"data", {"Raw", "raw", "Utility - Raw"}},
    };
    return table;
}

/// Both image states: files rarely say which.
std::vector<std::string> in_both_states(const std::string& id) {
    return id == FILM_SCAN ? std::vector<std::string>{id}
                           : std::vector<std::string>{id + "_scene", id + "_display"};
}

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>; // rows

Vector multiply(const Matrix& m, const Vector& v) {
    Vector result{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            result[row] += m[row][column] * v[column];
    return result;
}

Matrix invert(const Matrix& m) {
    const auto minor = [&](std::size_t row, std::size_t column) {
        const std::size_t r1 = (row + 1) % 3, r2 = (row + 2) % 3, c1 = (column + 1) % 3,
                          c2 = (column + 2) % 3;
        return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
    };
    const double determinant = m[0][0] * minor(0, 0) + m[0][1] * minor(0, 1) + m[0][2] * minor(0, 2);
    Matrix inverse{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            inverse[row][column] = minor(column, row) / determinant;
    return inverse;
}

Vector to_xyz(double x, double y) {
    return {x / y, 1.0, (1.0 - x - y) / y};
}

/// The colorants of a profile with these primaries: adapted to D50 by Bradford, as ICC demands.
std::array<Vector, 3> get_colorants(const Primaries& primaries) {
    constexpr Matrix BRADFORD = {
        {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
    constexpr Vector D50 = {0.9642, 1.0, 0.8249};
    const auto& xy = primaries.xy;
    Matrix columns{};
    for (std::size_t i = 0; i < 3; ++i) // without a division by a y of 0
        for (std::size_t row = 0; row < 3; ++row)
            columns[row][i] = row == 0   ? xy[2 * i]
                              : row == 1 ? xy[2 * i + 1]
                                         : 1.0 - xy[2 * i] - xy[2 * i + 1];
    const Vector white = to_xyz(xy[6], xy[7]);
    const Vector scales = multiply(invert(columns), white);
    const Vector from = multiply(BRADFORD, white), to = multiply(BRADFORD, D50);
    const Matrix back = invert(BRADFORD);
    std::array<Vector, 3> colorants{};
    for (std::size_t i = 0; i < 3; ++i) {
        Vector cone = multiply(
            BRADFORD, {columns[0][i] * scales[i], columns[1][i] * scales[i], columns[2][i] * scales[i]});
        for (std::size_t c = 0; c < 3; ++c)
            cone[c] *= to[c] / from[c];
        colorants[i] = multiply(back, cone);
    }
    return colorants;
}

template <class Numbers>
double get_distance(const Numbers& a, const Numbers& b) {
    double largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::fabs(a[i] - b[i]));
    return largest;
}

std::vector<std::string> identify_chromaticities(const std::vector<double>& xy) {
    for (const Primaries& known : PRIMARIES)
        if (get_distance(xy, std::vector<double>(known.xy.begin(), known.xy.end())) <= SAME_CHROMATICITY)
            return in_both_states(fmt::format("lin_{}", known.name));
    return {};
}

const char* find_transfer(const std::vector<double>& curve) {
    const char* found = nullptr;
    double nearest = SAME_TRANSFER;
    for (const Transfer& known : TRANSFERS) {
        double largest = 0;
        for (std::size_t i = 0; i < curve.size(); ++i) {
            const double x = static_cast<double>(i) / static_cast<double>(curve.size() - 1);
            largest = std::max(largest, std::fabs(curve[i] - known.to_linear(x)));
        }
        if (largest < nearest) {
            nearest = largest;
            found = known.name;
        }
    }
    return found;
}

std::vector<std::string> identify_profile(const std::vector<unsigned char>& bytes) {
    const std::optional<IccProfile> profile = parse_icc_profile(bytes);
    const char* const transfer = profile ? find_transfer(profile->curve) : nullptr;
    if (!transfer)
        return {};
    for (const Primaries& known : PRIMARIES) {
        const std::array<Vector, 3> colorants = get_colorants(known);
        double largest = 0;
        for (std::size_t i = 0; i < 3; ++i)
            largest = std::max(largest, get_distance(colorants[i], profile->colorants[i]));
        if (largest <= SAME_COLORANT)
            return in_both_states(fmt::format("{}_{}", transfer, known.name));
    }
    return {};
}

std::vector<std::string> identify_code_points(const std::vector<double>& numbers) {
    for (const CodePoints& known : CODE_POINTS)
        if (numbers.at(0) == known.primaries && numbers.at(1) == known.transfer)
            return in_both_states(known.id);
    return {};
}

/// OpenImageIO's names: "Linear", "Gamma2.2"; else the name itself, which may be an interop ID.
std::vector<std::string> identify_name(const std::string& name) {
    constexpr std::string_view GAMMA = "Gamma";
    for (const auto& [known, id] :
         {std::pair("Linear", "lin_rec709"), {"Rec709", "g24_rec709"}, {"KodakLog", FILM_SCAN}})
        if (strcasecmp(name.c_str(), known) == 0)
            return in_both_states(id);
    if (name.compare(0, GAMMA.size(), GAMMA) == 0)
        if (const std::optional<float> gamma = parse_number(std::string_view(name).substr(GAMMA.size())))
            return in_both_states(fmt::format("g{:.0f}_rec709", *gamma * 10));
    return {name};
}

std::vector<std::string> identify_dpx(const std::string& transfer) {
    for (const DpxTransfer& known : DPX_TRANSFERS)
        if (transfer == known.name)
            return in_both_states(known.id);
    return {};
}

} // namespace

std::vector<std::string> identify(const image::ColorTag& tag) {
    switch (tag.kind) {
    case image::ColorTag::NAME:
        return identify_name(tag.text);
    case image::ColorTag::INTEROP_ID:
        return {tag.text};
    case image::ColorTag::CICP:
        return identify_code_points(tag.numbers);
    case image::ColorTag::ICC_PROFILE:
        return identify_profile(tag.bytes);
    case image::ColorTag::SRGB:
        return in_both_states("srgb_rec709");
    case image::ColorTag::ACES_CONTAINER:
        return in_both_states("lin_ap0");
    case image::ColorTag::CHROMATICITIES:
        return identify_chromaticities(tag.numbers);
    case image::ColorTag::DPX_TRANSFER:
        break;
    }
    return identify_dpx(tag.text);
}

std::vector<std::string> get_common_names(const std::string& interop_id) {
    for (const CommonNames& entry : get_name_table())
        if (interop_id == entry.id)
            return {entry.names.begin(), entry.names.end()};
    return {};
}

bool is_informative(const image::ColorTag& tag) {
    return tag.kind != image::ColorTag::DPX_TRANSFER ||
           (tag.text != "Undefined" && tag.text != "User defined");
}

} // namespace workflow
