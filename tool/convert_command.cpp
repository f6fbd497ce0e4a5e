#include "tool/command.h"

#include <chrono>
#include <filesystem>
#include <string>

#include <OpenImageIO/sysutil.h>
#include <fmt/format.h>

#include "image/startable_threads.h"
#include "tool/console.h"
#include "tool/conversion_decision.h"
#include "tool/conversion_options.h"
#include "workflow/conversion.h"
#include "workflow/format_associations.h"
#include "workflow/frame_pattern.h"
#include "workflow/frame_range.h"
#include "workflow/sequence.h"
#include "workflow/session.h"

namespace tool {

namespace {

constexpr char EXAMPLES[] = R"(  colorio convert render.exr render.png --view Tavelion.sRGB
  colorio convert texture.png texture.exr --from sRGB --to linear -d half
  colorio convert shot.####.exr graded.####.exr --frames 1-100 --from ACEScg --to ACEScct --config aces.ocio
  colorio convert plate.exr graded.exr --from ACEScg --to ACEScg --config aces.ocio --cdl grades.ccc:shot_010
  colorio convert shot.%04d.exr shot.%04d.png --frames 1-99x2,100 --display Monitor --view Film

The output may be the input: a picture is replaced whole or not at all.)";

constexpr double PIXELS_PER_MEGAPIXEL = 1e6;
constexpr int MAX_THREADS = 1024;

std::string describe_speed(std::uint64_t pixels, double seconds) {
    const double megapixels = static_cast<double>(pixels) / PIXELS_PER_MEGAPIXEL;
    return fmt::format("{:.2f} Mpixel in {:.3f} s, {:.1f} Mpixel/s", megapixels, seconds,
                       seconds > 0.0 ? megapixels / seconds : 0.0);
}

class ConvertCommand : public Command {
public:
    explicit ConvertCommand(CLI::App& program);
    ExitCode run(Console& console) override;

private:
    void check_usage() const;
    std::vector<PictureJob> make_jobs() const;
    bool is_sequence() const { return !frames.empty(); }
    PictureSettings make_settings(const ColorConversion& conversion) const;
    void settle_source(ColorSession& session, Console& console);
    void convert_one(const ColorConversion& conversion, const PictureSettings& settings,
                     Console& console) const;
    ExitCode convert_all(const ColorConversion& conversion, const PictureSettings& settings,
                         Console& console) const;

    SessionOptions session_options;
    ConversionRequest request;
    std::string source_reason; ///< Empty when the user named the source.
    std::string input;
    std::string output;
    std::string frames;
    std::string depth;
    int threads = 0;
    bool divides_by_alpha = false;
    bool leaves_alpha = false;
    bool explains = false;
};

ConvertCommand::ConvertCommand(CLI::App& program)
    : Command(program, "convert", "Convert pictures from one colour space to another or for a display",
              EXAMPLES) {
    options->add_option("input", input, "Picture to read; shot.%04d.exr or shot.####.exr with --frames")
        ->required();
    options->add_option("output", output, "Picture to write; the extension tells the format")->required();
    add_conversion_options(*options, request,
                           "Colour space of the input; without it the one associated with the extension");
    add_grade_options(*options, request);
    options->add_flag("--why", explains, "Print how the source and the destination were found");
    options->add_option("--frames", frames, "Frames of a sequence: 1-100, 1-100x2, or a list with commas");
    options
        ->add_option(
            "-d,--depth", depth,
            "Type of the written colours: uint8, uint16, half or float; without it the input's where "
            "the format has that")
        ->check(CLI::IsMember({"uint8", "uint16", "half", "float"}));
    auto* unpremult =
        options->add_flag("--unpremult", divides_by_alpha,
                          "Divide colour by alpha, convert, and multiply again; without it where "
                          "the file says that colour is multiplied");
    options->add_flag("--no-unpremult", leaves_alpha, "Never divide colour by alpha")->excludes(unpremult);
    options->add_option("--threads", threads, "Threads to use; without it one for each core")
        ->check(CLI::Range(1, MAX_THREADS));
    add_session_options(*options, session_options);
}

ExitCode ConvertCommand::run(Console& console) {
    check_usage();
    threads = limit_threads(threads > 0 ? threads : static_cast<int>(OIIO::Sysutil::hardware_concurrency()));

    ColorSession session(session_options, console);
    settle_source(session, console);
    const ColorConversion conversion(session, request);
    if (explains)
        print_decision(session, request, conversion, source_reason, console);
    if (conversion.is_identity())
        console.note(fmt::format("{} is both source and destination: colours stay as they are",
                                 conversion.get_source()));
    const PictureSettings settings = make_settings(conversion);
    if (is_sequence())
        return convert_all(conversion, settings, console);
    convert_one(conversion, settings, console);
    return EXIT_CODE_DONE;
}

void ConvertCommand::check_usage() const {
    check_conversion_request(request);
    const bool input_is_pattern = FramePattern(input).is_pattern();
    const bool output_is_pattern = FramePattern(output).is_pattern();
    if (!is_sequence()) {
        std::error_code error;
        if (input_is_pattern && !std::filesystem::exists(input, error))
            throw UsageError(fmt::format("'{}' names a sequence; say which with --frames", input));
        return;
    }
    for (const auto& [path, is_pattern] : {std::pair(input, input_is_pattern), {output, output_is_pattern}})
        if (!is_pattern)
            throw UsageError(
                fmt::format("--frames needs a place for the frame number in '{}', such as %04d or "
                            "####",
                            path));
}

std::vector<PictureJob> ConvertCommand::make_jobs() const {
    const FramePattern input_pattern(input);
    const FramePattern output_pattern(output);
    std::vector<PictureJob> jobs;
    for (const int frame : parse_frames(frames))
        jobs.push_back({input_pattern.get_path(frame), output_pattern.get_path(frame)});
    return jobs;
}

/// Without --from the module's associations answer, and the user is told.
void ConvertCommand::settle_source(ColorSession& session, Console& console) {
    if (!request.from.empty())
        return;
    warn_of_unused_mapping(session);
    const AssociatedSpace found = find_associated_space(input, session);
    request.from = found.color_space;
    source_reason = found.reason;
    if (!explains)
        console.note(fmt::format("{}: {}, {}", std::filesystem::path(input).filename().string(), request.from,
                                 source_reason));
}

PictureSettings ConvertCommand::make_settings(const ColorConversion& conversion) const {
    PictureSettings settings;
    if (!conversion.is_identity())
        settings.convert = [&](float* rgba, unsigned int width, unsigned int height) {
            conversion.apply(rgba, width, height);
        };
    if (!depth.empty())
        settings.wishes.depth = OIIO::TypeDesc(depth);
    if (divides_by_alpha)
        settings.wishes.alpha_rule = AlphaRule::DIVIDE;
    else if (leaves_alpha)
        settings.wishes.alpha_rule = AlphaRule::DO_NOT_DIVIDE;
    settings.wishes.color_space_tag = conversion.get_target_tag();
    settings.wishes.keeps_space = conversion.get_source() == conversion.get_target_space();
    settings.wishes.neutrals_stay_neutral = conversion.keeps_neutrals();
    settings.threads = threads;
    return settings;
}

void ConvertCommand::convert_one(const ColorConversion& conversion, const PictureSettings& settings,
                                 Console& console) const {
    const auto start = std::chrono::steady_clock::now();
    PictureBuffers buffers;
    const PictureReport report = convert_picture({input, output}, settings, buffers);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    for (const std::string& note : report.notes)
        console.note(note);
    console.print(fmt::format("{}: {} to {}, {} x {} {}, {}", output, conversion.get_source(),
                              conversion.get_target(), report.width, report.height, report.depth,
                              describe_speed(report.pixels, elapsed.count())));
}

ExitCode ConvertCommand::convert_all(const ColorConversion& conversion, const PictureSettings& settings,
                                     Console& console) const {
    const SequenceReport report = convert_sequence(make_jobs(), settings, console);
    const std::string failures = report.failed == 0 ? "" : fmt::format(", {} failed", report.failed);
    console.print(fmt::format("{}: {} to {}, {} frames converted{}, {}", output, conversion.get_source(),
                              conversion.get_target(), report.converted, failures,
                              describe_speed(report.pixels, report.seconds)));
    return report.failed == 0 ? EXIT_CODE_DONE : EXIT_CODE_FAILED;
}

} // namespace

std::unique_ptr<Command> make_convert_command(CLI::App& program) {
    return std::make_unique<ConvertCommand>(program);
}

} // namespace tool
