#pragma once

#include <string>
#include <vector>

#include "diagnostics/diagnostic.h"
#include "workflow/color_step.h"
#include "workflow/conversion_stage.h"

namespace workflow {

class Session;

/// A requested conversion: from a color space or a view, through CDLs, looks and an exposure in scene-linear,
/// to a color space or a view, and through named transforms and LUTs after that. Color spaces are given by
/// label, name without family, role or alias.
struct ConversionRequest {
    std::string from;             ///< Source color space; empty with `inverse_view`.
    std::string inverse_view;     ///< Label of the view that the source is the result of; empty with `from`.
    std::string to;               ///< Destination color space; empty with `view`.
    std::string display;          ///< Display of `view`; empty when `view` is a label such as "sRGB.Film".
    std::string view;             ///< Destination view; empty with `to`.
    std::vector<ColorStep> steps; ///< In the order of their application.
    bool takes_exposure = false;  ///< Convert through scene-linear, so that `apply` can take an exposure.
};

/// The conversion pipeline. It is configured once, by the thread of the session; const functions may then be
/// called by several threads at once. It stays valid when the session changes its config.
class Conversion {
public:
    using Stage = ConversionStage;

    /// Throws diagnostics::Failure when a name is unknown, a file cannot be read, or OpenColorIO cannot make
    /// one of the conversions. Without `to` and `view` the destination is scene-linear if the request has a
    /// CDL, a look, an exposure or an inverse view, else the source.
    Conversion(const Session& session, const ConversionRequest& request);
    ~Conversion();
    Conversion(Conversion&&) noexcept;

    /// Labels of source and destination; of the last named transform or LUT, where there is one, its name.
    const std::string& get_source() const { return source; }
    const std::string& get_destination() const { return destination; }
    /// Label of the color space of the result. For a view the color space that the config gives it; may be
    /// empty, as it is after a named transform or a LUT. Where the destination holds data, to which
    /// OpenColorIO converts nothing, the color space that the colors stay in.
    const std::string& get_destination_space() const { return destination_space; }
    /// Value of "oiio:ColorSpace" for the result: the name of that color space without its family, "sRGB" or
    /// "Linear" where OpenImageIO has that tag, or "unknown" after a named transform or a LUT.
    std::string get_destination_tag() const;
    /// Label of the scene-linear color space in which CDLs and exposure are applied; empty without either.
    const std::string& get_working_space() const { return working_space; }

    /// Notes on aliases and names in another case, warnings of ignored elements of a CDL file.
    const diagnostics::Diagnostics& get_notes() const { return notes; }

    /// In the order of their application.
    const std::vector<Stage>& get_stages() const { return stages; }
    /// True when it was requested to take one.
    bool takes_exposure() const { return is_exposable; }
    /// Position of the stage before which the exposure is applied; the number of stages if after the last.
    std::size_t get_exposure_position() const { return exposure_position; }
    /// True when `apply` without an exposure leaves pixels unchanged because source and destination are the
    /// same.
    bool is_identity() const { return stages.empty(); }
    /// True when nothing is converted because the source holds data.
    bool leaves_data() const { return is_data_left; }
    /// True when gray stays gray, within 1e-5. Checked by converting six grays from 0 to 4. Throws
    /// diagnostics::Failure when a stage cannot be applied.
    bool keeps_neutrals() const;
    /// True when red, green or blue of a result depends on another one of the source, beyond 1e-5. Checked by
    /// converting 72 colors.
    bool mixes_channels() const;

    /// Converts interleaved red, green, blue, alpha floats in place; alpha is not changed by the exposure.
    /// `exposure` is in stops; other values than 0 need a request with `takes_exposure`. Without alpha there
    /// are 3 `channels`. Throws diagnostics::Failure when a stage cannot be applied; the pixels are then
    /// undefined.
    void apply(float* pixels, unsigned int width, unsigned int height, float exposure = 0,
               unsigned int channels = 4) const;

private:
    void start_in_view(const Session& session, const std::string& label);
    void start_in_space(const Session& session, const std::string& name);
    void go_to_working_space(const Session& session);
    void go_to_space(const Session& session, const std::string& label);
    void go_to_destination(const Session& session, const ConversionRequest& request);
    void add_steps(const Session& session, const std::vector<ColorStep>& steps, bool are_scene_linear);
    void note_references();
    void note_data();
    bool stays_for_data(const std::string& former);

    diagnostics::Diagnostics notes; // initialized before `source`, whose resolution adds to it
    std::vector<Stage> stages;
    std::size_t exposure_position = 0;
    bool is_exposable;
    std::string source;
    std::string destination;
    std::string destination_space;
    std::string working_space;
    std::string space; ///< Label of the color space that pixels are in after the stages so far.
    bool is_data_left = false;
    bool is_transformed = false; ///< By a named transform or a LUT, after the destination.
};

/// Factor of an exposure in stops: 2 to the power of `exposure`.
float get_gain(float exposure);

} // namespace workflow
