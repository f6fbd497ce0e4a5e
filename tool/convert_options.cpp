#include "tool/convert_command.h"

namespace tool {

namespace {

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

} // namespace

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

const MakeCommand make_convert_command = make_command<ConvertCommand>;

} // namespace tool
