#include "tool/layer_options.h"

namespace tool {

void add_layer_options(Options& options, workflow::LayerOptions& layers) {
    const auto add = [&](const char* name, std::vector<std::string>& list, const char* help) {
        options.add(name, list, help).value("LIST").one_value_each().separator(',');
    };
    add("--layers", layers.layers,
        "layers to convert, comma-separated; rgba is color without a layer (default: every color layer, and "
        "no data)");
    add("--parts", layers.parts, "parts to convert: names or numbers from 1, comma-separated (default: all)");
    add("--skip", layers.skipped, "layers and parts not to convert, comma-separated");
}

std::string describe_layers(const workflow::LayerReport& report) {
    const std::string text = describe(report);
    return text.empty() ? "" : "; " + text;
}

} // namespace tool
