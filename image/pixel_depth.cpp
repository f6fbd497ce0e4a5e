#include "image/pixel_depth.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/file_failure.h"

namespace image {

namespace {

constexpr char BITS_PER_SAMPLE[] = "oiio:BitsPerSample";

struct NamedDepth {
    const char* name;
    OIIO::TypeDesc::BASETYPE type;
    int bits;
};
constexpr NamedDepth DEPTHS[] = {
    {"uint8", OIIO::TypeDesc::UINT8, 0},    {"uint10", OIIO::TypeDesc::UINT16, 10},
    {"uint12", OIIO::TypeDesc::UINT16, 12}, {"uint16", OIIO::TypeDesc::UINT16, 0},
    {"half", OIIO::TypeDesc::HALF, 0},      {"float", OIIO::TypeDesc::FLOAT, 0},
};

/// What OpenImageIO's writers store, and its readers read again.
struct DepthsOfFormat {
    const char* format;
    std::vector<std::string> names;
};

const std::vector<DepthsOfFormat>& get_depths_of_formats() {
    static const std::vector<DepthsOfFormat> all = {
        {"openexr", {"half", "float"}},
        {"dpx", {"uint8", "uint10", "uint12", "uint16", "float"}},
        {"tiff", {"uint8", "uint10", "uint12", "uint16", "float"}},
        {"jpeg2000", {"uint8", "uint10", "uint12", "uint16"}},
        {"png", {"uint8", "uint16"}},
        {"sgi", {"uint8", "uint16"}},
        {"iff", {"uint8", "uint16"}},
        {"rla", {"uint8", "uint16", "float"}},
        {"fits", {"uint8", "float"}},
        {"hdr", {"float"}},
        {"jpeg", {"uint8"}},
        {"targa", {"uint8"}},
        {"bmp", {"uint8"}},
        {"webp", {"uint8"}},
        {"gif", {"uint8"}},
        {"ico", {"uint8"}},
        {"pnm", {"uint8"}},
    };
    return all;
}

/// Null for a format that is not in the table.
const std::vector<std::string>* find_depths(const std::string& format) {
    for (const DepthsOfFormat& entry : get_depths_of_formats())
        if (format == entry.format)
            return &entry.names;
    return nullptr;
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

std::string PixelDepth::get_name() const {
    return bits > 0 ? fmt::format("uint{}", bits) : type.c_str();
}

int PixelDepth::get_few_codes() const {
    if (type == OIIO::TypeUInt8)
        return 255;
    return bits > 0 ? (1 << bits) - 1 : 0;
}

bool operator==(const PixelDepth& a, const PixelDepth& b) {
    return a.type == b.type && a.bits == b.bits;
}

PixelDepth parse_depth(const std::string& name) {
    std::vector<std::string> names;
    for (const NamedDepth& known : DEPTHS) {
        if (name == known.name)
            return {known.type, known.bits};
        names.push_back(known.name);
    }
    diagnostics::fail(diagnostics::Code::IMAGE_UNSUPPORTED, fmt::format("unknown pixel type '{}'", name),
                      fmt::format("valid types: {}", fmt::join(names, ", ")));
}

PixelDepth get_depth(const OIIO::ImageSpec& spec, const std::string& format) {
    PixelDepth depth{spec.format, spec.get_int_attribute(BITS_PER_SAMPLE)};
    const std::vector<std::string>* const names = find_depths(format);
    const bool is_packed = spec.format == OIIO::TypeUInt16 && names != nullptr &&
                           contains(*names, fmt::format("uint{}", depth.bits)) && depth.bits < 16;
    if (!is_packed)
        depth.bits = 0;
    return depth;
}

PixelDepth get_usual_depth(OIIO::TypeDesc type, const std::string& format) {
    const bool is_float = type == OIIO::TypeHalf || type == OIIO::TypeFloat || type == OIIO::TypeDesc::DOUBLE;
    return format == "dpx" && is_float ? parse_depth("uint10") : PixelDepth();
}

OIIO::TypeDesc get_storable_type(OIIO::TypeDesc type, const std::string& format) {
    const bool is_unsuitable = type == OIIO::TypeHalf || type == OIIO::TypeUInt16;
    return format == "fits" && is_unsuitable ? OIIO::TypeFloat : type;
}

void set_bits(const PixelDepth& depth, OIIO::ImageSpec& spec) {
    if (!depth.is_known())
        return;
    spec.erase_attribute(BITS_PER_SAMPLE);
    if (depth.bits > 0)
        spec.attribute(BITS_PER_SAMPLE, depth.bits);
}

std::vector<std::string> get_depth_names(const std::string& format) {
    const std::vector<std::string>* const names = find_depths(format);
    return names ? *names : std::vector<std::string>();
}

void check_depth(const PixelDepth& depth, const std::string& format, const std::string& path) {
    const std::vector<std::string>* const names = find_depths(format);
    if (!depth.is_known() || names == nullptr || contains(*names, depth.get_name()))
        return;
    diagnostics::fail_to_write(
        diagnostics::Code::IMAGE_UNSUPPORTED, path,
        fmt::format("{} does not support {}, only {}", format, depth.get_name(), fmt::join(*names, ", ")));
}

} // namespace image
