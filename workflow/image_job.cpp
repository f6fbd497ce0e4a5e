#include "workflow/image_job.h"

#include <algorithm>
#include <exception>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "diagnostics/failure.h"
#include "image/color_tags.h"
#include "image/conversion_record.h"
#include "image/deep_pixels.h"
#include "image/image_layers.h"
#include "image/image_reader.h"
#include "image/image_writer.h"
#include "image/memory_estimate.h"
#include "image/part_alpha.h"
#include "workflow/fingerprint.h"
#include "workflow/output_parts.h"

namespace workflow {

namespace {

/// Memory of a process that reads and of a thread that converts, besides pixels; measured.
constexpr std::uint64_t LANE_BYTES = std::uint64_t{16} << 20;

/// A part of the input and how to write it.
struct PlannedPart {
    unsigned int input_index;
    image::PartPlan plan;
    std::vector<std::string> layer_names; ///< Of the layers of the plan, for messages.
};

constexpr const char* DITHERED_DEPTHS[] = {"uint8", "uint10"};

void check_dithering(const image::PixelDepth& depth, const std::string& output) {
    const std::string name = depth.get_name();
    if (std::find(std::begin(DITHERED_DEPTHS), std::end(DITHERED_DEPTHS), name) == std::end(DITHERED_DEPTHS))
        diagnostics::fail_file(diagnostics::Code::IMAGE_UNSUPPORTED,
                               fmt::format("cannot write '{}': {} cannot be dithered, only {}", output, name,
                                           fmt::join(DITHERED_DEPTHS, ", ")),
                               output);
}

class ImageConversion {
public:
    ImageConversion(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers)
        : job(job), settings(settings), buffers(buffers), reader(job.input, buffers.reader),
          output(job.output), abilities(image::get_format_abilities(job.output)) {
        check_output(settings, job.output);
        plan_parts();
    }

    /// Bytes that `run` takes at most.
    std::uint64_t estimate_memory() const;

    ImageReport run() {
        image::ImageWriter writer(output);
        for (unsigned int i = 0; i < parts.size(); ++i)
            convert_one(i, writer);
        writer.close();
        return std::move(report);
    }

private:
    void plan_parts();
    void plan_one(unsigned int index);
    void choose_kept_subimage();
    void report_layers(const PartChoice& choice);
    void note_losses();
    std::vector<bool> find_data_parts() const;
    void settle_depth(const OIIO::ImageSpec& output_spec, image::PartPlan& plan) const;
    void convert_one(unsigned int index, image::ImageWriter& writer);
    std::vector<std::size_t> convert_flat(const PlannedPart& part, const OIIO::ImageSpec& output_spec,
                                          image::ImageWriter& writer);
    std::vector<std::size_t> convert_deep(const PlannedPart& part, const OIIO::ImageSpec& output_spec,
                                          image::ImageWriter& writer);
    const float* find_part_alpha(const image::PartPlan& plan);
    void add_note(const std::string& note);
    bool is_kept(const image::PartHeader& part) const;

    const ImageJob& job;
    const ImageSettings& settings;
    ImageBuffers& buffers;
    image::ImageReader reader;
    const std::string output;
    const image::FormatAbilities abilities;
    std::vector<PartChoice> choices; ///< By subimage.
    int kept_subimage = 0;           ///< The one that is written to a format of one part.
    std::vector<PlannedPart> parts;
    std::vector<image::PartHeader> output_headers;
    int alpha_part = image::ColorLayer::NONE; ///< The one that `part_alpha` is of.
    std::vector<float> part_alpha;
    image::DeepPixels deep_pixels; ///< Of the current part, if it is deep.
    std::string fingerprint;       ///< To be recorded; empty for none.
    ImageReport report;
};

void ImageConversion::add_note(const std::string& note) {
    if (std::find(report.notes.begin(), report.notes.end(), note) == report.notes.end())
        report.notes.push_back(note);
}

bool ImageConversion::is_kept(const image::PartHeader& part) const {
    return (part.level == 0 || abilities.has_levels) &&
           (part.subimage == kept_subimage || abilities.has_subimages);
}

void ImageConversion::plan_parts() {
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    fingerprint = make_image_fingerprint(job, settings.fingerprint);
    if (settings.source_tags &&
        image::find_color_tags(headers.front().spec).describe() != *settings.source_tags)
        add_note("its color tags differ from those of the first image, whose color space is used");
    LayerConversion conversion{settings.mixes_channels, ""};
    if (!settings.data_space.empty())
        conversion.reason_to_leave = fmt::format("in the data space '{}'", settings.data_space);
    choices = choose_layers(reader.get_path(), reader.get_format(), headers, settings.layers, conversion);
    choose_kept_subimage();
    for (unsigned int i = 0; i < headers.size(); ++i)
        if (is_kept(headers[i]))
            plan_one(i);
    check_deep_parts(output_headers, abilities, reader.get_path(), output);
    for (const std::string& note : reconcile_parts(output_headers, find_data_parts(), abilities))
        add_note(note);
    note_losses();
}

/// The first one with layers to convert.
void ImageConversion::choose_kept_subimage() {
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [](const PartChoice& choice) { return !choice.chosen.empty(); });
    if (found != choices.end())
        kept_subimage = static_cast<int>(found - choices.begin());
}

void ImageConversion::plan_one(unsigned int index) {
    const image::PartHeader& header = reader.get_parts()[index];
    const PartChoice& choice = choices[static_cast<std::size_t>(header.subimage)];
    image::OutputOptions output_options = settings.output_options;
    if (!settings.data_space.empty())
        output_options.colors.name.clear(); // they stay in their color space
    image::PartPlan plan =
        image::plan_part(header.spec, choice.get_colors(), reader.get_format(), abilities, output_options);
    image::set_compression(output_options.compression, abilities.name, output, plan.spec);
    for (const std::string& note : plan.notes)
        add_note(note);
    if (header.level == 0)
        report_layers(choice);
    std::vector<std::string> names;
    for (const ChosenLayer& layer : choice.chosen)
        names.push_back(layer.name);
    image::record_conversion(plan.spec, abilities.name, parts.empty() ? fingerprint : "");
    output_headers.push_back({header.subimage, header.level, plan.spec});
    parts.push_back({index, std::move(plan), std::move(names)});
}

/// A format without layers gets the first one, and a note says what it does not get.
void ImageConversion::report_layers(const PartChoice& choice) {
    for (const ChosenLayer& layer : choice.chosen)
        if (abilities.has_any_channels || &layer == &choice.chosen.front())
            report.layers.converted.push_back(layer.name);
    if (abilities.has_any_channels || choice.chosen.empty())
        report.layers.left.insert(report.layers.left.end(), choice.left.begin(), choice.left.end());
}

void ImageConversion::note_losses() {
    if (reader.count_subimages() > 1 && !abilities.has_subimages)
        add_note(fmt::format("{} does not support several parts: only part {} of {} is written",
                             abilities.name, kept_subimage + 1, reader.count_subimages()));
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    const bool has_levels =
        std::any_of(headers.begin(), headers.end(), [](auto& part) { return part.level; });
    if (has_levels && !abilities.has_levels)
        add_note(
            fmt::format("{} does not support mipmaps: only the full resolution is written", abilities.name));
}

/// Whether each part of the output has no color, converted or left.
std::vector<bool> ImageConversion::find_data_parts() const {
    std::vector<bool> are_data;
    for (const PlannedPart& part : parts) {
        const OIIO::ImageSpec& spec = reader.get_parts()[part.input_index].spec;
        are_data.push_back(part.plan.layers.empty() &&
                           image::find_color_layers(spec, {reader.get_format(), {}}).empty());
    }
    return are_data;
}

std::uint64_t ImageConversion::estimate_memory() const {
    std::uint64_t most = 0;
    for (const PlannedPart& part : parts)
        most = std::max(most, image::estimate_part_memory(reader.get_parts()[part.input_index].spec,
                                                          reader.get_format(), part.plan, abilities));
    return most + LANE_BYTES;
}

/// The writer may have chosen another depth than was asked for.
void ImageConversion::settle_depth(const OIIO::ImageSpec& output_spec, image::PartPlan& plan) const {
    const image::PixelDepth depth = image::get_depth(output_spec, abilities.name);
    if (settings.output_options.dithers)
        check_dithering(depth, output);
    plan.quantization = {depth.get_few_codes(), settings.output_options.dithers};
    const OIIO::TypeDesc wanted = settings.output_options.depth.type;
    for (std::size_t i = 0; i < plan.channels.size() && wanted != OIIO::TypeUnknown; ++i) {
        const OIIO::TypeDesc type = output_spec.channelformat(static_cast<int>(i));
        if (plan.channels[i].layer != image::ColorLayer::NONE && type != wanted)
            diagnostics::fail_file(diagnostics::Code::IMAGE_UNSUPPORTED,
                                   fmt::format("cannot write '{}': {} does not support {}, only {}", output,
                                               abilities.name, wanted.c_str(), type.c_str()),
                                   output);
    }
}

void ImageConversion::convert_one(unsigned int index, image::ImageWriter& writer) {
    PlannedPart& part = parts[index];
    const image::PartHeader& header = reader.get_parts()[part.input_index];
    if (header.spec.deep)
        reader.read_deep_part(part.input_index, deep_pixels);
    else
        reader.read_part(part.input_index, buffers.input);
    const OIIO::ImageSpec output_spec = writer.open_part(output_headers, index, abilities);
    settle_depth(output_spec, part.plan);
    const std::vector<std::size_t> transparent =
        header.spec.deep ? convert_deep(part, output_spec, writer) : convert_flat(part, output_spec, writer);
    for (const std::size_t layer : transparent)
        if (header.level == 0)
            add_note(fmt::format("the alpha of {} is 0 everywhere: its color {}", part.layer_names[layer],
                                 part.plan.associates_alpha ? "becomes 0" : "is converted as it is"));
    report.pixels += header.spec.image_pixels();
    if (index == 0) {
        report.width = output_spec.width;
        report.height = output_spec.height;
        report.depth = image::get_depth(output_spec, abilities.name).get_name();
    }
}

/// The alpha of another part for layers that have none; null if no layer needs it.
const float* ImageConversion::find_part_alpha(const image::PartPlan& plan) {
    const auto layer =
        std::find_if(plan.layers.begin(), plan.layers.end(), [](const image::ColorLayer& color) {
            return color.alpha_part != image::ColorLayer::NONE;
        });
    if (layer == plan.layers.end())
        return nullptr;
    if (layer->alpha_part != alpha_part) {
        const auto index = static_cast<std::size_t>(layer->alpha_part);
        image::PixelBuffer pixels;
        reader.read_part(index, pixels);
        part_alpha = image::decode_alpha(reader.get_parts()[index].spec, pixels);
        alpha_part = layer->alpha_part;
    }
    return part_alpha.data();
}

/// Returns the layers whose alpha is 0 everywhere.
std::vector<std::size_t> ImageConversion::convert_flat(const PlannedPart& part,
                                                       const OIIO::ImageSpec& output_spec,
                                                       image::ImageWriter& writer) {
    const OIIO::ImageSpec& input_spec = reader.get_parts()[part.input_index].spec;
    const bool in_place = image::can_convert_in_place(input_spec, part.plan, output_spec);
    image::PixelBuffer& target = in_place ? buffers.input : buffers.output;
    if (!in_place)
        target.resize(output_spec.image_bytes(true));
    std::vector<std::size_t> transparent =
        image::convert_part(input_spec, buffers.input, part.plan, output_spec, settings.convert,
                            settings.threads, target, find_part_alpha(part.plan));
    writer.write_part(target);
    return transparent;
}

/// Returns the layers whose alpha is 0 everywhere.
std::vector<std::size_t> ImageConversion::convert_deep(const PlannedPart& part,
                                                       const OIIO::ImageSpec& output_spec,
                                                       image::ImageWriter& writer) {
    const OIIO::ImageSpec& input_spec = reader.get_parts()[part.input_index].spec;
    image::DeepPixels converted;
    std::vector<std::size_t> transparent = image::convert_deep_part(
        input_spec, deep_pixels, part.plan, output_spec, settings.convert, settings.threads, converted);
    writer.write_deep_part(converted);
    return transparent;
}

} // namespace

void check_output(const ImageSettings& settings, const std::string& output) {
    const std::string format = image::get_format_abilities(output).name;
    const image::OutputOptions& output_options = settings.output_options;
    image::check_depth(output_options.depth, format, output);
    image::check_compression(output_options.compression, format, output);
    if (output_options.dithers && output_options.depth.is_known())
        check_dithering(output_options.depth, output);
}

void ImageBuffers::release() {
    input = image::PixelBuffer();
    output = image::PixelBuffer();
    reader.stop();
    memory.release();
}

std::optional<ImageReport> try_to_convert_image(const ImageJob& job, const ImageSettings& settings,
                                                ImageBuffers& buffers, WhenFull rule) {
    try {
        std::optional<ImageConversion> conversion(std::in_place, job, settings, buffers);
        const std::uint64_t bytes = conversion->estimate_memory();
        if (!buffers.memory.try_to_hold(bytes)) {
            conversion.reset();
            buffers.release();
            if (rule == WhenFull::GIVE_UP)
                return std::nullopt;
            buffers.memory.hold(bytes);
            conversion.emplace(job, settings, buffers);
        }
        return conversion->run();
    } catch (const diagnostics::Failure&) {
        throw;
    } catch (const std::exception& error) { // memory or threads that ran out
        throw diagnostics::Failure(add_context(fmt::format("cannot convert '{}'", job.input),
                                               {diagnostics::describe(error)},
                                               diagnostics::Code::SYSTEM_FAILURE));
    }
}

ImageReport convert_image(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers) {
    return *try_to_convert_image(job, settings, buffers, WhenFull::WAIT);
}

} // namespace workflow
