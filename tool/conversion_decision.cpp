#include "tool/conversion_decision.h"

#include <filesystem>

#include <fmt/format.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "host/sys/sys_filesystem.h"
#include "tool/console.h"
#include "workflow/conversion.h"
#include "workflow/format_associations.h"
#include "workflow/name_resolution.h"
#include "workflow/session.h"

namespace tool {

namespace {

/// How the name that the user gave leads to a label.
std::string explain_name(const char* option, const std::string& given, const std::string& config_name) {
    const NameKind kind = resolve_color_space(given, config_name).kind;
    return kind == NameKind::LABEL
               ? fmt::format("as {} says", option)
               : fmt::format("which {} '{}' means, {}", option, given, describe_kind(kind));
}

std::string explain_target(const ConversionRequest& request, const std::string& config_name) {
    if (request.view.empty())
        return explain_name("--to", request.to, config_name);
    const PublishedView view = resolve_view(request.display, request.view, config_name);
    std::string text = fmt::format("the view '{}' of the display '{}'", view.view, view.display);
    const std::string& shown = view.color_space.empty() ? view.named_transform : view.color_space;
    if (!shown.empty())
        text += fmt::format(", which shows {}", shown);
    if (!view.view_transform.empty())
        text += fmt::format(" through the view transform {}", view.view_transform);
    if (!view.looks.empty())
        text += fmt::format(" with the looks {}", view.looks);
    return text;
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
    const std::string reason = source_reason.empty()
                                   ? explain_name("--from", request.from, session.get_source().get_name())
                                   : source_reason;
    console.print(fmt::format("configuration: {}", session.get_source().describe()));
    console.print(fmt::format("source:        {}, {}", conversion.get_source(), reason));
    if (!request.cdl.empty())
        console.print(fmt::format("grade:         {}{}, in {}, the scene-linear space",
                                  request.undoes_cdl ? "undoes " : "", request.cdl,
                                  conversion.get_working_space()));
    console.print(fmt::format("destination:   {}, {}", conversion.get_target(),
                              explain_target(request, session.get_source().get_name())));
    console.print(fmt::format("written as:    {}", conversion.get_target_tag()));
}

} // namespace tool
