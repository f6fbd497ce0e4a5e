#include "tool/conversion_decision.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_filesystem.h"
#include "tool/color_conversion.h"
#include "tool/color_session.h"
#include "tool/console.h"
#include "tool/published_names.h"
#include "tool/settings/format_associations.h"

namespace tool {

namespace {

/// How the name that the user gave leads to a label.
std::string explain_name(const char* option, const std::string& given, const std::string& label) {
    if (given == label)
        return fmt::format("as {} says", option);
    const std::string tail = ColorIOManager::FAMILY_SEPARATOR + given;
    const bool lacks_family =
        label.size() > tail.size() && label.compare(label.size() - tail.size(), tail.size(), tail) == 0;
    return fmt::format("which {} '{}' means, {}", option, given,
                       lacks_family ? "the name without its family" : "a role");
}

std::string explain_target(const ConversionRequest& request, const ColorConversion& conversion,
                           const std::string& config_name) {
    if (request.view.empty())
        return explain_name("--to", request.to, conversion.get_target());
    const PublishedView view = resolve_view(request.display, request.view, config_name);
    const std::string shown =
        view.color_space.empty() ? "" : fmt::format(", which shows {}", view.color_space);
    return fmt::format("the view '{}' of the display '{}'{}", view.view, view.display, shown);
}

} // namespace

AssociatedSpace find_associated_space(const std::string& path, const ColorSession& session) {
    const CoreString extension = SysFilesystem::get_file_extension(path.c_str());
    const FormatAssociation association = find_format_association(extension.get_data());
    const CoreString space = ColorIO::get_instance()->get_default_color_space_from_ext(extension);
    const std::string reason =
        fmt::format("from {}, category {}", describe_association_source(), association.category);
    if (!ColorIO::color_space_exists(space))
        throw CommandError(
            fmt::format("'{}': the space of its extension is '{}', {}, which {} does not have; "
                        "name its colour space with --from",
                        std::filesystem::path(path).filename().string(), space.view(), reason,
                        session.get_source().get_name()));
    return {space.get_data(), reason};
}

void print_decision(const ColorSession& session, const ConversionRequest& request,
                    const ColorConversion& conversion, const std::string& source_reason, Console& console) {
    const std::string reason =
        source_reason.empty() ? explain_name("--from", request.from, conversion.get_source()) : source_reason;
    console.print(fmt::format("configuration: {}", session.get_source().describe()));
    console.print(fmt::format("source:        {}, {}", conversion.get_source(), reason));
    if (!request.cdl.empty())
        console.print(fmt::format("grade:         {}{}, in {}, the scene-linear space",
                                  request.undoes_cdl ? "undoes " : "", request.cdl,
                                  conversion.get_working_space()));
    console.print(fmt::format("destination:   {}, {}", conversion.get_target(),
                              explain_target(request, conversion, session.get_source().get_name())));
    console.print(fmt::format("written as:    {}", conversion.get_target_tag()));
}

} // namespace tool
