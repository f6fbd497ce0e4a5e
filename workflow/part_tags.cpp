#include "workflow/part_tags.h"

#include <algorithm>
#include <utility>

#include "image/data_names.h"
#include "image/image_layers.h"

namespace workflow {

namespace {

PartTags read_part_tags(const image::PartHeader& part) {
    const std::string name = image::get_part_name(part.spec);
    return {name.empty() ? "part " + std::to_string(part.subimage + 1) : name,
            image::find_color_tags(part.spec)};
}

} // namespace

std::vector<PartTags> find_part_tags(const std::vector<image::PartHeader>& headers,
                                     const std::string& format) {
    image::PartContext context;
    context.format = format;
    for (const image::PartHeader& part : headers)
        for (std::string& name : image::get_cryptomatte_names(part.spec))
            context.cryptomattes.push_back(std::move(name));
    std::vector<PartTags> tagged;
    const image::PartHeader* without_tags = nullptr;
    for (const image::PartHeader& part : headers) {
        if (part.level > 0 || image::find_color_layers(part.spec, context).empty())
            continue;
        PartTags found = read_part_tags(part);
        if (!found.tags.tags.empty())
            tagged.push_back(std::move(found));
        else if (!without_tags)
            without_tags = &part;
    }
    if (without_tags || tagged.empty())
        tagged.push_back(read_part_tags(without_tags ? *without_tags : headers.front()));
    return tagged;
}

const TaggedSpace* find_tagged_space(const std::vector<TaggedSpace>& spaces,
                                     const std::vector<std::string>& tags) {
    const auto found = std::find_if(spaces.begin(), spaces.end(),
                                    [&](const TaggedSpace& space) { return space.tags == tags; });
    return found == spaces.end() ? nullptr : &*found;
}

} // namespace workflow
