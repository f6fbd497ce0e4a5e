#include "tool/command.h"

#include <string>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "image/startable_threads.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/layer_options.h"
#include "tool/sequence_options.h"
#include "tool/sequence_output.h"
#include "tool/source_space.h"
#include "tool/tool_session.h"
#include "workflow/conversion.h"
#include "workflow/fingerprint.h"
#include "workflow/frame_jobs.h"
#include "workflow/image_conversion.h"
#include "workflow/name_resolution.h"
#include "workflow/published_names.h"
#include "workflow/sequence.h"

namespace tool {

namespace {

using diagnostics::Code;

constexpr char EXAMPLES[] = R"(  colorio convert render.exr render.png --view Tavelion.sRGB
  colorio convert texture.png texture.exr --from sRGB --to linear -d half
  colorio convert shot.####.exr graded.####.exr --frames 1-100 --from ACEScg --to ACEScct --config aces.ocio
  colorio convert plate.exr graded.exr --from ACEScg --to ACEScg --config aces.ocio --cdl grades.ccc:shot_010
  colorio convert shot.%04d.exr shot.%04d.png --frames 1-99x2,100 --display Monitor --view Film
  colorio convert 'shot.$F4.exr' 'shot.$F4.dpx' --view Monitor.Film --resume --memory 8G
  colorio convert plate.exr graded.exr --cdl grades.ccc:shot_010 --look "film, -warm" --to ACEScct --lut show.cube
  colorio convert plate.exr shot.dpx --view "sRGB.Film" -d uint10 --dither --config aces.ocio
  colorio convert graded.png plate.exr --inverse-view "sRGB.Film" --to ACEScg --config aces.ocio

The output may be the input: a file is replaced only after its conversion succeeded.)";

constexpr int MAX_THREADS = 1024;
constexpr int MAX_QUALITY = 1000;

class ConvertCommand : public Command {
public:
    explicit ConvertCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void check_usage();
    workflow::ImageSettings make_settings(const workflow::Session& session,
                                          const workflow::Conversion& conversion) const;
    void settle_source(const workflow::Session& session, Console& console);
    void print_decision(const workflow::Session& session, const workflow::Conversion& conversion,
                        Console& console) const;

    SessionChoice session_options;
    ConversionChoice request;
    workflow::FileSpace file_space; ///< Empty when the user named the source.
    SourceSpaceChoice source_choice;
    std::string input;
    std::string output;
    SequenceChoice sequence;
    workflow::FrameJobs found;
    std::string depth;
    std::string compression;
    int quality = -1; ///< Below 0 when it is not given.
    bool dithers = false;
    workflow::LayerOptions layers;
    int threads = 0;
    bool divides_by_alpha = false;
    bool leaves_alpha = false;
};

ConvertCommand::ConvertCommand(Options& program)
    : Command(program, "convert", "Convert images between color spaces, or to a view", EXAMPLES) {
    options
        .add("input", input,
             "image to read, or the pattern of a sequence: shot.%04d.exr, shot.####.exr, shot.@@@@.exr or "
             "'shot.$F4.exr'")
        .required();
    options
        .add("output", output,
             "image to write, or a pattern for those of a sequence; its extension selects the format")
        .required();
    add_conversion_options(
        options, request,
        "color space of the input (default: from the file's tags, the config's file rules or "
        "the extension)");
    add_inverse_view_option(options, request);
    add_step_options(options, request);
    add_source_space_options(options, source_choice);
    add_sequence_options(options, sequence);
    options.get("--json").excludes(options.get("--why"));
    options
        .add("-d,--depth", depth,
             "pixel type of the output (default: the input's type, if the output format supports it; uint10 "
             "for floats in DPX)")
        .choices({"uint8", "uint10", "uint12", "uint16", "half", "float"});
    options.add_flag("--dither", dithers, "add noise before rounding to 8 or 10 bits, the same every time");
    options.add(
        "--compression", compression,
        "compression method of the output (default: the input's in the same format, else the format's)");
    options
        .add("--quality", quality,
             "quality of jpeg and webp (1-100); level of dwaa and dwab (1-1000), zip (1-9) and png (0-9)")
        .range(0, MAX_QUALITY);
    add_layer_options(options, layers);
    const Option unpremult =
        options.add_flag("--unpremult", divides_by_alpha,
                         "divide color by alpha before the conversion and multiply it after (default: if "
                         "the file is marked as premultiplied)");
    options.add_flag("--no-unpremult", leaves_alpha, "never divide color by alpha").excludes(unpremult);
    options.add("--threads", threads, "worker threads (default: all cores)").range(1, MAX_THREADS);
    add_session_options(options, session_options);
}

ExitCode ConvertCommand::run(Console& console) {
    console.set_quiet(sequence.is_quiet);
    check_usage();
    const int wanted = threads > 0 ? threads : static_cast<int>(OIIO::Sysutil::hardware_concurrency());
    threads = image::limit_threads(wanted, 2); // those that read share as many

    const ToolSession session(session_options, console);
    settle_source(session, console);
    const workflow::Conversion conversion(session, request);
    console.report(conversion.get_notes());
    if (source_choice.explains)
        print_decision(session, conversion, console);
    if (conversion.is_identity())
        console.report(make_note(
            Code::COLORS_UNCHANGED,
            fmt::format("{} is both source and destination: colors are unchanged", conversion.get_source())));
    const workflow::ImageSettings settings = make_settings(session, conversion);
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
    found = workflow::find_frame_jobs(input, output, sequence.frames);
    if (found.jobs.empty())
        throw diagnostics::Failure(*workflow::describe_missing(found, input));
}

/// Without --from determines the source color space by the rule for files, and reports it.
void ConvertCommand::settle_source(const workflow::Session& session, Console& console) {
    if (!request.from.empty() || !request.inverse_view.empty())
        return;
    if (sequence.resumes && workflow::is_in_place(found.jobs.front()))
        throw UsageError("--resume needs --from when images are converted in their place",
                         "those that were converted have the tags of the destination");
    file_space = find_source_space(session, found.jobs.front().input, source_choice, console);
    request.from = file_space.color_space;
}

workflow::ImageSettings ConvertCommand::make_settings(const workflow::Session& session,
                                                      const workflow::Conversion& conversion) const {
    workflow::ImageOptions wishes;
    wishes.depth = depth;
    wishes.dithers = dithers;
    wishes.compression.method = compression;
    if (quality >= 0)
        wishes.compression.quality = quality;
    wishes.layers = layers;
    wishes.data_space = file_space.is_data ? file_space.color_space : "";
    wishes.threads = threads;
    wishes.source_tags = file_space.tags;
    if (divides_by_alpha)
        wishes.alpha_rule = image::AlphaRule::DIVIDE;
    else if (leaves_alpha)
        wishes.alpha_rule = image::AlphaRule::DO_NOT_DIVIDE;
    workflow::ImageSettings settings = workflow::make_image_settings(conversion, wishes);
    settings.fingerprint = workflow::make_conversion_fingerprint(session, request, conversion, settings);
    return settings;
}

/// How a name given by the user was resolved.
std::string explain_name(const char* option, const std::string& given, const std::string& config_name) {
    const workflow::NameKind kind = workflow::resolve_color_space(given, config_name).kind;
    return kind == workflow::NameKind::LABEL
               ? fmt::format("from {}", option)
               : fmt::format("from {} '{}', {}", option, given, workflow::describe_kind(kind));
}

std::string explain_destination(const workflow::ConversionRequest& request, const std::string& config_name) {
    if (request.view.empty())
        return explain_name("--to", request.to, config_name);
    const workflow::PublishedView view = workflow::resolve_view(request.display, request.view, config_name);
    std::string text = fmt::format("view '{}' of display '{}'", view.view, view.display);
    const std::string& shown = view.color_space.empty() ? view.named_transform : view.color_space;
    if (!shown.empty())
        text += fmt::format(", which shows {}", shown);
    if (!view.view_transform.empty())
        text += fmt::format(" through the view transform {}", view.view_transform);
    if (!view.looks.empty())
        text += fmt::format(" with the looks {}", view.looks);
    return text;
}

void ConvertCommand::print_decision(const workflow::Session& session, const workflow::Conversion& conversion,
                                    Console& console) const {
    const std::string config_name = session.get_config_name();
    const std::string reason = !request.inverse_view.empty() ? "inverted to scene-linear, from --inverse-view"
                               : file_space.reason.empty() ? explain_name("--from", request.from, config_name)
                                                           : file_space.reason;
    console.print(fmt::format("config:        {}", describe(session.get_source())));
    console.print(fmt::format("source:        {}, {}", conversion.get_source(), reason));
    if (!file_space.steps.empty())
        print_source_steps(file_space, console);
    for (const workflow::ColorStep& step : request.steps)
        console.print(fmt::format(
            "{:<15}{}{}{}", fmt::format("{}:", workflow::get_kind_name(step.kind)),
            step.is_inverse ? "inverse of " : "", step.name,
            step.is_grade() ? fmt::format(", in {}, the scene-linear space", conversion.get_working_space())
                            : ""));
    if (!request.to.empty() || !request.view.empty())
        console.print(fmt::format("destination:   {}, {}", conversion.get_destination(),
                                  explain_destination(request, config_name)));
    console.print(fmt::format("written as:    {}", conversion.get_destination_tag()));
}

} // namespace

std::unique_ptr<Command> make_convert_command(Options& program) {
    return std::make_unique<ConvertCommand>(program);
}

} // namespace tool
