#include "workflow/image_plan.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "diagnostics/failure.h"
#include "image/color_tags.h"
#include "image/conversion_record.h"
#include "image/deep_size.h"
#include "image/image_layers.h"
#include "image/memory_estimate.h"
#include "workflow/fingerprint.h"
#include "workflow/ignoring_case.h"
#include "workflow/output_parts.h"

namespace workflow {

namespace {

/// Memory of a process that reads and of a thread that converts, besides pixels; measured.
constexpr std::uint64_t LANE_BYTES = std::uint64_t{16} << 20;

/// Color spaces that readers assume where a file says nothing.
constexpr const char* USUAL_COLOR_SPACES[] = {"sRGB", "Linear"};

/// Why a part is left: its tags name a data space.
constexpr char TAGGED_AS_DATA[] = "data by its tags";

/// The one for parts with these tags; null for none.
const PartSettings* find_settings(const std::vector<PartSettings>& parts,
                                  const std::vector<std::string>& tags) {
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&](const PartSettings& part) { return part.space.tags == tags; });
    return found == parts.end() ? nullptr : &*found;
}

} // namespace

void add_note(diagnostics::Diagnostics& notes, diagnostics::Diagnostic note) {
    if (std::none_of(notes.begin(), notes.end(),
                     [&](const diagnostics::Diagnostic& known) { return known.message == note.message; }))
        notes.push_back(std::move(note));
}

ImagePlan::ImagePlan(const ImageJob& job, const ImageSettings& settings, const image::ImageReader& reader,
                     const image::FormatAbilities& abilities)
    : job(job), settings(settings), reader(reader), output(job.output), abilities(abilities) {
    plan_parts();
}

bool ImagePlan::is_kept(const image::PartHeader& part) const {
    return (part.level == 0 || abilities.has_levels) &&
           (part.subimage == kept_subimage || abilities.has_subimages);
}

void ImagePlan::plan_parts() {
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    fingerprint = make_image_fingerprint(job, settings.fingerprint);
    check_tags();
    choices = choose_layers(reader.get_path(), reader.get_format(), headers, settings.layers,
                            describe_conversion());
    choose_kept_subimage();
    for (unsigned int i = 0; i < headers.size(); ++i)
        if (is_kept(headers[i]))
            plan_one(i);
    check_deep_parts(output_headers, abilities, reader.get_path(), output);
    note_all(reconcile_parts(output_headers, find_data_parts(), abilities));
    note_losses();
    std::size_t count = 0;
    for (const PartChoice& choice : choices)
        count += choice.chosen.size() + choice.left.size();
    layers.is_part_of_input = count > layers.converted.size() + layers.left.size();
}

/// Throws diagnostics::Failure for other tags than those of the first image if the settings are strict.
void ImagePlan::check_tags() {
    if (!settings.source_tags)
        return;
    const std::vector<PartTags> tags = find_part_tags(reader.get_parts(), reader.get_format());
    const auto decisive = std::find_if(tags.begin(), tags.end(), [&](const PartTags& of_part) {
        return !find_settings(settings.parts, of_part.tags.describe());
    });
    if (decisive == tags.end() || decisive->tags.describe() != *settings.source_tags) {
        report_other_tags("");
        return;
    }
    for (const PartTags& of_part : tags)
        if (!settings.part_tags.empty() && !is_known(of_part.tags.describe()))
            report_other_tags(of_part.part);
}

/// Whether the first image has a part with these tags.
bool ImagePlan::is_known(const std::vector<std::string>& tags) const {
    return tags.empty() ||
           std::find(settings.part_tags.begin(), settings.part_tags.end(), tags) != settings.part_tags.end();
}

/// `part` is empty for the image as a whole.
void ImagePlan::report_other_tags(const std::string& part) {
    const std::string of_part = part.empty() ? "" : fmt::format(" of the part '{}'", part);
    if (settings.is_strict)
        diagnostics::fail_file(
            diagnostics::Code::COLOR_SPACE_ASSUMED,
            fmt::format("cannot convert '{}': the color tags{} differ from those of the first image",
                        reader.get_path(), of_part),
            reader.get_path());
    diagnostics::Diagnostic warning = diagnostics::make_file_warning(
        diagnostics::Code::COLOR_SPACE_ASSUMED,
        fmt::format(
            "the color tags{} of some images differ from those of the first one, whose color space is used",
            of_part),
        reader.get_path());
    add_note(notes, with_hint(std::move(warning), // equal notes of a sequence are reported once
                              fmt::format("the first of them is '{}'; convert them separately, or name the "
                                          "color space of all",
                                          reader.get_path())));
}

LayerConversion ImagePlan::describe_conversion() const {
    LayerConversion conversion;
    conversion.mixes_channels = settings.mixes_channels;
    if (!settings.data_space.empty())
        conversion.reason_to_leave = fmt::format("in the data space '{}'", settings.data_space);
    for (const image::PartHeader& part : reader.get_parts()) {
        if (part.level > 0)
            continue;
        const PartSettings* const of_part = find_part_settings(part);
        conversion.part_reasons.push_back(of_part && of_part->space.is_data ? TAGGED_AS_DATA : "");
        conversion.part_mixes.push_back(of_part ? of_part->mixes_channels : settings.mixes_channels);
    }
    return conversion;
}

/// Null for a part in the color space of the image.
const PartSettings* ImagePlan::find_part_settings(const image::PartHeader& part) const {
    return settings.parts.empty()
               ? nullptr
               : find_settings(settings.parts, image::find_color_tags(part.spec).describe());
}

/// The first one with layers to convert.
void ImagePlan::choose_kept_subimage() {
    const auto found = std::find_if(choices.begin(), choices.end(),
                                    [](const PartChoice& choice) { return !choice.chosen.empty(); });
    if (found != choices.end())
        kept_subimage = static_cast<int>(found - choices.begin());
}

/// `of_part` is null for a part in the color space of the image.
image::OutputOptions ImagePlan::make_options(const PartChoice& choice, const PartSettings* of_part) {
    image::OutputOptions options = settings.output_options;
    if (of_part) {
        options.colors = of_part->colors;
        options.keeps_space = of_part->keeps_space;
        options.neutrals_stay_neutral = of_part->neutrals_stay_neutral;
    }
    if (!settings.data_space.empty())
        options.colors.name.clear(); // they stay in their color space
    if (!choice.chosen.empty() && choice.leaves_color && abilities.has_any_channels && !options.keeps_space) {
        options.colors = image::ColorDescription();
        options.colors.name = image::UNKNOWN_COLOR_SPACE; // layers are in two color spaces
        note_all({diagnostics::make_note(
            diagnostics::Code::METADATA_DROPPED,
            "only some of its layers were converted: its tag says that the color space is unknown",
            choice.name)});
    }
    return options;
}

void ImagePlan::plan_one(unsigned int index) {
    const image::PartHeader& header = reader.get_parts()[index];
    const PartChoice& choice = choices[static_cast<std::size_t>(header.subimage)];
    const PartSettings* const of_part = find_part_settings(header);
    if (of_part && !of_part->failure.empty() && !choice.chosen.empty())
        throw diagnostics::Failure(of_part->failure);
    const image::OutputOptions options = make_options(choice, of_part);
    image::PartPlan plan =
        image::plan_part(header.spec, choice.get_colors(), reader.get_format(), abilities, options);
    image::check_channel_count(plan.spec.nchannels, abilities, output);
    image::set_compression(options.compression, abilities.name, output, plan.spec);
    note_all(plan.notes);
    if (!choice.chosen.empty())
        note_missing_tag(plan.spec, options.colors.name);
    if (header.level == 0)
        report_layers(choice, of_part);
    std::vector<std::string> names;
    for (const ChosenLayer& layer : choice.chosen)
        names.push_back(layer.name);
    image::record_conversion(plan.spec, abilities.name, parts.empty() ? fingerprint : "");
    output_headers.push_back({header.subimage, header.level, plan.spec});
    parts.push_back(
        {index, std::move(plan), of_part ? of_part->convert : settings.convert, std::move(names)});
}

void ImagePlan::note_missing_tag(const OIIO::ImageSpec& spec, const std::string& color_space) {
    const bool is_usual =
        std::any_of(std::begin(USUAL_COLOR_SPACES), std::end(USUAL_COLOR_SPACES),
                    [&](const char* name) { return equal_ignoring_case(name, color_space); });
    if (color_space.empty() || is_usual || image::states_color_space(spec, abilities.name))
        return;
    note_all({with_hint(diagnostics::make_note(diagnostics::Code::METADATA_DROPPED,
                                               fmt::format("{} has no tag for the color space '{}'",
                                                           abilities.name, color_space),
                                               color_space),
                        "name the color space when you read the file")});
}

/// A format without layers gets the first one, and a note says which channels it does not get.
void ImagePlan::report_layers(const PartChoice& choice, const PartSettings* of_part) {
    for (const ChosenLayer& layer : choice.chosen) {
        if (!abilities.has_any_channels && &layer != &choice.chosen.front())
            continue;
        layers.converted.push_back(layer.name);
        if (of_part)
            layers.other_spaces[layer.name] = of_part->space.color_space;
    }
    if (abilities.has_any_channels || choice.chosen.empty())
        layers.left.insert(layers.left.end(), choice.left.begin(), choice.left.end());
}

/// The output, which a format demands to be other than the input.
void ImagePlan::note_all(const diagnostics::Diagnostics& changes) {
    for (diagnostics::Diagnostic note : changes) {
        note.file = output;
        add_note(notes, std::move(note));
    }
}

void ImagePlan::note_losses() {
    using diagnostics::Code;
    if (reader.count_subimages() > 1 && !abilities.has_subimages)
        note_all({diagnostics::make_note(
            Code::CHANNELS_DROPPED,
            fmt::format("{} does not support several parts: only part {} of {} is written", abilities.name,
                        kept_subimage + 1, reader.count_subimages()))});
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    const bool has_levels =
        std::any_of(headers.begin(), headers.end(), [](auto& part) { return part.level; });
    if (has_levels && !abilities.has_levels)
        note_all({diagnostics::make_note(
            Code::CHANNELS_DROPPED,
            fmt::format("{} does not support mipmaps: only the full resolution is written",
                        abilities.name))});
}

/// Whether each part of the output has no color, converted or left.
std::vector<bool> ImagePlan::find_data_parts() const {
    std::vector<bool> are_data;
    for (const PlannedPart& part : parts) {
        const OIIO::ImageSpec& spec = reader.get_parts()[part.input_index].spec;
        are_data.push_back(part.plan.layers.empty() &&
                           image::find_color_layers(spec, {reader.get_format(), {}}).empty());
    }
    return are_data;
}

std::uint64_t ImagePlan::estimate_part(const PlannedPart& part) const {
    const std::vector<image::PartHeader>& headers = reader.get_parts();
    const auto& [subimage, level, spec] = headers[part.input_index];
    if (spec.deep) {
        const std::uint64_t bytes =
            image::get_deep_bytes(reader.get_path(), static_cast<std::size_t>(subimage));
        return image::estimate_deep_memory(spec, bytes, part.plan);
    }
    const int alpha = part.plan.find_alpha_part();
    const std::uint64_t alpha_bytes =
        alpha == image::ColorLayer::NONE
            ? 0
            : image::estimate_alpha_memory(headers[static_cast<std::size_t>(alpha)].spec,
                                           reader.get_format());
    return image::estimate_part_memory(spec, reader.get_format(), part.plan, abilities) + alpha_bytes;
}

/// The alpha of a part is kept until the end, as others may need it.
std::uint64_t ImagePlan::estimate_memory() const {
    std::uint64_t most = 0, kept_alpha = 0;
    for (const PlannedPart& part : parts) {
        most = std::max(most, estimate_part(part));
        if (const int alpha = part.plan.find_alpha_part(); alpha != image::ColorLayer::NONE)
            kept_alpha = std::max(
                kept_alpha, image::get_alpha_bytes(reader.get_parts()[static_cast<std::size_t>(alpha)].spec));
    }
    return most + kept_alpha + LANE_BYTES;
}

} // namespace workflow
