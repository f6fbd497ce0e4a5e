#include "workflow/image_job.h"

#include <exception>

#include <fmt/format.h>

#include "diagnostics/file_failure.h"
#include "image/deep_pixels.h"
#include "image/image_reader.h"
#include "image/image_writer.h"
#include "image/part_alpha.h"
#include "workflow/image_plan.h"
#include "workflow/output_depth.h"

namespace workflow {

namespace {

class ImageConversion {
public:
    ImageConversion(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers)
        : settings(settings), buffers(buffers), reader(job.input, buffers.reader), output(job.output),
          abilities(image::get_format_abilities(job.output)),
          plan((check_output(settings, job.output), ImagePlan(job, settings, reader, abilities))) {}

    /// Bytes that `run` takes at most.
    std::uint64_t estimate_memory() const { return plan.estimate_memory(); }

    ImageReport run() {
        report.layers = plan.get_layers();
        report.notes = plan.get_notes();
        image::ImageWriter writer(output);
        for (unsigned int i = 0; i < plan.get_parts().size(); ++i)
            convert_one(i, writer);
        writer.close();
        return std::move(report);
    }

private:
    void convert_one(unsigned int index, image::ImageWriter& writer);
    std::vector<std::size_t> convert_flat(const PlannedPart& part, const OIIO::ImageSpec& output_spec,
                                          image::ImageWriter& writer);
    std::vector<std::size_t> convert_deep(const PlannedPart& part, const OIIO::ImageSpec& output_spec,
                                          image::ImageWriter& writer);
    const float* find_part_alpha(const image::PartPlan& plan);

    const ImageSettings& settings;
    ImageBuffers& buffers;
    image::ImageReader reader;
    const std::string output;
    const image::FormatAbilities abilities;
    ImagePlan plan;
    int alpha_part = image::ColorLayer::NONE; ///< The one that `part_alpha` is of.
    std::vector<float> part_alpha;
    image::DeepPixels deep_pixels; ///< Of the current part, if it is deep.
    ImageReport report;
};

void ImageConversion::convert_one(unsigned int index, image::ImageWriter& writer) {
    PlannedPart& part = plan.get_parts()[index];
    const image::PartHeader& header = reader.get_parts()[part.input_index];
    if (header.spec.deep)
        reader.read_deep_part(part.input_index, deep_pixels);
    else
        reader.read_part(part.input_index, buffers.input);
    const OIIO::ImageSpec output_spec = writer.open_part(plan.get_output_headers(), index, abilities);
    settle_depth(settings.output_options, output_spec, abilities.name, output, part.plan);
    const std::vector<std::size_t> transparent =
        header.spec.deep ? convert_deep(part, output_spec, writer) : convert_flat(part, output_spec, writer);
    for (const std::size_t layer : transparent)
        if (header.level == 0)
            add_note(report.notes,
                     diagnostics::make_file_note(
                         diagnostics::Code::IMAGE_ADAPTED,
                         fmt::format("the alpha of {} is 0 everywhere: its color {}", part.layer_names[layer],
                                     part.plan.associates_alpha ? "becomes 0" : "is not divided by alpha"),
                         reader.get_path()));
    report.pixels += header.spec.image_pixels();
    if (index == 0) {
        report.width = output_spec.width;
        report.height = output_spec.height;
        report.depth = image::get_depth(output_spec, abilities.name).get_name();
    }
}

/// The alpha of another part for layers that have none; null if no layer needs it.
const float* ImageConversion::find_part_alpha(const image::PartPlan& plan) {
    const int wanted = plan.find_alpha_part();
    if (wanted == image::ColorLayer::NONE)
        return nullptr;
    if (wanted != alpha_part) {
        const auto index = static_cast<std::size_t>(wanted);
        image::PixelBuffer pixels;
        reader.read_part(index, pixels);
        part_alpha = image::decode_alpha(reader.get_parts()[index].spec, pixels);
        alpha_part = wanted;
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
        image::convert_part(input_spec, buffers.input, part.plan, output_spec, part.convert, settings.threads,
                            target, find_part_alpha(part.plan));
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
        input_spec, deep_pixels, part.plan, output_spec, part.convert, settings.threads, converted);
    writer.write_deep_part(converted);
    return transparent;
}

diagnostics::Diagnostic describe_excess(std::uint64_t bytes, const std::string& path) {
    return with_hint(diagnostics::make_file_warning(
                         diagnostics::Code::MEMORY_EXCEEDED,
                         "an image needs more memory than is allowed: it is converted alone", path),
                     fmt::format("'{}' needs about {} MB", path, bytes >> 20));
}

} // namespace

void check_output(const ImageSettings& settings, const std::string& output) {
    check_output_options(settings.output_options, image::get_format_abilities(output).name, output);
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
        ImageReport report = conversion->run();
        if (!buffers.memory.is_enough_for(bytes))
            add_note(report.notes, describe_excess(bytes, job.input));
        return report;
    } catch (const diagnostics::Failure&) {
        throw;
    } catch (const std::exception& error) { // memory or threads that ran out
        throw diagnostics::Failure(add_context(fmt::format("cannot convert '{}'", job.input),
                                               {diagnostics::describe(error)},
                                               diagnostics::Code::SYSTEM_FAILURE));
    }
}

LayerReport plan_image(const ImageJob& job, const ImageSettings& settings, image::ReaderProcess& process) {
    const image::ImageReader reader(job.input, process);
    const image::FormatAbilities abilities = image::get_format_abilities(job.output);
    check_output(settings, job.output);
    const ImagePlan plan(job, settings, reader, abilities);
    image::check_output_path(job.output);
    return plan.get_layers();
}

ImageReport convert_image(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers) {
    return *try_to_convert_image(job, settings, buffers, WhenFull::WAIT);
}

} // namespace workflow
