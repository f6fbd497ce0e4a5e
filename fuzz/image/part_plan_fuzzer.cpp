// Any header of an image part (windows, channels, layers, types, metadata) written to any format: the plan
// keeps within what the part and the format have, the tags agree with the pixels, and converting stays within
// its buffers.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <OpenImageIO/imageio.h>
#include <fuzzer/FuzzedDataProvider.h>

#include "image/format_abilities.h"
#include "image/image_layers.h"
#include "image/part_conversion.h"
#include "image/part_plan.h"

namespace {

using OIIO::ImageSpec;
using OIIO::TypeDesc;

constexpr int MAX_CHANNELS = 9;
constexpr int MAX_SIDE = 6;
/// OpenEXR accepts windows up to here.
constexpr int MAX_POSITION = 0x3FFFFFFF;

constexpr const char* FILES[] = {"a.exr", "a.tif", "a.png", "a.jpg", "a.dpx",
                                 "a.tga", "a.hdr", "a.bmp", "a.sgi", "a.webp"};
constexpr const char* LAYERS[] = {"",     "",  "left.", "right.",    "beauty.",
                                  "a.b.", ".", "R.",    "a.normal.", "left.id."};
constexpr const char* CHANNELS[] = {"R",    "G",     "B", "A",    "r", "Red", "green",
                                    "BLUE", "alpha", "Y", "gray", "Z", "id",  ""};
constexpr const char* ATTRIBUTES[] = {
    "oiio:ColorSpace", "oiio:UnassociatedAlpha", "oiio:BitsPerSample", "oiio:Gamma",
    "ICCProfile",      "chromaticities",         "compression",        "planarconfig",
    "thumbnail_image", "Exif:ColorSpace",        "multiView",          "ICC:device_class"};
constexpr TypeDesc::BASETYPE TYPES[] = {TypeDesc::UINT8,  TypeDesc::UINT16, TypeDesc::HALF,  TypeDesc::FLOAT,
                                        TypeDesc::UINT32, TypeDesc::DOUBLE, TypeDesc::INT16, TypeDesc::INT8};

void require(bool condition) {
    if (!condition)
        std::abort();
}

template <class Choice, std::size_t COUNT>
const Choice& pick(FuzzedDataProvider& input, const Choice (&choices)[COUNT]) {
    return choices[input.ConsumeIntegralInRange<std::size_t>(0, COUNT - 1)];
}

int position(FuzzedDataProvider& input) {
    return input.ConsumeIntegralInRange(0, 7) == 0 ? input.ConsumeIntegralInRange(-MAX_POSITION, MAX_POSITION)
                                                   : input.ConsumeIntegralInRange(-4, 4);
}

void add_attribute(FuzzedDataProvider& input, ImageSpec& spec) {
    const std::string name = pick(input, ATTRIBUTES);
    const auto value = input.ConsumeIntegral<std::int32_t>();
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        spec.attribute(name, value);
        break;
    case 1:
        spec.attribute(name, static_cast<float>(value));
        break;
    case 2:
        spec.attribute(name, input.ConsumeRandomLengthString(8));
        break;
    default: {
        const std::string views[] = {"left", input.ConsumeRandomLengthString(8), "right"};
        const char* const strings[] = {views[0].c_str(), views[1].c_str(), views[2].c_str()};
        spec.attribute(name, TypeDesc(TypeDesc::STRING, 3), strings);
    }
    }
}

ImageSpec make_spec(FuzzedDataProvider& input) {
    ImageSpec spec(input.ConsumeIntegralInRange(1, MAX_SIDE), input.ConsumeIntegralInRange(1, MAX_SIDE),
                   input.ConsumeIntegralInRange(1, MAX_CHANNELS), pick(input, TYPES));
    spec.x = position(input);
    spec.y = position(input);
    spec.full_x = input.ConsumeBool() ? spec.x : position(input);
    spec.full_y = input.ConsumeBool() ? spec.y : position(input);
    spec.full_width = input.ConsumeIntegralInRange(0, MAX_SIDE);
    spec.full_height = input.ConsumeIntegralInRange(0, MAX_SIDE);
    spec.tile_width = spec.tile_height = input.ConsumeBool() ? 16 : 0;
    spec.channelnames.clear();
    const bool has_own_types = input.ConsumeBool();
    for (int i = 0; i < spec.nchannels; ++i) {
        spec.channelnames.push_back(std::string(pick(input, LAYERS)) + pick(input, CHANNELS));
        if (has_own_types)
            spec.channelformats.push_back(pick(input, TYPES));
    }
    spec.alpha_channel = input.ConsumeIntegralInRange(-1, spec.nchannels - 1);
    spec.z_channel = input.ConsumeIntegralInRange(-1, spec.nchannels - 1);
    for (int i = input.ConsumeIntegralInRange(0, 6); i > 0; --i)
        add_attribute(input, spec);
    return spec;
}

image::OutputOptions make_options(FuzzedDataProvider& input) {
    image::OutputOptions options;
    if (input.ConsumeBool())
        options.depth = {pick(input, TYPES), input.ConsumeBool() ? 10 : 0};
    options.alpha_rule = static_cast<image::AlphaRule>(input.ConsumeIntegralInRange(0, 2));
    options.colors.name = input.ConsumeRandomLengthString(8).c_str(); // names hold no zero byte
    options.keeps_space = input.ConsumeBool();
    options.neutrals_stay_neutral = input.ConsumeBool();
    return options;
}

/// Any of the layers that have color, whether they are data or not.
std::vector<image::ColorLayer> choose_layers(FuzzedDataProvider& input, const ImageSpec& spec) {
    std::vector<image::ColorLayer> chosen;
    for (const image::ImageLayer& layer : image::find_layers(spec, {"openexr", {"beauty", "left"}}))
        if (layer.color && input.ConsumeBool())
            chosen.push_back(*layer.color);
    return chosen;
}

void check_channels(const ImageSpec& input, const image::PartPlan& plan) {
    const auto count = static_cast<std::size_t>(plan.spec.nchannels);
    require(count >= 1 && plan.channels.size() == count && plan.spec.channelnames.size() == count);
    require(plan.spec.channelformats.empty() || plan.spec.channelformats.size() == count);
    require(plan.spec.alpha_channel >= -1 && plan.spec.alpha_channel < plan.spec.nchannels);
    require(plan.spec.z_channel >= -1 && plan.spec.z_channel < plan.spec.nchannels);
    for (const image::PlannedChannel& channel : plan.channels) {
        require(channel.source >= 0 && channel.source < input.nchannels);
        require(channel.component >= 0 && channel.component < 4);
        require(channel.layer == image::ColorLayer::NONE ||
                plan.layers.at(static_cast<std::size_t>(channel.layer)).contains(channel.source));
    }
    require(!(plan.multiplies_by_alpha && plan.associates_alpha));
    require(!(plan.associates_alpha && plan.straightens_alpha));
}

void check_tags(const image::PartPlan& plan, const image::OutputOptions& options, const std::string& format) {
    if (plan.layers.empty() || options.colors.name.empty())
        return;
    // In DPX the attribute would change the transfer.
    const std::string name = format == "dpx" ? "" : options.colors.name;
    require(plan.spec.get_string_attribute("oiio:ColorSpace") == name);
    require(options.keeps_space || plan.spec.find_attribute("ICCProfile") == nullptr);
    require(plan.spec.find_attribute("thumbnail_image") == nullptr);
}

/// What a format may make of the types that it is asked for.
ImageSpec make_taken_spec(FuzzedDataProvider& input, const image::PartPlan& plan) {
    ImageSpec taken = plan.spec;
    if (input.ConsumeBool()) {
        taken.format = pick(input, TYPES);
        taken.channelformats.clear();
    }
    return taken;
}

void convert(FuzzedDataProvider& input, const ImageSpec& spec, const image::PartPlan& planned) {
    const ImageSpec taken = make_taken_spec(input, planned);
    image::PixelBuffer source, target;
    source.resize(spec.image_bytes(true));
    for (std::size_t i = 0; i < source.size(); ++i)
        source.data()[i] = static_cast<std::byte>(i * 37);
    const auto halve = [](float* rgba, unsigned int width, unsigned int height) {
        for (std::size_t i = 0; i < std::size_t(width) * height * 4; ++i)
            rgba[i] *= 0.5f;
    };
    image::PartPlan plan = planned;
    plan.quantization = {input.ConsumeBool() ? 1023 : 255, input.ConsumeBool()};
    const bool in_place = image::can_convert_in_place(spec, plan, taken);
    if (!in_place)
        target.resize(taken.image_bytes(true));
    image::convert_part(spec, source, plan, taken, halve, 1, in_place ? source : target);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider input(data, size);
    static const std::vector<image::FormatAbilities> formats = [] {
        std::vector<image::FormatAbilities> all;
        for (const char* file : FILES)
            all.push_back(image::get_format_abilities(file));
        return all;
    }();
    const auto& abilities = formats[input.ConsumeIntegralInRange<std::size_t>(0, formats.size() - 1)];
    const std::string input_format = input.ConsumeBool() ? abilities.name : "openexr";
    const image::OutputOptions options = make_options(input);
    const ImageSpec spec = make_spec(input);

    const image::PartPlan plan =
        image::plan_part(spec, choose_layers(input, spec), input_format, abilities, options);
    check_channels(spec, plan);
    check_tags(plan, options, abilities.name);
    if (plan.spec.image_bytes(true) < 1 << 20)
        convert(input, spec, plan);
    return 0;
}
