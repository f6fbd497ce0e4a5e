#include "workflow/image_job.h"

#include <algorithm>
#include <exception>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/color_tags.h"
#include "image/image_reader.h"
#include "image/image_writer.h"

namespace workflow {

namespace {

/// A part of the input and how to write it.
struct PlannedPart {
    unsigned int input_index;
    image::PartPlan plan;
};

class ImageConversion {
public:
    ImageConversion(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers)
        : settings(settings), buffers(buffers), reader(job.input, buffers.reader), output(job.output),
          abilities(image::get_format_abilities(job.output)) {
        plan_parts();
    }

    ImageReport run() {
        image::ImageWriter writer(output);
        for (unsigned int i = 0; i < parts.size(); ++i)
            convert_one(i, writer);
        writer.close();
        return std::move(report);
    }

private:
    void plan_parts();
    void check_depth(const image::PartPlan& plan, const OIIO::ImageSpec& output_spec) const;
    void convert_one(unsigned int index, image::ImageWriter& writer);
    void add_note(const std::string& note);
    bool is_kept(const image::PartHeader& part) const;

    const ImageSettings& settings;
    ImageBuffers& buffers;
    image::ImageReader reader;
    const std::string output;
    const image::FormatAbilities abilities;
    std::vector<PlannedPart> parts;
    std::vector<image::PartHeader> output_headers;
    ImageReport report;
};

void ImageConversion::add_note(const std::string& note) {
    if (std::find(report.notes.begin(), report.notes.end(), note) == report.notes.end())
        report.notes.push_back(note);
}

bool ImageConversion::is_kept(const image::PartHeader& part) const {
    return (part.level == 0 || abilities.has_levels) && (part.subimage == 0 || abilities.has_subimages);
}

void ImageConversion::plan_parts() {
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    if (settings.source_tags &&
        image::find_color_tags(headers.front().spec).describe() != *settings.source_tags)
        add_note("its color tags differ from those of the first image, whose color space is used");
    bool any_color = false;
    for (unsigned int i = 0; i < headers.size(); ++i) {
        if (!is_kept(headers[i]))
            continue;
        image::PartPlan plan =
            image::plan_part(headers[i].spec, reader.get_format(), abilities, settings.wishes);
        any_color = any_color || !plan.layers.empty();
        for (const std::string& note : plan.notes)
            add_note(note);
        output_headers.push_back({headers[i].subimage, headers[i].level, plan.spec});
        parts.push_back({i, std::move(plan)});
    }
    if (!any_color)
        diagnostics::fail_file(
            diagnostics::Code::IMAGE_UNSUPPORTED,
            fmt::format("cannot convert '{}': no color channels (R, G and B, or Y)", reader.get_path()),
            reader.get_path());
    if (reader.count_subimages() > 1 && !abilities.has_subimages)
        add_note(fmt::format("{} does not support several parts: only part 1 of {} is written",
                             abilities.name, reader.count_subimages()));
    const bool has_levels =
        std::any_of(headers.begin(), headers.end(), [](auto& part) { return part.level; });
    if (has_levels && !abilities.has_levels)
        add_note(
            fmt::format("{} does not support mipmaps: only the full resolution is written", abilities.name));
}

void ImageConversion::check_depth(const image::PartPlan& plan, const OIIO::ImageSpec& output_spec) const {
    const OIIO::TypeDesc wanted = settings.wishes.depth;
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
    const PlannedPart& part = parts[index];
    const OIIO::ImageSpec& input_spec = reader.get_parts()[part.input_index].spec;
    reader.read_part(part.input_index, buffers.input);
    const OIIO::ImageSpec output_spec = writer.open_part(output_headers, index, abilities);
    check_depth(part.plan, output_spec);
    const bool in_place = image::can_convert_in_place(input_spec, part.plan, output_spec);
    image::PixelBuffer& target = in_place ? buffers.input : buffers.output;
    if (!in_place)
        target.resize(output_spec.image_bytes(true));
    image::convert_part(input_spec, buffers.input, part.plan, output_spec, settings.convert, settings.threads,
                        target);
    writer.write_part(target);

    report.pixels += input_spec.image_pixels();
    if (index == 0) {
        report.width = output_spec.width;
        report.height = output_spec.height;
        report.depth = output_spec.format.c_str();
    }
}

} // namespace

ImageReport convert_image(const ImageJob& job, const ImageSettings& settings, ImageBuffers& buffers) {
    try {
        return ImageConversion(job, settings, buffers).run();
    } catch (const diagnostics::Failure&) {
        throw;
    } catch (const std::exception& error) { // memory or threads that ran out
        throw diagnostics::Failure(add_context(fmt::format("cannot convert '{}'", job.input),
                                               {diagnostics::describe(error)},
                                               diagnostics::Code::SYSTEM_FAILURE));
    }
}

} // namespace workflow
