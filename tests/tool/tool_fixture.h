#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/env_guard.h"
#include "tests/support/temp_dir.h"
#include "tool/console.h"

/// What one run of the program did.
struct ToolRun {
    int code;
    std::string out;
    std::string err;

    friend std::ostream& operator<<(std::ostream& stream, const ToolRun& run) {
        return stream << "{exit code " << run.code << ", \"" << run.out << "\", \"" << run.err << "\"}";
    }
};

/// Runs the program's commands in this process, with a folder of the test's own for everything that is
/// written and no variable in the environment that the commands follow.
class ToolTest : public testing::Test {
protected:
    ToolTest() {
        cache.set(folder.file("cache"));
        config.set(folder.file("config"));
    }

    ToolRun run(const std::vector<std::string>& arguments, const tool::ConsoleTraits& traits = {});
    std::string path(const std::string& name) const { return folder.file(name); }
    /// Count of the entries in the test's folder, the cache not counted.
    size_t count_files() const;

    TempDir folder;
    EnvGuard ocio{"OCIO"};
    EnvGuard fast_path{"COLORIO_FAST_PATH"};

private:
    EnvGuard cache{"XDG_CACHE_HOME"};
    EnvGuard config{"XDG_CONFIG_HOME"};
    EnvGuard in_process{"COLORIO_READ_IN_PROCESS"};
    EnvGuard active_displays{"OCIO_ACTIVE_DISPLAYS"};
    EnvGuard active_views{"OCIO_ACTIVE_VIEWS"};
    EnvGuard inactive_color_spaces{"OCIO_INACTIVE_COLORSPACES"};
};

/// The run ended well and had nothing to say.
MATCHER(Succeeds, "") {
    *result_listener << "messages: " << arg.err;
    return arg.code == 0;
}
/// The run ended with `code` and a message that matches.
MATCHER_P2(FailsWith, code, message, "") {
    return testing::ExplainMatchResult(testing::Field("code", &ToolRun::code, code), arg, result_listener) &&
           testing::ExplainMatchResult(testing::Field("err", &ToolRun::err, message), arg, result_listener);
}
