#pragma once

#include <cstddef>
#include <vector>

#include <OpenImageIO/imageio.h>

#include "image/pixel_layout.h"

namespace image {

/// Consecutive components in consecutive channels of one type.
struct ChannelRun {
    int component;
    int count;
    OIIO::TypeDesc type;
    std::size_t offset;
};

/// Joins consecutive channels. `channels` has a channel for each component, or ColorLayer::NONE.
std::vector<ChannelRun> find_runs(const PixelLayout& layout, const int (&channels)[4]);

} // namespace image
