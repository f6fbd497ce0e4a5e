#include "workflow/common_names.h"

#include <algorithm>

#include "workflow/ignoring_case.h"

namespace workflow {

namespace {

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
        {CAMERA_REC709_ID,
         {"itu709_rec709", "camera_rec709", "Camera Rec.709", "Utility - Rec.709 - Camera"}},
        {"g26_p3d65_display", {"p3d65_display", "P3-D65 - Display"}},
        {"pq_rec2020_display", {"rec2100_pq_display", "Rec.2100-PQ - Display"}},
        {"hlg_rec2020_display", {"rec2100_hlg_display", "Rec.2100-HLG - Display"}},
        {"pq_p3d65_display", {"st2084_p3d65_display", "ST2084-P3-D65 - Display"}},
        {FILM_SCAN_ID, {"Tavelion|Cineon", "Cineon", "ADX10", "Input - ADX - ADX10", "lg10"}},
        {"data", {"Raw", "raw", "Utility - Raw"}},
    };
    return table;
}

/// They contain a rendering, so that a file that merely states the encoding is not one of them.
struct OutputName {
    const char* name;
    const char* id;
};
constexpr OutputName OUTPUT_NAMES[] = {
    {"Output - sRGB", "srgb_rec709_display"},
    {"Output - Rec.709", "g24_rec709_display"},
    {"Output - Rec.2020", "g24_rec2020_display"},
};

} // namespace

std::vector<std::string> get_common_names(const std::string& interop_id) {
    for (const CommonNames& entry : get_name_table())
        if (interop_id == entry.id)
            return {entry.names.begin(), entry.names.end()};
    return {};
}

const char* find_common_id(const std::string& name) {
    for (const CommonNames& entry : get_name_table()) {
        const bool is_own = equal_ignoring_case(name, entry.id);
        if (is_own || std::any_of(entry.names.begin(), entry.names.end(),
                                  [&](const char* known) { return equal_ignoring_case(name, known); }))
            return entry.id;
    }
    for (const OutputName& known : OUTPUT_NAMES)
        if (equal_ignoring_case(name, known.name))
            return known.id;
    return nullptr;
}

} // namespace workflow
