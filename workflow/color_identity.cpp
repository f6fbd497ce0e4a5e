#include "workflow/color_identity.h"

#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

#include "workflow/colorimetry.h"
#include "workflow/common_names.h"
#include "workflow/correction_text.h"
#include "workflow/icc_profile.h"
#include "workflow/ignoring_case.h"

namespace workflow {

namespace {

/// Primaries and transfer of ITU-T H.273. The first entry of an ID is written, the first one of a pair is
/// read: video by BT.709 and BT.2020 is shown by BT.1886, which has no number.
struct CodePoints {
    int primaries;
    int transfer;
    const char* id;
};
constexpr CodePoints CODE_POINTS[] = {
    {1, 13, "srgb_rec709"},  {12, 13, "srgb_p3d65"}, {1, 1, "g24_rec709"},  {1, 6, "g24_rec709"},
    {1, 4, "g22_rec709"},    {1, 8, "lin_rec709"},   {9, 8, "lin_rec2020"}, {12, 8, "lin_p3d65"},
    {9, 16, "pq_rec2020"},   {9, 18, "hlg_rec2020"}, {12, 16, "pq_p3d65"},  {9, 14, "g24_rec2020"},
    {1, 1, "itu709_rec709"},
};

constexpr char DPX_REC709[] = "ITU-R 709-4";
constexpr char DPX_SMPTE_274M[] = "SMPTE 274M"; // with the primaries and the curve of BT.709

/// What SMPTE ST 268 calls its transfer characteristics, in OpenImageIO's words. Those but of film scans need
/// the primaries of BT.709 to be what is named here.
struct DpxTransfer {
    const char* name;
    const char* id;
};
constexpr DpxTransfer DPX_TRANSFERS[] = {
    {"Printing density", FILM_SCAN_ID}, {"Logarithmic", FILM_SCAN_ID}, {"Linear", "lin_rec709"},
    {DPX_SMPTE_274M, "itu709_rec709"},  {DPX_REC709, "itu709_rec709"},
};

/// What is written to DPX files. DPX has no code for video by other standards than BT.709.
struct DpxColorsOfId {
    const char* id;
    DpxColors colors;
};
constexpr char DPX_VIDEO[] = "Unspecified video";
constexpr DpxColorsOfId DPX_COLORS[] = {
    {FILM_SCAN_ID, {"Printing density", "Printing density"}},
    {"adx10_apd", {"Printing density", "Printing density"}}, // SMPTE ST 2065-3
    {"adx16_apd", {"Printing density", "Printing density"}},
    {"lin_rec709", {"Linear", DPX_REC709}},
    {"itu709_rec709", {DPX_REC709, DPX_REC709}},
    {"g24_rec709", {DPX_REC709, DPX_REC709}},
    {"srgb_rec709", {DPX_VIDEO, DPX_REC709}},
    {"g22_rec709", {DPX_VIDEO, DPX_REC709}},
    {"g18_rec709", {DPX_VIDEO, DPX_REC709}},
};
constexpr std::string_view LINEAR_PREFIX = "lin_";

/// Both image states: files rarely say which.
std::vector<std::string> in_both_states(const std::string& id) {
    return id == FILM_SCAN_ID ? std::vector<std::string>{id}
                              : std::vector<std::string>{id + "_scene", id + "_display"};
}

std::vector<std::string> identify_chromaticities(const std::vector<double>& xy) {
    const char* const primaries = find_primaries(xy);
    return primaries ? in_both_states(fmt::format("lin_{}", primaries)) : std::vector<std::string>();
}

std::vector<std::string> identify_profile(const std::vector<unsigned char>& bytes) {
    const std::optional<IccProfile> profile = parse_icc_profile(bytes);
    const char* const transfer = profile ? find_transfer(profile->curve) : nullptr;
    const char* const primaries = profile ? find_primaries_of_colorants(profile->colorants) : nullptr;
    return transfer && primaries ? in_both_states(fmt::format("{}_{}", transfer, primaries))
                                 : std::vector<std::string>();
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
         {std::pair("Linear", "lin_rec709"), {"Rec709", "g24_rec709"}, {"KodakLog", FILM_SCAN_ID}})
        if (equal_ignoring_case(name, known))
            return in_both_states(id);
    if (name.compare(0, GAMMA.size(), GAMMA) == 0)
        if (const std::optional<float> gamma = parse_number(std::string_view(name).substr(GAMMA.size())))
            return in_both_states(fmt::format("g{:.0f}_rec709", *gamma * 10));
    return {name};
}

/// Null for other transfer characteristics.
const char* find_dpx_id(const std::string& transfer) {
    for (const DpxTransfer& known : DPX_TRANSFERS)
        if (transfer == known.name)
            return known.id;
    return nullptr;
}

std::vector<std::string> identify_dpx(const image::ColorTag& tag) {
    const char* const id = find_dpx_id(tag.text);
    return id && !lacks_primaries(tag) ? in_both_states(id) : std::vector<std::string>();
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
    return identify_dpx(tag);
}

bool lacks_primaries(const image::ColorTag& tag) {
    const char* const id = tag.kind == image::ColorTag::DPX_TRANSFER ? find_dpx_id(tag.text) : nullptr;
    return id && std::string_view(id) != FILM_SCAN_ID && tag.colorimetric != DPX_REC709 &&
           tag.colorimetric != DPX_SMPTE_274M;
}

std::string remove_image_state(const std::string& id) {
    for (const std::string_view state : {"_scene", "_display"})
        if (id.size() > state.size() && id.compare(id.size() - state.size(), state.size(), state) == 0)
            return id.substr(0, id.size() - state.size());
    return id;
}

const std::array<double, 8>* get_chromaticities_of_linear(const std::string& id) {
    return id.compare(0, LINEAR_PREFIX.size(), LINEAR_PREFIX) == 0
               ? get_chromaticities(id.substr(LINEAR_PREFIX.size()))
               : nullptr;
}

std::vector<int> get_code_points(const std::string& id) {
    constexpr int RGB_MATRIX = 0;
    constexpr int FULL_RANGE = 1;
    for (const CodePoints& known : CODE_POINTS)
        if (id == known.id)
            return {known.primaries, known.transfer, RGB_MATRIX, FULL_RANGE};
    return {};
}

DpxColors get_dpx_colors(const std::string& id) {
    for (const DpxColorsOfId& known : DPX_COLORS)
        if (id == known.id)
            return known.colors;
    return get_chromaticities_of_linear(id) ? DpxColors{"Linear", ""} : DpxColors();
}

bool is_informative(const image::ColorTag& tag) {
    return tag.kind != image::ColorTag::DPX_TRANSFER ||
           (tag.text != "Undefined" && tag.text != "User defined");
}

} // namespace workflow
