#include "tool/command.h"

#include <string>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "image/startable_threads.h"
#include "tool/console.h"
#include "tool/conversion_options.h"
#include "tool/sequence_options.h"
#include "tool/sequence_output.h"
#include "tool/source_space.h"
#include "workflow/conversion.h"
#include "workflow/decision.h"
#include "workflow/fingerprint.h"
#include "workflow/frame_jobs.h"
#include "workflow/image_conversion.h"
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

class ConvertCommand : public SessionCommand {
public:
    explicit ConvertCommand(Options& program);
    ExitCode run(Console& console) override;

private:
    void add_layer_options();
    void check_usage();
    void settle_source(const workflow::Session& session, Console& console);
    void settle_parts(const workflow::Session& session, const workflow::Conversion& conversion,
                      Console& console);
    void explain(const workflow::Session& session, const workflow::Conversion& conversion,
                 Console& console) const;

    ConversionChoice request;
    workflow::FileSpace file_space; ///< Empty when the user named the source.
    SourceSpaceChoice source_choice;
    std::string input;
    std::string output;
    SequenceChoice sequence;
    workflow::FrameJobs found;
    workflow::ImageOptions image_options;
    bool divides_by_alpha = false;
    bool leaves_alpha = false;
};

ConvertCommand::ConvertCommand(Options& program)
    : SessionCommand(program, "convert", "Convert images between color spaces, or to a view", EXAMPLES) {
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
        .add("-d,--depth", image_options.depth,
             "pixel type of the output (default: the input's type, if the output format supports it; uint10 "
             "for floats in DPX)")
        .choices({"uint8", "uint10", "uint12", "uint16", "half", "float"});
    options.add_flag("--dither", image_options.dithers,
                     "add noise before rounding to 8 or 10 bits, the same every time");
    options.add(
        "--compression", image_options.compression.method,
        "compression method of the output (default: the input's in the same format, else the format's)",
        "METHOD");
    options
        .add("--quality", image_options.compression.quality,
             "quality of jpeg and webp (1-100); level of dwaa and dwab (1-1000), zip (1-9) and png (0-9)")
        .range(0, MAX_QUALITY);
    add_layer_options();
    const Option unpremult =
        options.add_flag("--unpremult", divides_by_alpha,
                         "divide color by alpha before the conversion and multiply it after (default: if "
                         "the file is marked as premultiplied)");
    options.add_flag("--no-unpremult", leaves_alpha, "never divide color by alpha").excludes(unpremult);
    options.add("--threads", image_options.threads, "worker threads (default: all cores)")
        .range(1, MAX_THREADS);
    add_session_options();
}

void ConvertCommand::add_layer_options() {
    const auto add = [&](const char* name, std::vector<std::string>& list, const char* help) {
        options.add_list(name, list, help, "LIST");
    };
    add("--layers", image_options.layers.layers,
        "layers to convert, comma-separated; rgba is color without a layer (default: every color layer, and "
        "no data)");
    add("--parts", image_options.layers.parts,
        "parts to convert: names or numbers from 1, comma-separated (default: all)");
    add("--skip", image_options.layers.skipped, "layers and parts not to convert, comma-separated");
}

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

} // namespace

const MakeCommand make_convert_command = make_command<ConvertCommand>;

} // namespace tool
