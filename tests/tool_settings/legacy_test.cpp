#include "tests/tool/configs.h"
#include "tests/tool_settings/settings_fixture.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

class Legacy : public SettingsTest {
protected:
    json ask(const std::string& name, const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"legacy", name};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return print_json(arguments);
    }
};

TEST_F(Legacy, AnswersForAFormerBuiltinSpace) {
    EXPECT_EQ(ask("Tavelion|sRGB"),
              json::parse(R"({"name": "Tavelion|sRGB", "legacy": true, "color_space": "Tavelion|sRGB",
                              "preferences_view": "Tavelion.sRGB", "widget_view": ""})"));
    EXPECT_EQ(ask("linear"), json::parse(R"({"name": "linear", "legacy": true,
        "color_space": "Tavelion|linear", "preferences_view": "Tavelion.linear",
        "widget_view": "Tavelion.linear"})"));
}

TEST_F(Legacy, AnswersNothingForOtherNames) {
    EXPECT_EQ(ask("Film"), json::parse(R"({"name": "Film", "legacy": false, "color_space": "",
                                           "preferences_view": "", "widget_view": ""})"));
    EXPECT_EQ(print({"legacy", "Film"}), "Film\n"
                                         "former built-in color space         no\n"
                                         "as a color space                    (none)\n"
                                         "as a view saved in the preferences  (none)\n"
                                         "as a view saved by a widget         (none)\n");
}

TEST_F(Legacy, FollowsTheConfiguration) {
    folder.write("show.ocio", SHOW_CONFIG);
    const json answer = ask("ops|warm", {"--config", path("show.ocio")});
    EXPECT_EQ(answer.at("legacy"), false);
    EXPECT_EQ(answer.at("preferences_view"), "Monitor.Warm");
    EXPECT_EQ(answer.at("widget_view"), "");
}

} // namespace
