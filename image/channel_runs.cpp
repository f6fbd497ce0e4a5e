#include "image/channel_runs.h"

#include "image/color_layer.h"

namespace image {

std::vector<ChannelRun> find_runs(const PixelLayout& layout, const int (&channels)[4]) {
    std::vector<ChannelRun> runs;
    for (int component = 0; component < 4; ++component) {
        const int channel = channels[component];
        if (channel == ColorLayer::NONE)
            continue;
        const auto index = static_cast<std::size_t>(channel);
        const bool continues = !runs.empty() && runs.back().component + runs.back().count == component &&
                               channels[component - 1] + 1 == channel &&
                               runs.back().type == layout.types[index];
        if (continues)
            ++runs.back().count;
        else
            runs.push_back({component, 1, layout.types[index], layout.offsets[index]});
    }
    return runs;
}

} // namespace image
