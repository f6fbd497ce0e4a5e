#include "tool/layer_options.h"

namespace tool {

void add_layer_options(Options& options, workflow::LayerWishes& wishes) {
    const auto add = [&](const char* name, std::vector<std::string>& list, const char* help) {
        options.add(name, list, help).value("LIST").one_value_each().separator(',');
    };
    add("--layers", wishes.layers,
        "layers to convert, comma-separated; rgba is color without a layer (default: every color layer, and "
        "no data)");
    add("--parts", wishes.parts, "parts to convert: names or numbers from 1, comma-separated (default: all)");
    add("--skip", wishes.skipped, "layers and parts not to convert, comma-separated");
}

std::string describe_layers(const workflow::LayerReport& report) {
    const std::string text = describe(report);
    return text.empty() ? "" : "; " + text;
}

} // namespace tool
