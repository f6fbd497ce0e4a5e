#pragma once

#include <array>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"
#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"
#include "workflow/conversion.h"
#include "workflow/session.h"

/// The library as another program uses it: without a command line, with a folder of the test's own for
/// everything that is written. Every test also shows that nothing is printed.
class WorkflowTest : public testing::Test {
protected:
    WorkflowTest();
    ~WorkflowTest() override;

    /// Options for the config `text` in a file of that name, and no preferences.
    workflow::SessionOptions options_for(const std::string& text, const std::string& name = "show.ocio");
    /// Options for SHOW_CONFIG.
    workflow::SessionOptions show_options();

    /// What the conversion makes of a pixel.
    static std::array<float, 4> convert(const workflow::Conversion& conversion, std::array<float, 4> pixel,
                                        float exposure = 0);

    TempDir folder;
    EnvGuard ocio{"OCIO"};

private:
    EnvGuard cache{"XDG_CACHE_HOME"};
    EnvGuard config{"XDG_CONFIG_HOME"};
};

/// The worst diagnostic of the Failure that `action` throws; fails the test when it throws none.
template <class Action>
diagnostics::Diagnostic failure_of(const Action& action) {
    try {
        action();
    } catch (const diagnostics::Failure& failure) {
        return failure.get_worst();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}
