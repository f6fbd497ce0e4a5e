#include "workflow/image_job.h"

#include <algorithm>
#include <new>

#include <fmt/format.h>

#include "image/picture_reader.h"
#include "image/picture_writer.h"
#include "tool/exit_code.h"
#include "workflow/failure_reason.h"

namespace tool {

namespace {

/// One part of the input with the plan for it.
struct PlannedPart {
    unsigned int input_index;
    PartPlan plan;
};

class PictureConversion {
public:
    PictureConversion(const PictureJob& job, const PictureSettings& settings, PictureBuffers& buffers)
        : settings(settings), buffers(buffers), reader(job.input, buffers.reader), output(job.output),
          abilities(get_format_abilities(job.output)) {
        plan_parts();
    }

    PictureReport run() {
        PictureWriter writer(output);
        for (unsigned int i = 0; i < parts.size(); ++i)
            convert_one(i, writer);
        writer.close();
        return std::move(report);
    }

private:
    void plan_parts();
    void check_depth(const PartPlan& plan, const OIIO::ImageSpec& output_spec) const;
    void convert_one(unsigned int index, PictureWriter& writer);
    void add_note(const std::string& note);
    bool is_kept(const PartHeader& part) const;

    const PictureSettings& settings;
    PictureBuffers& buffers;
    PictureReader reader;
    const std::string output;
    const FormatAbilities abilities;
    std::vector<PlannedPart> parts;
    std::vector<PartHeader> output_headers;
    PictureReport report;
};

void PictureConversion::add_note(const std::string& note) {
    if (std::find(report.notes.begin(), report.notes.end(), note) == report.notes.end())
        report.notes.push_back(note);
}

bool PictureConversion::is_kept(const PartHeader& part) const {
    return (part.level == 0 || abilities.has_levels) && (part.subimage == 0 || abilities.has_subimages);
}

void PictureConversion::plan_parts() {
    const std::vector<PartHeader>& headers = reader.get_parts();
    bool any_color = false;
    for (unsigned int i = 0; i < headers.size(); ++i) {
        if (!is_kept(headers[i]))
            continue;
        PartPlan plan = plan_part(headers[i].spec, reader.get_format(), abilities, settings.wishes);
        any_color = any_color || !plan.groups.empty();
        for (const std::string& note : plan.notes)
            add_note(note);
        output_headers.push_back({headers[i].subimage, headers[i].level, plan.spec});
        parts.push_back({i, std::move(plan)});
    }
    if (!any_color)
        throw CommandError(fmt::format("cannot convert '{}': it has no channels of colour (R, G and B, or Y)",
                                       reader.get_path()));
    if (reader.count_subimages() > 1 && !abilities.has_subimages)
        add_note(fmt::format("{} holds one picture: part 1 of {} is written", abilities.name,
                             reader.count_subimages()));
    const bool has_levels =
        std::any_of(headers.begin(), headers.end(), [](auto& part) { return part.level; });
    if (has_levels && !abilities.has_levels)
        add_note(fmt::format("{} holds one resolution: the smaller levels are left out", abilities.name));
}

void PictureConversion::check_depth(const PartPlan& plan, const OIIO::ImageSpec& output_spec) const {
    const OIIO::TypeDesc wanted = settings.wishes.depth;
    for (std::size_t i = 0; i < plan.channels.size() && wanted != OIIO::TypeUnknown; ++i) {
        const OIIO::TypeDesc type = output_spec.channelformat(static_cast<int>(i));
        if (plan.channels[i].group != ColorGroup::NONE && type != wanted)
            throw CommandError(fmt::format("cannot write '{}': {} holds no {}; it would become {}", output,
                                           abilities.name, wanted.c_str(), type.c_str()));
    }
}

void PictureConversion::convert_one(unsigned int index, PictureWriter& writer) {
    const PlannedPart& part = parts[index];
    const OIIO::ImageSpec& input_spec = reader.get_parts()[part.input_index].spec;
    reader.read_part(part.input_index, buffers.input);
    const OIIO::ImageSpec output_spec = writer.open_part(output_headers, index, abilities);
    check_depth(part.plan, output_spec);
    const bool in_place = can_convert_in_place(input_spec, part.plan, output_spec);
    PixelBuffer& target = in_place ? buffers.input : buffers.output;
    if (!in_place)
        target.resize(output_spec.image_bytes(true));
    convert_part(input_spec, buffers.input, part.plan, output_spec, settings.convert, settings.threads,
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

PictureReport convert_picture(const PictureJob& job, const PictureSettings& settings,
                              PictureBuffers& buffers) {
    try {
        return PictureConversion(job, settings, buffers).run();
    } catch (const std::bad_alloc& shortage) {
        throw CommandError(fmt::format("cannot convert '{}': {}", job.input, explain_exception(shortage)));
    }
}

} // namespace tool
