#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "image/format_abilities.h"
#include "image/image_reader.h"
#include "image/part_plan.h"
#include "workflow/image_settings.h"
#include "workflow/layer_choice.h"

namespace workflow {

/// A part of the input and how to write it.
struct PlannedPart {
    unsigned int input_index;
    image::PartPlan plan;
    const image::ConvertRows& convert;    ///< Of the settings.
    std::vector<std::string> layer_names; ///< Of the layers of the plan, for messages.
};

/// Adds a note unless there is one with the same message.
void add_note(diagnostics::Diagnostics& notes, diagnostics::Diagnostic note);

/// Which parts of an image are written, and how.
class ImagePlan {
public:
    /// `reader` has opened the input of `job`. Throws diagnostics::Failure when the output cannot have what
    /// is to be written. The references must outlive the object.
    ImagePlan(const ImageJob& job, const ImageSettings& settings, const image::ImageReader& reader,
              const image::FormatAbilities& abilities);

    /// In the order of the output.
    std::vector<PlannedPart>& get_parts() { return parts; }
    /// Their headers in the output.
    const std::vector<image::PartHeader>& get_output_headers() const { return output_headers; }
    /// The layers that are written.
    const LayerReport& get_layers() const { return layers; }
    /// Notes on what the output format does not support, and so on.
    const diagnostics::Diagnostics& get_notes() const { return notes; }
    /// Bytes that the conversion takes at most.
    std::uint64_t estimate_memory() const;

private:
    void plan_parts();
    void check_tags();
    bool is_known(const std::vector<std::string>& tags) const;
    void report_other_tags(const std::string& part);
    LayerConversion describe_conversion() const;
    const PartSettings* find_part_settings(const image::PartHeader& part) const;
    image::OutputOptions make_options(const PartChoice& choice, const PartSettings* of_part);
    void plan_one(unsigned int index);
    void choose_kept_subimage();
    void note_missing_tag(const OIIO::ImageSpec& spec, const std::string& color_space);
    void report_layers(const PartChoice& choice, const PartSettings* of_part);
    void note_all(const diagnostics::Diagnostics& changes);
    void note_losses();
    std::vector<bool> find_data_parts() const;
    bool is_kept(const image::PartHeader& part) const;
    std::uint64_t estimate_part(const PlannedPart& part) const;

    const ImageJob& job;
    const ImageSettings& settings;
    const image::ImageReader& reader;
    const std::string& output;
    const image::FormatAbilities& abilities;
    std::vector<PartChoice> choices; ///< By subimage.
    int kept_subimage = 0;           ///< The one that is written to a format of one part.
    std::vector<PlannedPart> parts;
    std::vector<image::PartHeader> output_headers;
    std::string fingerprint; ///< To be recorded; empty for none.
    LayerReport layers;
    diagnostics::Diagnostics notes;
};

} // namespace workflow
