#include "tests/workflow/workflow_fixture.h"

#include "tests/support/image_readers.h"
#include "tests/tool/configs.h"

WorkflowTest::WorkflowTest() {
    cache.set(folder.file("cache"));
    config.set(folder.file("config"));
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
}

WorkflowTest::~WorkflowTest() {
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

workflow::SessionOptions WorkflowTest::options_for(const std::string& text, const std::string& name) {
    workflow::SessionOptions options;
    options.config_path = folder.write(name, text);
    options.no_preferences = true;
    return options;
}

workflow::SessionOptions WorkflowTest::show_options() {
    return options_for(SHOW_CONFIG);
}

std::array<float, 4> WorkflowTest::convert(const workflow::Conversion& conversion, std::array<float, 4> pixel,
                                           float exposure) {
    conversion.apply(pixel.data(), 1, 1, exposure);
    return pixel;
}
