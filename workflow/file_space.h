#pragma once

#include <optional>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "image/color_tags.h"
#include "workflow/part_tags.h"

namespace workflow {

class Session;

/// One source of information about the color space of a file, and its result.
struct FileSpaceStep {
    std::string name;   ///< "tags", "file rules".
    std::string answer; ///< "none", "oiio:ColorSpace 'Cineon' is Tavelion|Cineon".
};

/// The color space that a part is in by its tags.
struct PartSpace {
    std::string part; ///< "albedo", "part 2".
    std::string
        color_space;    ///< A label; empty where the tags lead to none, and the part is in that of the file.
    std::string reason; ///< "from the tag colorio:ColorSpace 'quarter'".
    bool is_data = false; ///< The color space holds data.
};

/// The color space that the pixels of a file are taken to be in.
struct FileSpace {
    std::string color_space; ///< A label; empty when the config publishes no color space.
    std::string reason;      ///< "from the built-in associations, category Open EXR".
    bool is_assumed = false; ///< No tag, rule or association decides it.
    bool is_data = false;    ///< The config says that the color space holds data, which is never converted.
    std::optional<std::vector<std::string>>
        tags;                            ///< Of the file, for messages; nothing when it was not read.
    std::vector<TaggedSpace> other_tags; ///< Of parts that are in another color space by their tags.
    std::vector<std::vector<std::string>> part_tags; ///< Of all parts with color and tags.
    std::vector<PartSpace> parts;                    ///< All with color and tags, if there are such parts.
    std::optional<diagnostics::Diagnostic> unread;   ///< Why the tags could not be read.
    std::vector<FileSpaceStep> steps;                ///< In the order of their use, the decisive one last.
    diagnostics::Diagnostics warnings; ///< About tags that name no color space of the config, and about
                                       ///< integers that a default rule takes for linear.
};

/// Finds the color space of a file when the user did not name one, from the first of these that decides it: a
/// file rule of the config, other than the default one, that gives a color space of data; a tag of the file
/// that names or describes a color space of the config; another file rule than the default one; the module's
/// format association, when the config has that color space; the default file rule; else an assumption: for
/// integers the first of the roles default_byte, matte_paint, texture_paint, color_picking and default that
/// the config has, else scene_linear. A tag that says that pixels are linear, and no more, leads to the
/// assumption of scene_linear before the association. Needs an open session, in whose thread
/// it is called; `config_name` is for messages. `tags` are those of the file, or nothing when it was not
/// read.
FileSpace find_file_space(const std::string& path, const std::optional<image::ColorTags>& tags,
                          const std::string& config_name);

/// The color space that the tags of one part of the file alone lead to; without a label, but with warnings,
/// when they decide nothing.
FileSpace find_tagged_space(const std::string& path, const PartTags& tags, const std::string& config_name);

/// `find_file_space` for the image at `path` and the config of `session`. The tags are those of the first
/// part that has color and tags, which do not say data; else of the first that has color and none; else of
/// the first. Those of other parts lead to `other_tags`. The tags of an image that cannot be read are left
/// out. The warnings also say why a mapping file of the preferences is not used.
FileSpace find_file_space(const Session& session, const std::string& path);

/// A note of the color space found for the image at `path`; a warning if it is assumed. Throws
/// diagnostics::Failure when none was found and, unless `may_assume`, when it is assumed or a warning of
/// `found` says that it is doubtful.
diagnostics::Diagnostic describe_file_space(const FileSpace& found, const std::string& path, bool may_assume);

} // namespace workflow
