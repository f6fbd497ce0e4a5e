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
        settings.wishes.depth = image::parse_depth(options.depth);
    settings.wishes.dithers = options.dithers;
    settings.wishes.compression = options.compression;
    settings.wishes.alpha_rule = options.alpha_rule;
    settings.wishes.colors = describe_output_colors(conversion);
    settings.wishes.keeps_space = conversion.get_source() == conversion.get_destination_space();
    settings.wishes.neutrals_stay_neutral = conversion.keeps_neutrals();
    settings.mixes_channels = conversion.mixes_channels();
    settings.layers = options.layers;
    settings.data_space = options.data_space;
    settings.threads = options.threads;
    settings.source_tags = options.source_tags;
    return settings;
}

ImageReport convert_image(const Conversion& conversion, const std::string& input, const std::string& output,
                          const ImageOptions& options) {
    ImageBuffers buffers;
    return convert_image({input, output}, make_image_settings(conversion, options), buffers);
}

} // namespace workflow
