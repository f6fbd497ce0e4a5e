#include "workflow/file_space.h"

#include <algorithm>

#include "diagnostics/failure.h"
#include "image/image_reader.h"
#include "image/reader_process.h"
#include "workflow/format_associations.h"
#include "workflow/session.h"

namespace workflow {

namespace {

/// `tags` are those of the parts, of which the first that do not say data decide.
FileSpace find_space_of_parts(const std::string& path, const std::vector<PartTags>& tags,
                              const std::string& config_name) {
    std::vector<PartSpace> spaces;
    std::vector<diagnostics::Diagnostics> warnings;
    for (const PartTags& of_part : tags) {
        FileSpace tagged = find_tagged_space(path, of_part, config_name);
        warnings.push_back(std::move(tagged.warnings));
        spaces.push_back({of_part.part, tagged.color_space, tagged.reason, tagged.is_data});
    }
    const auto colors =
        std::find_if(spaces.begin(), spaces.end(), [](const PartSpace& space) { return !space.is_data; });
    const std::size_t decisive =
        colors == spaces.end() ? 0 : static_cast<std::size_t>(colors - spaces.begin());
    FileSpace found = find_file_space(path, tags[decisive].tags, config_name);
    if (found.is_data) // as a whole
        return found;
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        if (i != decisive)
            add_new(found.warnings, warnings[i]);
        std::vector<std::string> texts = tags[i].tags.describe();
        found.part_tags.push_back(texts);
        if (!spaces[i].color_space.empty() && spaces[i].color_space != found.color_space &&
            !find_tagged_space(found.other_tags, texts))
            found.other_tags.push_back({std::move(texts), spaces[i].color_space, spaces[i].is_data});
    }
    if (!found.other_tags.empty())
        found.parts = std::move(spaces);
    return found;
}

} // namespace

FileSpace find_file_space(const Session& session, const std::string& path) {
    const std::string config_name = session.get_config_name();
    std::vector<PartTags> tags;
    std::optional<diagnostics::Diagnostic> unread;
    try {
        image::ReaderProcess process;
        const image::ImageReader reader(path, process);
        tags = find_part_tags(reader.get_parts(), reader.get_format());
    } catch (const diagnostics::Failure& failure) {
        unread = failure.get_diagnostics().front();
    }
    FileSpace found = tags.empty() ? find_file_space(path, std::nullopt, config_name)
                                   : find_space_of_parts(path, tags, config_name);
    found.unread = std::move(unread);
    if (auto warning = find_unused_mapping(session))
        found.warnings.insert(found.warnings.begin(), std::move(*warning));
    return found;
}

} // namespace workflow
