#include "workflow/image_conversion.h"

#include <algorithm>

#include "diagnostics/failure.h"
#include "workflow/output_colors.h"

namespace workflow {

namespace {

image::ColorDescription describe_colors(const Conversion& conversion) {
    return conversion.leaves_data() ? image::ColorDescription() : describe_output_colors(conversion);
}

bool keeps_space(const Conversion& conversion) {
    return conversion.get_source() == conversion.get_destination_space();
}

PartConversion make_part_conversion(const Session& session, ConversionRequest request,
                                    const TaggedSpace& space) {
    request.from = space.color_space;
    PartConversion part{space, nullptr, {}};
    try {
        if (!space.is_data)
            part.conversion = std::make_shared<const Conversion>(session, request);
    } catch (const diagnostics::Failure& failure) {
        part.failure = failure.get_diagnostics();
    }
    return part;
}

PartSettings make_part_settings(const PartConversion& part) {
    PartSettings settings;
    settings.space = part.space;
    settings.conversion = part.conversion;
    settings.failure = part.failure;
    if (!part.conversion)
        return settings;
    if (!part.conversion->is_identity())
        settings.convert = [conversion = part.conversion](float* rgba, unsigned int width,
                                                          unsigned int height) {
            conversion->apply(rgba, width, height);
        };
    settings.mixes_channels = part.conversion->mixes_channels();
    settings.colors = describe_colors(*part.conversion);
    settings.keeps_space = keeps_space(*part.conversion);
    settings.neutrals_stay_neutral = part.conversion->keeps_neutrals();
    return settings;
}

} // namespace

std::vector<PartConversion> make_part_conversions(const Session& session, const ConversionRequest& request,
                                                  const std::vector<TaggedSpace>& other_tags) {
    std::vector<PartConversion> parts;
    for (const TaggedSpace& space : other_tags) {
        const auto known = std::find_if(parts.begin(), parts.end(), [&](const PartConversion& part) {
            return part.space.color_space == space.color_space;
        });
        parts.push_back(known == parts.end() ? make_part_conversion(session, request, space)
                                             : PartConversion{space, known->conversion, known->failure});
    }
    return parts;
}

ImageSettings make_image_settings(const Conversion& conversion, const ImageOptions& options) {
    ImageSettings settings;
    if (!conversion.is_identity())
        settings.convert = [&conversion](float* rgba, unsigned int width, unsigned int height) {
            conversion.apply(rgba, width, height);
        };
    if (!options.depth.empty())
        settings.output_options.depth = image::parse_depth(options.depth);
    settings.output_options.dithers = options.dithers;
    settings.output_options.compression = options.compression;
    settings.output_options.alpha_rule = options.alpha_rule;
    settings.output_options.colors = describe_colors(conversion);
    settings.output_options.keeps_space = keeps_space(conversion);
    settings.output_options.neutrals_stay_neutral = conversion.keeps_neutrals();
    settings.mixes_channels = conversion.mixes_channels();
    settings.layers = options.layers;
    settings.data_space = options.data_space;
    settings.threads = options.threads;
    settings.source_tags = options.source_tags;
    settings.part_tags = options.part_tags;
    settings.is_strict = options.is_strict;
    for (const PartConversion& part : options.parts)
        settings.parts.push_back(make_part_settings(part));
    return settings;
}

ImageReport convert_image(const Conversion& conversion, const std::string& input, const std::string& output,
                          const ImageOptions& options) {
    ImageBuffers buffers;
    return convert_image({input, output}, make_image_settings(conversion, options), buffers);
}

} // namespace workflow
