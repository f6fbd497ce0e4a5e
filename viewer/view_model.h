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
#include "workflow/live_config.h"

namespace viewer {

/// Everything that decides what the viewer shows, without a window and without OpenGL. What cannot be done
/// throws diagnostics::Failure, or, where nobody asked for it, becomes a fault to show; what was shown last
/// stays.
class ViewModel {
public:
    /// Which of two views.
    enum Side { FIRST, SECOND, SIDE_COUNT };

    explicit ViewModel(workflow::LiveConfig& host);

    // Images

    /// Refuses images with more pixels than that a side from now on, before their pixels are read.
    void set_max_side(int pixels) { images.set_max_side(pixels); }
    /// Lists files without reading them.
    void add_images(const std::vector<std::string>& paths);
    /// Shows the file, and lists it if it is new.
    void open(const std::string& path);
    /// Shows the next (+1) or an earlier (-1) listed image, round and round. One that cannot be read is
    /// passed on the way: it is a fault until the next one, and the image shown stays.
    void step_image(int by);
    const ImageList& get_images() const { return images; }
    /// Null until one was opened.
    const std::shared_ptr<const Image>& get_image() const { return images.get_image(); }

    // Colors, by the names of the module; names without a family and roles will do for spaces.

    void set_input_space(const std::string& name);
    void set_cdl(const std::string& name);
    void set_view(Side side, const std::string& label);
    void set_exposure(float stops) { exposure = stops; }
    ColorSettings get_settings(Side side) const;
    /// Why the input space is what it is.
    const std::string& get_space_reason() const { return space_reason; }
    /// The configured conversions of the settings; the last good ones when these cannot be made.
    std::shared_ptr<const workflow::Conversion> get_conversion(Side side);

    // The window

    void set_layout(Layout wanted) { layout = wanted; }
    Layout get_layout() const { return layout; }
    /// Where the line of the wipe is: 0 at the left, 1 at the right.
    void set_wipe(double position);
    double get_wipe() const { return wipe; }
    /// What errors are multiplied by in the image of differences.
    void set_difference_scale(float scale) { difference_scale = scale; }
    float get_difference_scale() const { return difference_scale; }
    Camera& get_camera() { return camera; }
    const Camera& get_camera() const { return camera; }

    // Configurations and their files

    /// Empty for the built-in one.
    void use_config(const std::string& path);
    void use_cdl_library(const std::string& path);
    /// Reads what changed on disk again, takes over what the module told its host, and waits so long for a
    /// change of a file. True when anything changed.
    bool follow_changes(std::chrono::milliseconds patience = {});
    /// Why changes of files go unnoticed; empty when none does.
    const std::string& get_watch_fault() const { return watcher.get_fault(); }

    /// What is wrong at the moment, in words.
    std::vector<std::string> get_faults() const;
    /// The last thing that went well, and which of the chosen names had to be replaced for it.
    const std::string& get_note() const { return note; }

    workflow::LiveConfig& get_host() { return host; }
    const workflow::LiveConfig& get_host() const { return host; }

private:
    void take_space_of_image(const std::shared_ptr<const Image>& former);
    void take_space_of_file();
    /// Replaces names that the module no longer has. "; ..." about each for the note.
    std::string use_existing_names();
    void watch_files();
    std::string get_conversion_fault(Side side) const;
    void take_existing_names(bool note_tells_why);
    /// False when something is not whole.
    bool reload_sources(const std::string& changed);

    /// What decides which conversion is configured.
    struct Key {
        unsigned int revision;
        std::string input_space;
        std::string cdl;
        std::string view;
        bool takes_exposure;

        bool operator==(const Key& other) const;
    };
    struct ConfiguredConversion {
        std::optional<Key> key;
        std::shared_ptr<const workflow::Conversion> conversion; ///< The last one that could be configured.
        std::string fault;
    };
    Key make_key(Side side) const;

    workflow::LiveConfig& host;
    FileWatcher watcher;
    std::vector<std::string> source_files; ///< Watched besides the images, sorted.
    unsigned int revision = 0;             ///< Of the host, as last taken over.
    ImageList images;
    std::string input_space;
    std::string space_reason;
    bool space_is_chosen = false;
    std::string cdl;
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
