#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"
#include "tests/colorio/manager_fixture.h"

// The log lines on the source of the config.

inline std::string not_found(const std::string& path) {
    return "Color Management: OCIO configuration file '" + path + "' not found.\n";
}

inline std::string falling_back_from(const std::string& path) {
    return "Color Management: OCIO configuration file '" + path +
           "' not found. Defaulting to Tavelion built-in configuration.\n";
}

inline std::string defaulting_to(const std::string& path) {
    return "Color Management: defaulting to configuration file '" + path +
           "' from environment variable OCIO.\n";
}

inline constexpr char INVALID[] = "Color Management: invalid OCIO configuration.\n";

// Three configurations that load and pass the check, distinguished by the name of their only color space.
inline const std::string FILM =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"scene_linear", "film"}});
inline const std::string VIDEO =
    config_text({{"", "video"}}, {{"Monitor", "Video", "video"}}, {{"scene_linear", "video"}});
inline const std::string STUDIO =
    config_text({{"", "studio"}}, {{"Monitor", "Studio", "studio"}}, {{"scene_linear", "studio"}});
// Loads, and fails the check.
inline const std::string ROLE_OF_UNKNOWN_SPACE =
    config_text({{"", "film"}}, {{"Monitor", "Film", "film"}}, {{"default", "nowhere"}});
// Does not load.
inline constexpr char NO_CONFIGURATION[] = "this: [is no configuration";

/// A started manager, its start-up messages and events forgotten.
class ManagerSources : public ManagerTest {
protected:
    ManagerSources() {
        take_log();
        events.take();
    }

    /// The user wants that file, and switches to it.
    void use_file(const std::string& path) {
        want_file(path);
        manager.use_file_config(true);
    }
    /// Sets the application's path and raises its event.
    void change_path(const std::string& path) {
        want_file(path);
        manager.update_file_config_path();
    }
    void use_file_and_forget(const std::string& path) {
        use_file(path);
        take_log();
        events.take();
    }
    std::vector<std::string> spaces() const { return strings(manager.get_color_space_names()); }

    ColorIOManager& manager = start_manager();
    EventRecorder events;
};
