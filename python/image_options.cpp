#include "python/image_options.h"

#include "python/text.h"

namespace py = pybind11;

namespace python {

image::OutputOptions OutputArguments::make_output_options() const {
    image::OutputOptions options;
    if (!depth.empty())
        options.depth = image::parse_depth(depth);
    options.dithers = dithers;
    options.compression.method = compression;
    if (!quality.is_none())
        options.compression.quality = quality.cast<int>();
    return options;
}

workflow::ImageOptions ImageArguments::make_image_options() const {
    const image::OutputOptions written = output.make_output_options();
    workflow::ImageOptions options;
    options.depth = output.depth;
    options.dithers = written.dithers;
    options.compression = written.compression;
    if (!divides_by_alpha.is_none())
        options.alpha_rule =
            divides_by_alpha.cast<bool>() ? image::AlphaRule::DIVIDE : image::AlphaRule::DO_NOT_DIVIDE;
    options.layers = {get_paths(layers, "layers"), get_paths(parts, "parts"), get_paths(skipped, "skip")};
    options.threads = threads;
    return options;
}

} // namespace python
