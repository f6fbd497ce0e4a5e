// What OpenColorIO reports by itself while the module runs.

#include <algorithm>
#include <string>
#include <vector>

#include <OpenColorIO/OpenColorIO.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_manager.h"
#include "host/event/event_ids.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// A version 2 configuration that OpenColorIO has something to say about whenever it checks it.
constexpr char REPORTED_CONFIG[] = R"(ocio_profile_version: 2
search_path: .
strictparsing: true
roles: {scene_linear: lin, default: lin}
file_rules:
  - !<Rule> {name: Default, colorspace: lin}
displays:
  Monitor:
    - !<View> {name: Film, colorspace: film}
inactive_colorspaces: [nowhere]
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: film}
)";

class LibraryMessages : public RunningModule {
protected:
    /// How often the report about this config was logged since the last call.
    size_t take_reports() {
        const std::vector<LogLine> lines = everything.get_lines();
        everything.clear();
        return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [](const LogLine& line) {
            return line.text.find("OpenColorIO: Inactive 'nowhere'") == 0 && line.text.back() == '\n' &&
                   line.level >= LOG_WARNING;
        }));
    }
    void tell(const CoreString& event) { app.raise_event(event); }

    RecordingLog everything;
};

TEST_F(LibraryMessages, GoToTheHostsLogOncePerLoad) {
    testing::internal::CaptureStderr();
    use_config(REPORTED_CONFIG);
    EXPECT_EQ(take_reports(), 1u) << "the file is read and checked several times";
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    EXPECT_EQ(take_reports(), 1u) << "the held file is parsed again";
    tell(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    EXPECT_EQ(take_reports(), 1u);
    ColorIO::load_config(nullptr);
    EXPECT_EQ(take_reports(), 1u);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
}

TEST_F(LibraryMessages, GoToTheHostsLogWhenTheCustomSpacesAreReplaced) {
    use_config(REPORTED_CONFIG);
    take_reports();
    ColorIOManager::get_instance()->set_tavelion_config(CoreVector<ColorIOManager::ColorSpaceDef>());
    EXPECT_EQ(take_reports(), 1u) << "the file is parsed again";
}

TEST_F(LibraryMessages, AreNotRepeatedByAConfigurationWithoutThem) {
    use_config(REPORTED_CONFIG);
    take_reports();
    use_builtin_config();
    EXPECT_EQ(take_reports(), 0u);
}

TEST_F(LibraryMessages, GoToStandardErrorAfterTheEnd) {
    use_config(REPORTED_CONFIG);
    const OCIO_NAMESPACE::ConstConfigRcPtr config = ColorIOManager::get_instance()->get_config();
    take_reports();
    ColorIO::destroy();
    testing::internal::CaptureStderr();
    config->createEditableCopy()->validate();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Inactive 'nowhere'"));
    EXPECT_EQ(take_reports(), 0u);
    EXPECT_TRUE(ColorIO::init(&app));
}

} // namespace
