// Errors that only the check of configs of version 2 finds, and files that only OpenColorIO 2 reads.

#include <nlohmann/json.hpp>

#include "tests/tool/configs.h"
#include "tests/tool/tool_fixture.h"

namespace {

using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

class CheckOfVersionTwo : public ToolTest {
protected:
    json check_json() {
        const ToolRun result = run({"check", "--config", path("show.ocio"), "--json"});
        EXPECT_EQ(result.code, 1) << result.out;
        return json::parse(result.out);
    }
};

TEST_F(CheckOfVersionTwo, NamesAPathWithAnUnsetContextVariable) {
    std::string config = SHOW_CONFIG;
    config.replace(config.find("version: 1"), 10, "version: 2");
    config.insert(config.find("  texture_paint"), "  default: lin\n");
    folder.write("show.ocio", config + "  - !<ColorSpace>\n    name: log\n"
                                       "    from_scene_reference: !<FileTransform> {src: $QB_TEST_UNSET}\n");
    const std::string cause = "the context variable 'QB_TEST_UNSET' in the path '$QB_TEST_UNSET' is not set";
    const json answer = check_json();
    const json& reason = answer.at("loaded") ? answer.at("failures").at(0).at("reason") : answer.at("reason");
    EXPECT_EQ(reason.at("code"), "config-variable");
    EXPECT_THAT(std::string(reason.at("message")), EndsWith(cause));
    EXPECT_EQ(reason.at("hint"), "set it in the environment or in the config");
}

TEST_F(CheckOfVersionTwo, SaysThatATransformFileIsTooNew) {
    folder.write("luts/log.ctf", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<ProcessList id=\"a\" version=\"99\">\n"
                                 "<Matrix inBitDepth=\"32f\" outBitDepth=\"32f\"><Array dim=\"3 3 3\">"
                                 "1 0 0 0 1 0 0 0 1</Array></Matrix></ProcessList>\n");
    folder.write("show.ocio", std::string(SHOW_CONFIG) +
                                  "  - !<ColorSpace>\n    name: log\n"
                                  "    from_reference: !<FileTransform> {src: log.ctf}\n");
    const json reason = check_json().at("failures").at(0).at("reason");
    EXPECT_EQ(reason.at("code"), "lut-damaged");
    EXPECT_THAT(std::string(reason.at("message")),
                HasSubstr("the file '" + path("luts/log.ctf") +
                          "' is of version 99, which needs a newer OpenColorIO"));
}

} // namespace
