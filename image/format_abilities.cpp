#include "image/format_abilities.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <OpenImageIO/strutil.h>
#include <fmt/format.h>

#include "diagnostics/file_failure.h"

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

/// Channels that the OpenImageIO writer of a format supports.
struct ChannelsOfFormat {
    const char* format;
    bool has_gray;
    bool has_gray_alpha;
};

/// Formats of three or four channels, and fewer only as stated. OpenImageIO says of DPX and IFF that they
/// support any number of channels, and says nothing about the others.
constexpr ChannelsOfFormat FEW_CHANNELS[] = {
    {"bmp", true, false},  {"dpx", true, false},   {"gif", false, false}, {"hdr", false, false},
    {"heif", true, false}, {"iff", false, false},  {"jpeg", true, false}, {"jpeg2000", true, false},
    {"pnm", true, false},  {"webp", false, false},
};

const ChannelsOfFormat* find_few_channels(const std::string& format) {
    const auto found = std::find_if(std::begin(FEW_CHANNELS), std::end(FEW_CHANNELS),
                                    [&](const ChannelsOfFormat& entry) { return format == entry.format; });
    return found == std::end(FEW_CHANNELS) ? nullptr : found;
}

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

void check_channel_count(int channels, const FormatAbilities& abilities, const std::string& path) {
    constexpr int MOST_CHANNELS = 4;
    const bool is_supported = channels == 1   ? abilities.has_gray
                              : channels == 2 ? abilities.has_gray_alpha
                                              : channels <= MOST_CHANNELS;
    if (!abilities.has_any_channels && !is_supported)
        diagnostics::fail_to_write(diagnostics::Code::IMAGE_UNSUPPORTED, path,
                                   fmt::format("{} does not support images of {} {}", abilities.name,
                                               channels, channels == 1 ? "channel" : "channels"));
}

FormatAbilities get_format_abilities(const std::string& path) {
    const std::unique_ptr<OIIO::ImageOutput> output = OIIO::ImageOutput::create(path);
    if (!output)
        diagnostics::fail_to_write(diagnostics::Code::IMAGE_UNSUPPORTED, path,
                                   find_reason(path, OIIO::geterror()));
    const auto supports = [&](const char* feature) { return output->supports(feature) != 0; };
    FormatAbilities abilities;
    abilities.name = output->format_name();
    abilities.alpha_convention = get_alpha_convention(abilities.name);
    abilities.has_alpha = supports("alpha");
    const ChannelsOfFormat* const few_channels = find_few_channels(abilities.name);
    abilities.has_any_channels = few_channels == nullptr && supports("nchannels");
    abilities.has_gray = few_channels == nullptr || few_channels->has_gray;
    abilities.has_gray_alpha = few_channels == nullptr || few_channels->has_gray_alpha;
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
