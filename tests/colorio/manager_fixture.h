#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "host/core/core_array.h"
#include "host/core/core_string.h"
#include "host/event/event_object.h"
#include "host/of/of_app.h"
#include "host/of/of_object_factory.h"
#include "tests/support/env_guard.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

class OfEnum;

/// A host application whose preferences and results are set by the test. Setting a preference
/// raises nothing; a test raises the event itself.
class ScriptedApp : public OfApp {
public:
    explicit ScriptedApp(const std::string& lut_folder) : lut_folder(lut_folder.c_str()) {}

    bool use_color_space_file = false;
    CoreString color_space_file_path;
    CoreString cdl_library_file_path;
    CoreString default_color_space_name = "linear";
    unsigned int use_color_space_by_extension_file = 0;
    CoreString color_space_by_extension_file_path;

    /// Folder that requests for a temporary folder are answered with.
    CoreString lut_folder;
    /// Replaces the result of a request, counted from 1, when set; `path` comes in as `lut_folder`.
    std::function<bool(unsigned int request, CoreString& path)> answer_folder_request;
    std::vector<std::string> requested_folders;

    OfEnum* get_enum(const char* name) { return factory.get_enum(name); }

    bool get_use_color_space_file() const override { return use_color_space_file; }
    const CoreString& get_color_space_file_path() const override { return color_space_file_path; }
    const CoreString& get_cdl_library_file_path() const override { return cdl_library_file_path; }
    const CoreString& get_default_color_space_name() const override { return default_color_space_name; }
    unsigned int get_use_color_space_by_extension_file() const override {
        return use_color_space_by_extension_file;
    }
    const CoreString& get_color_space_by_extension_file_path() const override {
        return color_space_by_extension_file_path;
    }
    OfObjectFactory& get_object_factory() override { return factory; }
    bool create_temp_folder(const CoreString& name, CoreString& path) override;

private:
    OfObjectFactory factory;
};

/// Names of the module's list events and the scene-linear event raised on the ColorIO instance, in order of
/// arrival since construction.
class EventRecorder : public EventObject {
public:
    EventRecorder();

    /// The names so far; recording goes on from none.
    std::vector<std::string> take();
    /// Called at each event, after it was recorded.
    std::function<void(const std::string& event)> on_event;

private:
    void record(AppBase& sender, const EventInfo& info, OfObject* object);

    std::vector<std::string> names;
};

inline constexpr char SCENE_LINEAR_EVENT[] = "EVT_ID_ROLE_SCENE_LINEAR_CHANGED";
inline constexpr char LUT_LIST_EVENT[] = "EVT_ID_COLORIO_MANAGER_LUT_LIST_CHANGED";
inline constexpr char CDL_LIST_EVENT[] = "EVT_ID_COLORIO_MANAGER_CDL_LIST_CHANGED";
inline constexpr char EXTENSION_EVENT[] = "EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED";

using LogLine = RecordingLog::Line;

/// OpenColorIO's own words, logged at `level`.
MATCHER_P(OcioExceptionAt, level, "") {
    const std::string prefix = "OCIO exception: ";
    return arg.level == static_cast<unsigned int>(level) && arg.text.compare(0, prefix.size(), prefix) == 0 &&
           arg.text.size() > prefix.size() && arg.text.back() == '\n';
}

inline std::string str(const CoreBasicString& text) {
    return std::string(text.view());
}
std::vector<std::string> strings(const CoreBasicArray<CoreString>& list);
std::vector<std::string> labels(const OfEnum* list);
std::vector<unsigned int> values(const OfEnum* list);

struct SpaceText {
    std::string family;
    std::string name;
};
struct ViewText {
    std::string display;
    std::string view;
    std::string color_space;
};
struct RoleText {
    std::string role;
    std::string color_space;
};
/// Text of a version 1 configuration with strict parsing.
std::string config_text(const std::vector<SpaceText>& spaces, const std::vector<ViewText>& views,
                        const std::vector<RoleText>& roles = {});

/// Gives each test a module as it is after loading: no singletons, strings at their initial values, no
/// variable of OpenColorIO in the environment.
class ManagerTest : public testing::Test {
protected:
    ManagerTest();
    ~ManagerTest() override;

    /// Starts the manager with `app`.
    ColorIOManager& start_manager();
    /// Writes a file below the test's folder and returns its path.
    std::string write_file(const std::string& name, const std::string& text) {
        return folder.write(name, text);
    }
    std::string path_of(const std::string& name) const { return folder.file(name); }
    /// Makes the file the application's config, without raising an event.
    void want_file(const std::string& path);
    /// The lines logged since the last call. The log listens to errors and warnings.
    std::vector<LogLine> take_log();

    EnvGuard ocio_variable{"OCIO"};
    TempDir folder;
    RecordingLog log{LOG_WARNING};
    ScriptedApp app{folder.get_path()};

private:
    EnvGuard active_displays{"OCIO_ACTIVE_DISPLAYS"};
    EnvGuard active_views{"OCIO_ACTIVE_VIEWS"};
    EnvGuard inactive_color_spaces{"OCIO_INACTIVE_COLORSPACES"};
};
