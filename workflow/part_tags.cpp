#include "workflow/part_tags.h"

#include <algorithm>
#include <utility>

#include "image/data_names.h"
#include "image/image_layers.h"

namespace workflow {

std::vector<image::ColorTags> find_part_tags(const std::vector<image::PartHeader>& headers,
                                             const std::string& format) {
    image::PartContext context;
    context.format = format;
    for (const image::PartHeader& part : headers)
        for (std::string& name : image::get_cryptomatte_names(part.spec))
            context.cryptomattes.push_back(std::move(name));
    std::vector<image::ColorTags> tagged;
    const image::PartHeader* first_color = nullptr;
    for (const image::PartHeader& part : headers) {
        if (part.level > 0 || image::find_color_layers(part.spec, context).empty())
            continue;
        first_color = first_color ? first_color : &part;
        image::ColorTags tags = image::find_color_tags(part.spec);
        if (!tags.tags.empty())
            tagged.push_back(std::move(tags));
    }
    if (tagged.empty())
        tagged.push_back(image::find_color_tags((first_color ? *first_color : headers.front()).spec));
    return tagged;
}

const TaggedSpace* find_tagged_space(const std::vector<TaggedSpace>& spaces,
                                     const std::vector<std::string>& tags) {
    const auto found = std::find_if(spaces.begin(), spaces.end(),
                                    [&](const TaggedSpace& space) { return space.tags == tags; });
    return found == spaces.end() ? nullptr : &*found;
}

} // namespace workflow
