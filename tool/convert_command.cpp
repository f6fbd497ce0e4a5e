#include "tool/command.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "image/startable_threads.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/layer_options.h"
#include "tool/progress_bar.h"
#include "tool/source_space.h"
#include "tool/tool_session.h"
#include "workflow/conversion.h"
#include "workflow/frame_jobs.h"
#include "workflow/frame_pattern.h"
#include "workflow/image_conversion.h"
#include "workflow/name_resolution.h"
#include "workflow/published_names.h"
#include "workflow/sequence.h"

namespace tool {

namespace {

using diagnostics::Code;
using diagnostics::Diagnostic;

constexpr char EXAMPLES[] = R"(  colorio convert render.exr render.png --view Tavelion.sRGB
  colorio convert texture.png texture.exr --from sRGB --to linear -d half
  colorio convert shot.####.exr graded.####.exr --frames 1-100 --from ACEScg --to ACEScct --config aces.ocio
  colorio convert plate.exr graded.exr --from ACEScg --to ACEScg --config aces.ocio --cdl grades.ccc:shot_010
  colorio convert shot.%04d.exr shot.%04d.png --frames 1-99x2,100 --display Monitor --view Film
  colorio convert plate.exr graded.exr --cdl grades.ccc:shot_010 --look "film, -warm" --to ACEScct --lut show.cube
  colorio convert plate.exr shot.dpx --view "sRGB.Film" -d uint10 --dither --config aces.ocio
  colorio convert graded.png plate.exr --inverse-view "sRGB.Film" --to ACEScg --config aces.ocio

The output may be the input: a file is replaced only after its conversion succeeded.)";

constexpr double PIXELS_PER_MEGAPIXEL = 1e6;
constexpr int MAX_THREADS = 1024;
constexpr int MAX_QUALITY = 1000;

std::string describe_speed(std::uint64_t pixels, double seconds) {
    const double megapixels = static_cast<double>(pixels) / PIXELS_PER_MEGAPIXEL;
    return fmt::format("{:.2f} Mpixel in {:.3f} s, {:.1f} Mpixel/s", megapixels, seconds,
                       seconds > 0.0 ? megapixels / seconds : 0.0);
}

class ConvertCommand : public Command {
public:
    explicit ConvertCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void check_usage();
    bool is_sequence() const { return !frames.empty(); }
    workflow::ImageSettings make_settings(const workflow::Conversion& conversion) const;
    void settle_source(const workflow::Session& session, Console& console);
    std::string get_first_input() const;
    void print_decision(const workflow::Session& session, const workflow::Conversion& conversion,
                        Console& console) const;
    void convert_one(const workflow::Conversion& conversion, const workflow::ImageSettings& settings,
                     Console& console) const;
    ExitCode convert_all(const workflow::Conversion& conversion, const workflow::ImageSettings& settings,
                         Console& console) const;

    SessionChoice session_options;
    ConversionChoice request;
    workflow::FileSpace file_space; ///< Empty when the user named the source.
    SourceSpaceChoice source_choice;
    std::string input;
    std::string output;
    std::string frames;
    std::string depth;
    std::string compression;
    int quality = -1; ///< Below 0 when it is not given.
    bool dithers = false;
    workflow::LayerWishes layers;
    int threads = 0;
    bool divides_by_alpha = false;
    bool leaves_alpha = false;
};

ConvertCommand::ConvertCommand(Options& program)
    : Command(program, "convert", "Convert images between color spaces, or to a view", EXAMPLES) {
    options
        .add("input", input, "image to read; with --frames a pattern such as shot.%04d.exr or shot.####.exr")
        .required();
    options.add("output", output, "image to write; its extension selects the format").required();
    add_conversion_options(
        options, request,
        "color space of the input (default: from the file's tags, the config's file rules or "
        "the extension)");
    add_inverse_view_option(options, request);
    add_step_options(options, request);
    add_source_space_options(options, source_choice);
    options.add("--frames", frames, "frame range of a sequence: 1-100, 1-99x2, or a comma-separated list")
        .value("FRAMES");
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
    const workflow::ImageSettings settings = make_settings(conversion);
    workflow::check_output(settings, output);
    if (is_sequence())
        return convert_all(conversion, settings, console);
    convert_one(conversion, settings, console);
    return EXIT_CODE_DONE;
}

void ConvertCommand::check_usage() {
    check_conversion(request);
    const bool input_is_pattern = workflow::FramePattern(input).is_pattern();
    const bool output_is_pattern = workflow::FramePattern(output).is_pattern();
    if (!is_sequence()) {
        std::error_code error;
        if (input_is_pattern && !std::filesystem::exists(input, error))
            throw UsageError(fmt::format("'{}' is the pattern of a sequence; --frames is required", input));
        return;
    }
    for (const auto& [path, is_pattern] : {std::pair(input, input_is_pattern), {output, output_is_pattern}})
        if (!is_pattern)
            throw UsageError(
                fmt::format("no frame number in '{}': --frames needs a pattern such as %04d or ####", path));
}

/// Of a sequence, the first image that exists.
std::string ConvertCommand::get_first_input() const {
    if (!is_sequence())
        return input;
    const std::vector<workflow::ImageJob> jobs = workflow::make_frame_jobs(input, output, frames);
    const auto found = std::find_if(jobs.begin(), jobs.end(), [](const workflow::ImageJob& job) {
        std::error_code error;
        return std::filesystem::exists(job.input, error);
    });
    return found == jobs.end() ? input : found->input;
}

/// Without --from determines the source color space by the rule for files, and reports it.
void ConvertCommand::settle_source(const workflow::Session& session, Console& console) {
    if (!request.from.empty() || !request.inverse_view.empty())
        return;
    file_space = find_source_space(session, get_first_input(), source_choice, console);
    request.from = file_space.color_space;
}

workflow::ImageSettings ConvertCommand::make_settings(const workflow::Conversion& conversion) const {
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
    return workflow::make_image_settings(conversion, wishes);
}

void ConvertCommand::convert_one(const workflow::Conversion& conversion,
                                 const workflow::ImageSettings& settings, Console& console) const {
    const auto start = std::chrono::steady_clock::now();
    workflow::ImageBuffers buffers;
    const workflow::ImageReport report = workflow::convert_image({input, output}, settings, buffers);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    for (const std::string& note : report.notes)
        console.report(make_note(Code::IMAGE_ADAPTED, note));
    console.print(fmt::format("{}: {} to {}, {} x {} {}, {}{}", output, conversion.get_source(),
                              conversion.get_destination(), report.width, report.height, report.depth,
                              describe_speed(report.pixels, elapsed.count()),
                              describe_layers(report.layers)));
}

ExitCode ConvertCommand::convert_all(const workflow::Conversion& conversion,
                                     const workflow::ImageSettings& settings, Console& console) const {
    const std::vector<workflow::ImageJob> jobs = workflow::make_frame_jobs(input, output, frames);
    ProgressBar progress(console, static_cast<unsigned int>(jobs.size()));
    workflow::SequenceEvents events;
    events.report = [&](const Diagnostic& diagnostic) { console.report(diagnostic); };
    events.progress = [&](std::size_t, std::size_t) { progress.advance(); };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    const std::string failures = report.failed == 0 ? "" : fmt::format(", {} failed", report.failed);
    console.print(fmt::format("{}: {} to {}, {} frames converted{}, {}{}", output, conversion.get_source(),
                              conversion.get_destination(), report.converted, failures,
                              describe_speed(report.pixels, report.seconds), describe_layers(report.layers)));
    return report.failed == 0 ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
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
