#pragma once

#include <string>
#include <vector>

#include "image/color_tags.h"
#include "image/image_file.h"

namespace workflow {

/// Color tags and the color space that they name or describe.
struct TaggedSpace {
    std::vector<std::string> tags; ///< For messages, and to recognize them.
    std::string color_space;       ///< A label.
    bool is_data = false;          ///< The config says that it holds data.
};

/// The color tags of one part.
struct PartTags {
    std::string part; ///< For messages: "albedo", "part 2".
    image::ColorTags tags;
};

/// The color tags of the parts of an image, read as `format`, that have any and are color by the rule of
/// image/image_layers.h, in their order; then those of the first part of color without tags. Without color
/// those of the first part. Never empty.
std::vector<PartTags> find_part_tags(const std::vector<image::PartHeader>& headers,
                                     const std::string& format);

/// The one of `spaces` with these tags; null when there is none.
const TaggedSpace* find_tagged_space(const std::vector<TaggedSpace>& spaces,
                                     const std::vector<std::string>& tags);

} // namespace workflow
