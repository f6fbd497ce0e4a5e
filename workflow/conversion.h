#pragma once

#include <memory>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

class ColorIOConverter;

namespace workflow {

class Session;

/// A conversion as it is asked for: from a color space, through a CDL and an exposure in scene-linear, to a
/// color space or a view. Names may be labels, names without a family, roles or aliases.
struct ConversionRequest {
    std::string from;
    std::string to;              ///< Destination color space; empty with `view`.
    std::string display;         ///< With `view`; empty when `view` is a label that holds both.
    std::string view;            ///< Destination view; empty with `to`.
    std::string cdl;             ///< FILE or FILE:ID of a color correction to apply; empty for none.
    std::string cdl_name;        ///< Name of a published CDL to apply instead; empty for none.
    bool undoes_cdl = false;     ///< Undo the CDL of `cdl` instead of applying it.
    bool takes_exposure = false; ///< Go through scene-linear, so that `apply` can take an exposure.
};

/// The one conversion pipeline: configured once, applied by several threads at once. It keeps its processors
/// whatever becomes of the config.
class Conversion {
public:
    /// One conversion of the module.
    struct Stage {
        std::string title; ///< "Tavelion|sRGB to Tavelion|linear", "grades.ccc:shot_010 in Tavelion|linear".
        std::unique_ptr<ColorIOConverter> converter;
    };

    /// Throws diagnostics::Failure when a name is unknown, a file cannot be read, or OpenColorIO cannot make
    /// one of the conversions. Without `to` and `view` the result stays in scene-linear, or where it was.
    Conversion(const Session& session, const ConversionRequest& request);
    ~Conversion();
    Conversion(Conversion&&) noexcept;

    /// Labels of source and destination.
    const std::string& get_source() const { return source; }
    const std::string& get_destination() const { return destination; }
    /// Label of the color space of the result; of a view, the one it shows, where the config says.
    const std::string& get_destination_space() const { return destination_space; }
    /// Name of that color space for image files: without its family; "sRGB" and "Linear" as OpenImageIO knows
    /// them.
    std::string get_destination_tag() const;
    /// Label of the scene-linear color space that the CDL and the exposure work in; empty without either.
    const std::string& get_working_space() const { return working_space; }

    /// Names that were taken for others, elements of a CDL file that are ignored.
    const diagnostics::Diagnostics& get_notes() const { return notes; }

    /// In the order of their application.
    const std::vector<Stage>& get_stages() const { return stages; }
    /// Position of the stage before which the exposure is applied; the number of stages when that is behind
    /// all.
    std::size_t get_exposure_position() const { return exposure_position; }
    /// True when `apply` without an exposure leaves pixels unchanged because source and destination are the
    /// same.
    bool is_identity() const { return stages.empty(); }
    /// True when equal red, green and blue stay equal.
    bool keeps_neutrals() const;

    /// Converts interleaved red, green, blue, alpha floats in place. `exposure` in stops needs a request that
    /// takes it.
    void apply(float* rgba, unsigned int width, unsigned int height, float exposure = 0) const;

private:
    void add_stage(std::string title, std::unique_ptr<ColorIOConverter> converter);
    void go_to_working_space(const Session& session);
    void add_correction(const Session& session, const ConversionRequest& request);
    void add_published_cdl(const std::string& name);
    void add_view(const Session& session, const std::string& start, const ConversionRequest& request);
    void add_space(const Session& session, const std::string& start, const std::string& name);
    void add_conversion(const Session& session, const std::string& from, const std::string& to);

    diagnostics::Diagnostics notes; // before the labels, whose resolution adds to them
    std::vector<Stage> stages;
    std::size_t exposure_position = 0;
    std::string source;
    std::string destination;
    std::string destination_space;
    std::string working_space;
};

/// Linear factor of an exposure in stops.
float get_gain(float exposure);

} // namespace workflow
