#include "workflow/session.h"

#include <algorithm>

#include "tests/workflow/workflow_fixture.h"
#include "workflow/published_names.h"

namespace {

using diagnostics::Code;
using testing::Contains;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using workflow::ConfigSource;
using workflow::Session;

using Sessions = WorkflowTest;

TEST_F(Sessions, UseTheBuiltInConfigWhereNothingNamesAnother) {
    workflow::SessionOptions options;
    options.no_preferences = true;
    const Session session(options);
    EXPECT_EQ(session.get_source().kind, ConfigSource::BUILTIN);
    EXPECT_EQ(session.get_config_name(), "the built-in config");
    EXPECT_THAT(workflow::get_published_spaces(), Contains(Field(&workflow::PublishedSpace::name, "sRGB")));
    EXPECT_THAT(session.get_load_diagnostics(), IsEmpty());
}

TEST_F(Sessions, UseTheConfigThatTheOptionsName) {
    const Session session(show_options());
    EXPECT_EQ(session.get_source().kind, ConfigSource::FILE);
    EXPECT_EQ(session.get_config_name(), "show.ocio");
    EXPECT_EQ(session.get_source().path, folder.file("show.ocio"));
    EXPECT_THAT(workflow::get_published_spaces(),
                Contains(Field(&workflow::PublishedSpace::name, "half_light")));
}

TEST_F(Sessions, FollowTheEnvironmentWhereTheOptionsNameNoConfig) {
    workflow::SessionOptions options = show_options();
    ocio.set(options.config_path);
    options.config_path.clear();
    const Session session(options);
    EXPECT_EQ(session.get_source().kind, ConfigSource::ENVIRONMENT);
    EXPECT_EQ(session.get_config_name(), "show.ocio");
}

TEST_F(Sessions, UseTheBuiltInConfigOnRequestThoughTheEnvironmentNamesAnother) {
    workflow::SessionOptions options = show_options();
    ocio.set(options.config_path);
    options.config_path.clear();
    options.builtin_only = true;
    const Session session(options);
    EXPECT_EQ(session.get_source().kind, ConfigSource::BUILTIN);
}

TEST_F(Sessions, FailWithTheFileThatCannotBeUsed) {
    workflow::SessionOptions options;
    options.no_preferences = true;
    options.config_path = folder.file("none.ocio");
    const diagnostics::Diagnostic missing = failure_of([&] { Session session(options); });
    EXPECT_EQ(missing.code, Code::CONFIG_MISSING);
    EXPECT_EQ(missing.file, options.config_path);

    const workflow::SessionOptions broken = options_for("no config at all\n", "broken.ocio");
    const diagnostics::Diagnostic invalid = failure_of([&] { Session session(broken); });
    EXPECT_EQ(invalid.code, Code::CONFIG_INVALID);
    EXPECT_EQ(invalid.file, broken.config_path);
}

TEST_F(Sessions, FollowOneAnotherAlsoAfterOneThatFailed) {
    for (int i = 0; i < 2; ++i) {
        const Session good(show_options());
        EXPECT_EQ(workflow::get_published_spaces().size(), 3u);
    }
    EXPECT_THROW(Session(options_for("no config at all\n", "broken.ocio")), workflow::ConfigFailure);
    const Session good(show_options());
    EXPECT_EQ(workflow::get_published_spaces().size(), 3u);
}

TEST_F(Sessions, HandEveryMessageToTheirOwner) {
    std::vector<std::string> messages;
    workflow::SessionOptions options = options_for("no config at all\n", "broken.ocio");
    options.on_log = [&](const std::string& message) { messages.push_back(message); };
    EXPECT_THROW(Session{options}, workflow::ConfigFailure);
    EXPECT_THAT(messages, Contains(HasSubstr("broken.ocio")));
}

TEST_F(Sessions, NameTheColorSpaceThatTheConfigPublishesForEachRole) {
    const Session session(show_options());
    const std::vector<workflow::PublishedRole> roles = workflow::get_published_roles();
    const auto find = [&](const std::string& name) {
        return *std::find_if(roles.begin(), roles.end(), [&](const auto& role) { return role.role == name; });
    };
    EXPECT_EQ(find("scene_linear").color_space, "lin");
    EXPECT_TRUE(find("scene_linear").is_in_config);
    EXPECT_EQ(find("texture_paint").color_space, "half_light");
    EXPECT_FALSE(find("color_picking").is_in_config);
}

} // namespace
