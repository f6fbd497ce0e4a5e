#include "tool/convert_command.h"

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "image/startable_threads.h"
#include "tool/console.h"
#include "tool/sequence_output.h"
#include "workflow/conversion.h"
#include "workflow/decision.h"
#include "workflow/fingerprint.h"
#include "workflow/sequence.h"

namespace tool {

using diagnostics::Code;

ExitCode ConvertCommand::run(Console& console) {
    console.set_quiet(sequence.is_quiet);
    check_usage();
    if (image_options.threads == 0)
        image_options.threads = static_cast<int>(OIIO::Sysutil::hardware_concurrency());
    image_options.threads = image::limit_threads(image_options.threads, 2); // those that read share as many

    const ToolSession session(session_options, console);
    settle_source(session, console);
    const workflow::Conversion conversion(session, request);
    console.release();
    console.report(conversion.get_notes());
    settle_parts(session, conversion, console);
    if (source_choice.explains)
        explain(session, conversion, console);
    if (conversion.is_identity() && image_options.parts.empty())
        console.report(make_note(
            Code::COLORS_UNCHANGED,
            fmt::format("{} is both source and destination: colors are unchanged", conversion.get_source())));
    workflow::ImageSettings settings = workflow::make_image_settings(conversion, image_options);
    settings.fingerprint = workflow::make_conversion_fingerprint(session, request, conversion, settings);
    workflow::check_output(settings, output);
    SequenceOutput result(sequence, found, input, output,
                          fmt::format("{} to {}", conversion.get_source(), conversion.get_destination()),
                          console);
    return result.finish(workflow::convert_sequence(found.jobs, settings, result.get_events(),
                                                    make_sequence_options(sequence)));
}

/// Also finds the images, so that a mistake in their names is reported before the config is loaded.
void ConvertCommand::check_usage() {
    check_conversion(request);
    make_sequence_options(sequence);
    if (divides_by_alpha || leaves_alpha)
        image_options.alpha_rule = leaves_alpha ? image::AlphaRule::DO_NOT_DIVIDE : image::AlphaRule::DIVIDE;
    found = workflow::find_frame_jobs(input, output, sequence.frames);
    if (found.jobs.empty())
        throw diagnostics::Failure(*workflow::describe_missing(found, input));
}

/// Without --from determines the source color space by the rule for files, and reports it.
void ConvertCommand::settle_source(const workflow::Session& session, Console& console) {
    if (!request.from.empty() || !request.inverse_view.empty())
        return;
    if (sequence.resumes && workflow::is_in_place(found.jobs.front()))
        throw UsageError("--resume needs --from when images are converted in place",
                         "the tags of images that are already converted name the destination");
    const std::string& first = found.jobs.front().input;
    file_space = workflow::find_file_space(session, first);
    if (file_space.unread && found.jobs.size() == 1) // of a sequence the other images are converted
        throw diagnostics::Failure(*file_space.unread);
    report_source_space(first, file_space, source_choice, console);
    request.from = file_space.color_space;
    image_options.data_space = file_space.is_data ? file_space.color_space : "";
    image_options.source_tags = file_space.tags;
    image_options.part_tags = file_space.part_tags;
    image_options.is_strict = source_choice.is_strict;
}

/// Parts in another color space than the image are converted from it. Reports what the notes of `conversion`,
/// which is that of the image, do not say.
void ConvertCommand::settle_parts(const workflow::Session& session, const workflow::Conversion& conversion,
                                  Console& console) {
    image_options.parts = workflow::make_part_conversions(session, request, file_space.other_tags);
    diagnostics::Diagnostics notes = conversion.get_notes();
    const std::size_t reported = notes.size();
    for (const workflow::PartConversion& part : image_options.parts)
        if (part.conversion)
            add_new(notes, part.conversion->get_notes());
    notes.erase(notes.begin(), notes.begin() + static_cast<std::ptrdiff_t>(reported));
    console.report(notes);
}

void ConvertCommand::explain(const workflow::Session& session, const workflow::Conversion& conversion,
                             Console& console) const {
    print_decision("config", describe(session.get_source()), console);
    for (const auto& [what, answer] : workflow::explain_decision(session, request, conversion, file_space,
                                                                 {"--from", "--to", "--inverse-view"})) {
        print_decision(what, answer, console);
        if (what == "source")
            print_source_steps(file_space, console);
    }
}

} // namespace tool
