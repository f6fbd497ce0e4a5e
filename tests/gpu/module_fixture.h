#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_converter.h"
#include "colorio/color_io_manager.h"
#include "standalone/standalone_app.h"
#include "tests/support/env_guard.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

/// One conversion of the module, ready to be run.
struct NamedConversion {
    std::string name; ///< For messages: "sRGB to linear".
    std::unique_ptr<ColorIOConverter> converter;
};

/// From one color space to another.
NamedConversion convert(const CoreString& source, const CoreString& destination);

/// The running module on the standalone application, with its files in a folder of the test.
class RunningModuleTest : public testing::Test {
protected:
    RunningModuleTest();
    ~RunningModuleTest() override;

    /// Has the module use a configuration file.
    void use_config(const std::string& path);
    /// The same; false when the module refuses it.
    bool try_config(const std::string& path);
    /// The warnings and errors since the last call, in one line; empty when there were none.
    std::string take_messages();
    /// Makes these the module's CDLs, besides "No CDL".
    void use_cdls(const std::vector<ColorIOManager::ColorDecisionListDef>& cdls);

    /// Every color space to scene-linear and back.
    std::vector<NamedConversion> get_spaces() const;
    /// Scene-linear through every view, and every color space through the default view.
    std::vector<NamedConversion> get_views() const;
    /// Every CDL applied, and undone.
    std::vector<NamedConversion> get_cdls() const;

    TempDir folder;

private:
    EnvGuard variable{"OCIO"};
    RecordingLog log{LOG_WARNING};
    StandaloneApp app{folder.get_path().c_str()};
};
