#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "viewer/camera.h"
#include "viewer/file_watcher.h"
#include "viewer/image_list.h"
#include "viewer/view_settings.h"
#include "workflow/conversion.h"
#include "workflow/file_space.h"
#include "workflow/live_config.h"

namespace viewer {

/// The state of the viewer, without a window and without OpenGL. Failed operations throw
/// diagnostics::Failure; errors that the user did not cause are listed for display. What is shown stays after
/// an error.
class ViewModel {
public:
    /// One of the two views.
    enum Side { FIRST, SECOND, SIDE_COUNT };

    explicit ViewModel(workflow::LiveConfig& live_config);

    // Images

    /// Refuses images with more pixels than that a side from now on, before their pixels are read.
    void set_max_side(int pixels) { images.set_max_side(pixels); }
    /// Lists files without reading them.
    void add_images(const std::vector<std::string>& paths);
    /// Shows the file, and lists it if it is new.
    void open(const std::string& path);
    /// Shows the next (+1) or previous (-1) listed image, wrapping around. For one that cannot be read the
    /// error is shown until the next step, and the image shown stays.
    void step_image(int by);
    const ImageList& get_images() const { return images; }
    /// Null until one was opened.
    const std::shared_ptr<const Image>& get_image() const { return images.get_image(); }

    // Colors, by the module's names; color spaces also by role and without a family.

    /// The next two hold for the image shown, and replace each other.
    void set_input_space(const std::string& name);
    /// The image is the result of that view. Throws when the view cannot be inverted.
    void set_inverse_view(const std::string& label);
    void set_cdl(const std::string& name);
    /// What else is done to colors on their way to both views, after the CDL. Throws when it cannot be done.
    void set_steps(std::vector<workflow::ColorStep> wanted);
    const std::vector<workflow::ColorStep>& get_steps() const { return steps; }
    /// A view by its label or, with `display`, by its name there.
    void set_view(Side side, const std::string& view, const std::string& display = "");
    void set_exposure(float stops) { exposure = stops; }
    ColorSettings get_settings(Side side) const;
    /// The rule that chose the input color space.
    const std::string& get_space_reason() const { return space_reason; }
    /// What the rule for files says of the image shown, chosen or not.
    const workflow::FileSpace& get_file_space() const { return file_space; }
    /// The configured conversions of the settings; the last good ones when these cannot be made.
    std::shared_ptr<const workflow::Conversion> get_conversion(Side side);

    // The window

    void set_layout(Layout wanted) { layout = wanted; }
    Layout get_layout() const { return layout; }
    /// Where the line of the wipe is: 0 at the left, 1 at the right.
    void set_wipe(double position);
    double get_wipe() const { return wipe; }
    /// Factor of the differences in the difference image.
    void set_difference_scale(float scale) { difference_scale = scale; }
    float get_difference_scale() const { return difference_scale; }
    Camera& get_camera() { return camera; }
    const Camera& get_camera() const { return camera; }

    // Configurations and their files

    /// Empty for the built-in one.
    void use_config(const std::string& path);
    void use_cdl_library(const std::string& path);
    /// Reads changed files again and takes over changes of the module, after waiting up to that time for a
    /// file to change. True when anything changed.
    bool follow_changes(std::chrono::milliseconds patience = {});
    /// Why changes of files are not noticed; empty when all are.
    const std::optional<diagnostics::Diagnostic>& get_watch_error() const { return watcher.get_error(); }

    /// The current errors: of the files that colors depend on, and `get_shown_errors`.
    diagnostics::Diagnostics get_errors() const;
    /// The errors of the conversions and of the image: something other than the settings is shown.
    diagnostics::Diagnostics get_shown_errors() const;
    /// The last successful operation, and the chosen names that had to be replaced.
    const std::string& get_note() const { return note; }

    workflow::LiveConfig& get_live_config() { return live_config; }
    const workflow::LiveConfig& get_live_config() const { return live_config; }

private:
    void take_space_of_image(const std::shared_ptr<const Image>& former);
    void take_space_of_file();
    /// Replaces names that no longer exist. Returns a text about each for the note.
    std::vector<std::string> use_existing_names();
    void set_note(const std::string& first, std::vector<std::string> others);
    void watch_files();
    using Error = std::optional<diagnostics::Diagnostic>;
    Error get_conversion_error(Side side) const;
    void take_existing_names(bool note_tells_why);
    /// False when something is not whole.
    bool reload_sources(const std::string& changed);

    /// What decides which conversion is configured.
    struct Key {
        unsigned int revision;
        std::string input_space;
        std::string inverse_view;
        std::string cdl;
        std::string view;
        bool takes_exposure;

        bool operator==(const Key& other) const;
    };
    struct ConfiguredConversion {
        std::optional<Key> key;
        std::shared_ptr<const workflow::Conversion> conversion; ///< The last one that could be configured.
        Error error;
    };
    Key make_key(Side side) const;
    workflow::ConversionRequest make_request() const;

    workflow::LiveConfig& live_config;
    FileWatcher watcher;
    std::vector<std::string> source_files; ///< Watched besides the images, sorted.
    unsigned int revision = 0;             ///< Of the live config, as last taken over.
    ImageList images;
    std::string input_space;
    std::string inverse_view; ///< Instead of the input space; empty for none.
    std::string space_reason;
    bool space_is_chosen = false;
    workflow::FileSpace file_space;
    std::string cdl;
    std::vector<workflow::ColorStep> steps;
    std::string views[SIDE_COUNT];
    float exposure = 0;
    ConfiguredConversion conversions[SIDE_COUNT];
    Layout layout = Layout::SINGLE;
    double wipe = 0.5;
    float difference_scale = 100;
    Camera camera;
    std::string note;
};

} // namespace viewer
