#pragma once

#include <memory>
#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"

class ColorIOConverter;

namespace workflow {

class Session;

/// A requested conversion: from a color space, through a CDL and an exposure in scene-linear, to a color
/// space or a view. Color spaces are given by label, name without family, role or alias.
struct ConversionRequest {
    std::string from;
    std::string to;              ///< Destination color space; empty with `view`.
    std::string display;         ///< Display of `view`; empty when `view` is a label such as "sRGB.Film".
    std::string view;            ///< Destination view; empty with `to`.
    std::string cdl;             ///< FILE or FILE:ID of a color correction to apply; empty for none.
    std::string cdl_name;        ///< Name of a published CDL to apply after `cdl`; empty for none.
    bool undoes_cdl = false;     ///< Apply the inverse of `cdl`.
    bool takes_exposure = false; ///< Convert through scene-linear, so that `apply` can take an exposure.
};

/// The conversion pipeline. It is configured once, by the thread of the session; const functions may then be
/// called by several threads at once. It stays valid when the session changes its config.
class Conversion {
public:
    /// One conversion of the module.
    struct Stage {
        std::string title; ///< "Tavelion|sRGB to Tavelion|linear", "grades.ccc:shot_010 in Tavelion|linear".
        std::unique_ptr<ColorIOConverter> converter;
    };

    /// Throws diagnostics::Failure when a name is unknown, a file cannot be read, or OpenColorIO cannot make
    /// one of the conversions. Without `to` and `view` the destination is scene-linear if the request has a
    /// CDL or an exposure, else the source.
    Conversion(const Session& session, const ConversionRequest& request);
    ~Conversion();
    Conversion(Conversion&&) noexcept;

    /// Labels of source and destination.
    const std::string& get_source() const { return source; }
    const std::string& get_destination() const { return destination; }
    /// Label of the color space of the result. For a view the color space that the config gives it; may be
    /// empty.
    const std::string& get_destination_space() const { return destination_space; }
    /// Value of "oiio:ColorSpace" for the result: the name of that color space without its family, or "sRGB"
    /// or "Linear" where OpenImageIO has that tag.
    std::string get_destination_tag() const;
    /// Label of the scene-linear color space in which CDL and exposure are applied; empty without either.
    const std::string& get_working_space() const { return working_space; }

    /// Notes on aliases and names in another case, warnings of ignored elements of a CDL file.
    const diagnostics::Diagnostics& get_notes() const { return notes; }

    /// In the order of their application.
    const std::vector<Stage>& get_stages() const { return stages; }
    /// Position of the stage before which the exposure is applied; the number of stages if after the last.
    std::size_t get_exposure_position() const { return exposure_position; }
    /// True when `apply` without an exposure leaves pixels unchanged because source and destination are the
    /// same.
    bool is_identity() const { return stages.empty(); }
    /// True when gray stays gray, within 1e-5. Checked by converting six grays from 0 to 4.
    bool keeps_neutrals() const;

    /// Converts interleaved red, green, blue, alpha floats in place; alpha is not changed by the exposure.
    /// `exposure` is in stops; other values than 0 need a request with `takes_exposure`. Throws
    /// diagnostics::Failure when a stage cannot be applied; the pixels are then undefined.
    void apply(float* rgba, unsigned int width, unsigned int height, float exposure = 0) const;

private:
    void add_stage(std::string title, std::unique_ptr<ColorIOConverter> converter);
    void go_to_working_space(const Session& session);
    void add_correction(const Session& session, const ConversionRequest& request);
    void add_published_cdl(const std::string& name);
    void add_view(const Session& session, const std::string& start, const ConversionRequest& request);
    void add_space(const Session& session, const std::string& start, const std::string& name);
    void add_conversion(const Session& session, const std::string& from, const std::string& to);

    diagnostics::Diagnostics notes; // initialized before `source`, whose resolution adds to it
    std::vector<Stage> stages;
    std::size_t exposure_position = 0;
    std::string source;
    std::string destination;
    std::string destination_space;
    std::string working_space;
};

/// Factor of an exposure in stops: 2 to the power of `exposure`.
float get_gain(float exposure);

} // namespace workflow
