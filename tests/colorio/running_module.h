#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/colorio/manager_fixture.h"

/// The whole module as a host runs it: `ColorIO::init` with the test's application, built-in configuration
/// active, start-up messages and events forgotten.
class RunningModule : public ManagerTest {
protected:
    void SetUp() override;

    /// Makes a configuration of that text the wanted one and has the module follow.
    void use_config(const std::string& config);
    /// Has the module go back to the built-in configuration.
    void use_builtin_config();
    /// Destroys the facade, as if it had never been made; its connections end with it.
    void forget_facade();
    /// Events raised on the facade since the last call.
    std::vector<std::string> take_events() { return events->take(); }

private:
    std::optional<EventRecorder> events;
};

// Lines of the host's log by level.
LogLine error(const std::string& text);
LogLine warning(const std::string& text);
LogLine information(const std::string& text);

/// A configuration of four color spaces without families: "lin" (scene_linear), "film", "video" and "data";
/// "film" is "lin" times 0.5, "video" is "lin" to the power of 1 / 2. Displays "Monitor" with the views
/// "Film" and "Video.v2", "Cinema" with the view "Film".
extern const char CONFIG_WITHOUT_FAMILIES[];
