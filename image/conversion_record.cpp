#include "image/conversion_record.h"

#include <string_view>

namespace image {

namespace {

constexpr char OWN_ATTRIBUTE[] = "colorio:fingerprint";
constexpr char SOFTWARE[] = "Software";
/// Before the fingerprint in "Software".
constexpr std::string_view PROGRAM = "colorio ";
/// Length of a fingerprint, to distinguish it from a version.
constexpr std::size_t FINGERPRINT_LENGTH = 32;

struct RecordPlace {
    std::string_view format;
    const char* attribute;
};

constexpr RecordPlace PLACES[] = {
    {"openexr", OWN_ATTRIBUTE}, {"png", OWN_ATTRIBUTE}, {"tiff", SOFTWARE},
    {"jpeg", SOFTWARE},         {"dpx", SOFTWARE},
};

/// Null for a format that cannot keep it.
const char* find_attribute(const std::string& format) {
    for (const RecordPlace& place : PLACES)
        if (format == place.format)
            return place.attribute;
    return nullptr;
}

/// The fingerprint in a text of "Software"; empty for that of other programs.
std::string parse_software(const std::string& text) {
    const bool is_own = text.size() == PROGRAM.size() + FINGERPRINT_LENGTH &&
                        std::string_view(text).substr(0, PROGRAM.size()) == PROGRAM;
    return is_own ? text.substr(PROGRAM.size()) : "";
}

} // namespace

bool can_record_conversion(const std::string& format) {
    return find_attribute(format) != nullptr;
}

void record_conversion(OIIO::ImageSpec& spec, const std::string& format, const std::string& fingerprint) {
    spec.erase_attribute(OWN_ATTRIBUTE);
    if (!parse_software(spec.get_string_attribute(SOFTWARE)).empty())
        spec.erase_attribute(SOFTWARE);
    const char* const attribute = find_attribute(format);
    if (attribute && !fingerprint.empty())
        spec.attribute(attribute, std::string_view(attribute) == SOFTWARE ? std::string(PROGRAM) + fingerprint
                                                                          : fingerprint);
}

std::string get_recorded_conversion(const OIIO::ImageSpec& spec, const std::string& format) {
    const char* const attribute = find_attribute(format);
    if (!attribute)
        return "";
    const std::string text = spec.get_string_attribute(attribute);
    return std::string_view(attribute) == SOFTWARE ? parse_software(text) : text;
}

} // namespace image
