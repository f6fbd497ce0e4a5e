#include "image/format_abilities.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <OpenImageIO/strutil.h>
#include <fmt/format.h>

#include "diagnostics/failure.h"

namespace image {

namespace {

struct ConventionOfFormat {
    const char* format;
    AlphaConvention convention;
};

/// Formats whose specification does not require color multiplied by alpha.
constexpr ConventionOfFormat CONVENTIONS[] = {
    {"png", AlphaConvention::STRAIGHT},  {"targa", AlphaConvention::STRAIGHT},
    {"webp", AlphaConvention::STRAIGHT}, {"gif", AlphaConvention::STRAIGHT},
    {"ico", AlphaConvention::STRAIGHT},  {"tiff", AlphaConvention::EITHER},
};

AlphaConvention get_alpha_convention(const std::string& format) {
    for (const ConventionOfFormat& entry : CONVENTIONS)
        if (format == entry.format)
            return entry.convention;
    return AlphaConvention::ASSOCIATED;
}

bool has_writer(const std::string& format) {
    const std::vector<std::string> formats =
        OIIO::Strutil::splits(OIIO::get_string_attribute("output_format_list"), ",");
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

/// Why OpenImageIO cannot write `path`: because of its extension, else `error`.
std::string find_reason(const std::string& path, const std::string& error) {
    const std::string extension = std::filesystem::path(path).extension().string();
    if (extension.size() < 2)
        return "the file name has no extension, which selects the image format";
    for (const auto& [format, extensions] : OIIO::get_extension_map())
        for (const std::string& known : extensions)
            if (OIIO::Strutil::iequals(known, extension.substr(1)))
                return has_writer(format) ? error : fmt::format("OpenImageIO cannot write {} images", format);
    return fmt::format("unknown image format '{}'", extension);
}

} // namespace

FormatAbilities get_format_abilities(const std::string& path) {
    const std::unique_ptr<OIIO::ImageOutput> output = OIIO::ImageOutput::create(path);
    if (!output) {
        diagnostics::fail_file(
            diagnostics::Code::IMAGE_UNSUPPORTED,
            fmt::format("cannot write '{}': {}", path, find_reason(path, OIIO::geterror())), path);
    }
    const auto supports = [&](const char* feature) { return output->supports(feature) != 0; };
    FormatAbilities abilities;
    abilities.name = output->format_name();
    abilities.alpha_convention = get_alpha_convention(abilities.name);
    abilities.has_alpha = supports("alpha");
    abilities.has_any_channels = supports("nchannels");
    abilities.has_channel_formats = supports("channelformats");
    abilities.has_windows = supports("displaywindow");
    abilities.has_negative_origin = supports("negativeorigin");
    abilities.has_subimages = supports("multiimage");
    abilities.has_levels = supports("mipmap");
    abilities.appends_subimages = supports("appendsubimage");
    abilities.has_tiles = supports("tiles");
    abilities.has_deep = supports("deepdata");
    return abilities;
}

} // namespace image
