#include "image/compression.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/file_failure.h"

namespace image {

namespace {

constexpr char COMPRESSION[] = "compression";

/// A method of a format. Without a quality `most` is 0.
struct Method {
    const char* format;
    const char* name;
    int least = 0;
    int most = 0;
    const char* oiio_name = nullptr; ///< OpenImageIO's name, where it differs.

    bool has_quality(int quality) const { return most > 0 && quality >= least && quality <= most; }
};

/// OpenImageIO 3 (3.1.18) always compresses TIFF with the same level of deflate, and writes deflate for
/// "jpeg".
constexpr bool TIFF_HAS_QUALITY = OIIO_VERSION_MAJOR < 3;

/// The first one of a format is its default. Of deflate and of DWA the "quality" is the level.
constexpr Method METHODS[] = {
    {"openexr", "zip", 1, 9},
    {"openexr", "none"},
    {"openexr", "rle"},
    {"openexr", "zips", 1, 9},
    {"openexr", "piz"},
    {"openexr", "pxr24"},
    {"openexr", "b44"},
    {"openexr", "b44a"},
    {"openexr", "dwaa", 1, 1000},
    {"openexr", "dwab", 1, 1000},
    {"tiff", "zip", 1, TIFF_HAS_QUALITY ? 9 : 0},
    {"tiff", "none"},
    {"tiff", "lzw"},
    {"tiff", "packbits"},
    {TIFF_HAS_QUALITY ? "tiff" : "", "jpeg", 1, 100},
    {"png", "default", 0, 9},
    {"png", "filtered", 0, 9},
    {"png", "huffman", 0, 9},
    {"png", "rle", 0, 9},
    {"png", "fixed", 0, 9},
    {"jpeg", "jpeg", 1, 100},
    {"webp", "lossy", 1, 100, "webp"},
    {"targa", "none"},
    {"targa", "rle"},
    {"iff", "rle"},
    {"iff", "none"},
};

using Methods = std::vector<const Method*>;

Methods find_methods(const std::string& format) {
    Methods found;
    for (const Method& method : METHODS)
        if (format == method.format)
            found.push_back(&method);
    return found;
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason, const std::string& hint) {
    diagnostics::fail_to_write(diagnostics::Code::IMAGE_UNSUPPORTED, path, reason, hint);
}

std::string list_names(const Methods& methods) {
    std::vector<std::string> names;
    for (const Method* method : methods)
        names.push_back(method->name);
    return fmt::format("valid compression methods: {}", fmt::join(names, ", "));
}

std::string list_qualities(const Methods& methods) {
    std::vector<std::string> ranges;
    for (const Method* method : methods)
        if (method->most > 0)
            ranges.push_back(fmt::format("{} {} to {}", method->name, method->least, method->most));
    return ranges.empty() ? "" : fmt::format("valid qualities: {}", fmt::join(ranges, ", "));
}

/// The method of that name, or the first one for an empty name.
const Method& find_method(const std::string& name, const std::string& format, const std::string& path) {
    const Methods methods = find_methods(format);
    if (methods.empty())
        refuse(path, fmt::format("{} has no choice of compression", format), "");
    for (const Method* method : methods)
        if (name.empty() || name == method->name)
            return *method;
    refuse(path, fmt::format("{} has no compression '{}'", format, name), list_names(methods));
}

void check_quality(int quality, const Method& method, const std::string& path) {
    const std::string hint = list_qualities(find_methods(method.format));
    if (method.most == 0)
        refuse(path, fmt::format("the compression '{}' of {} has no quality", method.name, method.format),
               hint);
    if (!method.has_quality(quality))
        refuse(path, fmt::format("invalid quality {} of the compression '{}'", quality, method.name), hint);
}

/// OpenEXR has only these for deep images; OpenImageIO would silently write zips.
constexpr const char* DEEP_METHODS[] = {"none", "rle", "zips"};

void check_deep(const Method& method, const OIIO::ImageSpec& spec, const std::string& path) {
    const bool is_deep_method =
        std::any_of(std::begin(DEEP_METHODS), std::end(DEEP_METHODS),
                    [&](const char* name) { return std::string(name) == method.name; });
    if (spec.deep && !is_deep_method)
        refuse(path, fmt::format("deep images cannot have the compression '{}'", method.name),
               fmt::format("compression methods of deep images: {}", fmt::join(DEEP_METHODS, ", ")));
}

/// libtiff would silently write another compression.
void check_pixels(const Method& method, const OIIO::ImageSpec& spec, const std::string& path) {
    const bool is_jpeg = std::string(method.format) == "tiff" && std::string(method.name) == "jpeg";
    if (is_jpeg && (spec.format != OIIO::TypeUInt8 || spec.nchannels != 3))
        refuse(path, "the compression 'jpeg' of tiff needs three channels of uint8",
               "add -d uint8, or choose zip");
}

} // namespace

void check_compression(const Compression& wanted, const std::string& format, const std::string& path) {
    if (wanted.method.empty() && !wanted.quality)
        return;
    const Method& method = find_method(wanted.method, format, path);
    if (!wanted.quality)
        return;
    const Methods methods = find_methods(format);
    const bool may_fit = wanted.method.empty() &&
                         std::any_of(methods.begin(), methods.end(),
                                     [&](const Method* any) { return any->has_quality(*wanted.quality); });
    if (!may_fit)
        check_quality(*wanted.quality, method, path);
}

void set_compression(const Compression& wanted, const std::string& format, const std::string& path,
                     OIIO::ImageSpec& spec) {
    if (wanted.method.empty() && !wanted.quality) {
        if (format == "png")
            spec.erase_attribute(COMPRESSION); // so that the writer chooses
        return;
    }
    std::string name = wanted.method;
    if (name.empty())
        name = spec.get_string_attribute(COMPRESSION);
    const Method& method = find_method(name, format, path);
    if (wanted.quality)
        check_quality(*wanted.quality, method, path);
    check_pixels(method, spec, path);
    check_deep(method, spec, path);
    for (const char* stale : {"openexr:dwaCompressionLevel", "CompressionQuality", "png:compressionLevel"})
        spec.erase_attribute(stale);
    std::string value = method.oiio_name ? method.oiio_name : method.name;
    if (wanted.quality && format == "png")
        spec.attribute("png:compressionLevel", *wanted.quality);
    else if (wanted.quality)
        value += fmt::format(":{}", *wanted.quality);
    spec.attribute(COMPRESSION, value);
}

} // namespace image
