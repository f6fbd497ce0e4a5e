#include "workflow/image_conversion.h"

#include "workflow/output_colors.h"

namespace workflow {

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
    settings.output_options.colors = describe_output_colors(conversion);
    if (conversion.leaves_data())
        settings.output_options.colors = {};
    settings.output_options.keeps_space = conversion.get_source() == conversion.get_destination_space();
    settings.output_options.neutrals_stay_neutral = conversion.keeps_neutrals();
    settings.mixes_channels = conversion.mixes_channels();
    settings.layers = options.layers;
    settings.data_space = options.data_space;
    settings.threads = options.threads;
    settings.source_tags = options.source_tags;
    settings.is_strict = options.is_strict;
    settings.other_tags = options.other_tags;
    return settings;
}

ImageReport convert_image(const Conversion& conversion, const std::string& input, const std::string& output,
                          const ImageOptions& options) {
    ImageBuffers buffers;
    return convert_image({input, output}, make_image_settings(conversion, options), buffers);
}

} // namespace workflow
