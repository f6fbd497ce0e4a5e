#pragma once

#include <string>
#include <vector>

#include "colorio/color_io_manager.h"
#include "tests/colorio/manager_fixture.h"

inline constexpr unsigned int NO_POSITION = 0xFFFFFFFFu;

/// A started manager that makes configurations given as text active.
class ManagerNames : public ManagerTest {
protected:
    ManagerNames() { take_log(); }

    void publish(const std::vector<SpaceText>& spaces, const std::vector<ViewText>& views) {
        publish_text(config_text(spaces, views, {{"scene_linear", spaces[0].name}}));
    }
    void publish_text(const std::string& config) {
        want_file(write_file("config.ocio", config));
        manager.use_file_config(true);
        ASSERT_FALSE(manager.is_using_tavelion_config());
    }

    ColorIOManager& manager = start_manager();
};
