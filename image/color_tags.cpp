#include "image/color_tags.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <strings.h>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "image/png_color_chunks.h"

namespace image {

namespace {

constexpr char COLOR_SPACE[] = "oiio:ColorSpace";
/// OpenImageIO's names of what it assumes where a file says nothing.
constexpr const char* ASSUMED_NAMES[] = {"sRGB",     "Linear",     "scene_linear",    "srgb_rec709_scene",
                                         "lin_srgb", "lin_rec709", "lin_rec709_scene"};
constexpr char DPX_TRANSFER[] = "dpx:Transfer";
constexpr char DPX_COLORIMETRIC[] = "dpx:Colorimetric";
/// Bytes at the end of the header of a DPX file, for anything.
constexpr char DPX_USER_DATA[] = "dpx:UserData";
/// Before the name of the color space in them.
constexpr std::string_view DPX_NAME_PREFIX = "colorio:ColorSpace=";
/// Of "Exif:ColorSpace".
constexpr int EXIF_SRGB = 1;

bool equals_ignoring_case(const std::string& a, const char* b) {
    return strcasecmp(a.c_str(), b) == 0;
}

bool states_srgb(const OIIO::ImageSpec& spec) {
    return spec.find_attribute(PNG_SRGB_ATTRIBUTE) != nullptr ||
           spec.get_int_attribute("Exif:ColorSpace") == EXIF_SRGB;
}

/// The numbers of an attribute of `count` values; empty when it is none.
std::vector<double> get_numbers(const OIIO::ImageSpec& spec, const char* name, int count) {
    std::vector<double> numbers;
    const OIIO::ParamValue* found = spec.find_attribute(name);
    const bool is_number = found && (found->type().basetype == OIIO::TypeDesc::FLOAT ||
                                     found->type().basetype == OIIO::TypeDesc::INT32);
    if (!is_number || static_cast<int>(found->type().basevalues()) != count)
        return numbers;
    for (int i = 0; i < count; ++i)
        numbers.push_back(found->type().basetype == OIIO::TypeDesc::FLOAT
                              ? static_cast<const float*>(found->data())[i]
                              : static_cast<const int*>(found->data())[i]);
    return numbers;
}

void add_text(const OIIO::ImageSpec& spec, ColorTag::Kind kind, const char* attribute, ColorTags& found) {
    const std::string text = spec.get_string_attribute(attribute);
    if (!text.empty())
        found.tags.push_back({kind, attribute, text, {}, {}});
}

/// What OpenImageIO calls the color space of a DPX file is made of the transfer characteristic alone, except
/// for a gamma.
bool is_named_by_transfer(const OIIO::ImageSpec& spec) {
    const std::string transfer = spec.get_string_attribute(DPX_TRANSFER);
    return !transfer.empty() && transfer != "User defined";
}

/// The text of the user data of a DPX file; empty where there is none.
std::string get_user_text(const OIIO::ImageSpec& spec) {
    const OIIO::ParamValue* data = spec.find_attribute(DPX_USER_DATA);
    if (!data || data->type().basesize() != 1)
        return "";
    const std::string text(static_cast<const char*>(data->data()), data->type().basevalues());
    return text.substr(0, text.find('\0'));
}

bool is_own_user_text(const std::string& text) {
    return text.compare(0, DPX_NAME_PREFIX.size(), DPX_NAME_PREFIX) == 0;
}

/// Newer versions of OpenImageIO derive the name from these tags, which are looked at themselves.
bool is_derived(const std::string& name, const OIIO::ImageSpec& spec) {
    return spec.find_attribute("CICP") || name == spec.get_string_attribute("colorInteropID");
}

void add_name(const OIIO::ImageSpec& spec, ColorTags& found) {
    const std::string name = spec.get_string_attribute(COLOR_SPACE);
    const bool is_unset = equals_ignoring_case(name, UNKNOWN_COLOR_SPACE); // OpenImageIO's word for no tag
    if (is_unset || is_named_by_transfer(spec) || is_derived(name, spec))
        return;
    const bool is_assumed = std::any_of(std::begin(ASSUMED_NAMES), std::end(ASSUMED_NAMES),
                                        [&](const char* known) { return equals_ignoring_case(name, known); });
    // A gamma of 1 in the file becomes "Linear".
    if (!is_assumed || (spec.get_float_attribute("oiio:Gamma") == 1.0f && !states_srgb(spec)))
        add_text(spec, ColorTag::NAME, COLOR_SPACE, found);
}

/// The name that conversions of this project record, unless OpenImageIO knows it as well.
void add_own_name(const OIIO::ImageSpec& spec, ColorTags& found) {
    if (const std::string text = get_user_text(spec); is_own_user_text(text))
        found.tags.push_back({ColorTag::NAME, OWN_COLOR_SPACE, text.substr(DPX_NAME_PREFIX.size()), {}, {}});
    else if (found.tags.empty() || found.tags.front().text != spec.get_string_attribute(OWN_COLOR_SPACE))
        add_text(spec, ColorTag::NAME, OWN_COLOR_SPACE, found);
}

void add_profile(const OIIO::ImageSpec& spec, ColorTags& found) {
    const OIIO::ParamValue* profile = spec.find_attribute("ICCProfile");
    if (!profile || profile->type().basesize() != 1 || profile->type().arraylen <= 0)
        return;
    const auto* bytes = static_cast<const unsigned char*>(profile->data());
    found.tags.push_back({ColorTag::ICC_PROFILE,
                          "ICC profile",
                          spec.get_string_attribute("ICCProfile:profile_description"),
                          {},
                          {bytes, bytes + profile->type().arraylen}});
}

void add_numbers(const OIIO::ImageSpec& spec, ColorTag::Kind kind, const char* attribute, int count,
                 ColorTags& found) {
    std::vector<double> numbers = get_numbers(spec, attribute, count);
    if (!numbers.empty())
        found.tags.push_back({kind, attribute, "", std::move(numbers), {}});
}

bool is_float_type(OIIO::TypeDesc type) {
    return type.basetype == OIIO::TypeDesc::HALF || type.basetype == OIIO::TypeDesc::FLOAT ||
           type.basetype == OIIO::TypeDesc::DOUBLE;
}

} // namespace

bool ColorTag::states_unknown() const {
    return (kind == NAME || kind == INTEROP_ID) && equals_ignoring_case(text, UNKNOWN_COLOR_SPACE);
}

std::string ColorTag::describe() const {
    if (!text.empty())
        return fmt::format(
            "{} '{}'{}", attribute, text,
            colorimetric.empty() ? "" : fmt::format(" with {} '{}'", DPX_COLORIMETRIC, colorimetric));
    return numbers.empty() ? attribute : fmt::format("{} {:.4g}", attribute, fmt::join(numbers, " "));
}

std::vector<std::string> ColorTags::describe() const {
    std::vector<std::string> described;
    for (const ColorTag& tag : tags)
        described.push_back(tag.describe());
    return described;
}

ColorTags find_color_tags(const OIIO::ImageSpec& spec) {
    ColorTags found;
    found.is_float = is_float_type(spec.format);
    add_name(spec, found);
    add_own_name(spec, found);
    add_text(spec, ColorTag::INTEROP_ID, "colorInteropID", found);
    add_numbers(spec, ColorTag::CICP, "CICP", 4, found);
    add_profile(spec, found);
    if (states_srgb(spec))
        found.tags.push_back({ColorTag::SRGB,
                              spec.find_attribute(PNG_SRGB_ATTRIBUTE) ? "sRGB chunk" : "Exif:ColorSpace",
                              "sRGB",
                              {},
                              {}});
    if (spec.get_int_attribute("acesImageContainerFlag") == 1)
        found.tags.push_back({ColorTag::ACES_CONTAINER, "acesImageContainerFlag", "", {}, {}});
    add_numbers(spec, ColorTag::CHROMATICITIES, "chromaticities", 8, found);
    add_text(spec, ColorTag::DPX_TRANSFER, DPX_TRANSFER, found);
    if (!found.tags.empty() && found.tags.back().kind == ColorTag::DPX_TRANSFER)
        found.tags.back().colorimetric = spec.get_string_attribute(DPX_COLORIMETRIC);
    return found;
}

void set_dpx_color_space(OIIO::ImageSpec& spec, const std::string& name) {
    const bool is_own = is_own_user_text(get_user_text(spec));
    if (is_own)
        spec.erase_attribute(DPX_USER_DATA);
    if (name.empty() || (!is_own && spec.find_attribute(DPX_USER_DATA)))
        return;
    const std::string text = std::string(DPX_NAME_PREFIX) + name;
    spec.attribute(DPX_USER_DATA, OIIO::TypeDesc(OIIO::TypeDesc::UINT8, static_cast<int>(text.size())),
                   text.data());
}

} // namespace image
