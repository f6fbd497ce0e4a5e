#include "workflow/session.h"

#include <algorithm>

#include "tests/workflow/workflow_fixture.h"
#include "workflow/context_conversion.h"
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

/// The LUT of "graded" is named by a variable: it doubles or halves.
class Contexts : public WorkflowTest {
protected:
    Contexts() {
        write_lut("double.spi1d", "2");
        write_lut("half.spi1d", "0.5");
        options = options_for(R"(ocio_profile_version: 1
search_path: .
roles: {scene_linear: lin, default: lin}
displays: {Monitor: [!<View> {name: Film, colorspace: lin}]}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace> {name: graded, from_reference: !<FileTransform> {src: "${SHOT}.spi1d", interpolation: linear}}
)");
        options.context = {"SHOT=double"};
    }

    void write_lut(const std::string& name, const std::string& last) const {
        folder.write(name, "Version 1\nFrom 0 1\nLength 2\nComponents 1\n{\n0\n" + last + "\n}\n");
    }

    static float convert_gray(const Session& session) {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = "graded";
        return convert(workflow::Conversion(session, request), {0.25f, 0.25f, 0.25f, 1})[0];
    }

    workflow::SessionOptions options;
};

TEST_F(Contexts, MayChangeWhileASessionIsOpen) {
    Session session(options);
    EXPECT_FLOAT_EQ(convert_gray(session), 0.5f);
    EXPECT_THAT(session.use_context({"SHOT=half"}), IsEmpty());
    EXPECT_FLOAT_EQ(convert_gray(session), 0.125f);
    EXPECT_THAT(session.get_context(), testing::ElementsAre("SHOT=half"));
}

TEST_F(Contexts, MayBeThoseOfASingleConversion) {
    Session session(options);
    workflow::ConversionRequest request;
    request.from = "lin";
    request.to = "graded";
    const workflow::Conversion halving = workflow::make_conversion(session, request, {"SHOT=half"});
    EXPECT_FLOAT_EQ(convert(halving, {0.25f, 0.25f, 0.25f, 1})[0], 0.125f);
    EXPECT_FLOAT_EQ(convert_gray(session), 0.5f) << "the session keeps its own";
    EXPECT_FLOAT_EQ(convert(halving, {0.25f, 0.25f, 0.25f, 1})[0], 0.125f);
    const workflow::Conversion doubling = workflow::make_conversion(session, request, {});
    EXPECT_FLOAT_EQ(convert(doubling, {0.25f, 0.25f, 0.25f, 1})[0], 0.5f);

    EXPECT_EQ(failure_of([&] { workflow::make_conversion(session, request, {"SHOT=none"}); }).code,
              Code::LUT_MISSING);
    EXPECT_FLOAT_EQ(convert_gray(session), 0.5f) << "the session keeps its own";
}

TEST_F(Contexts, OfWhichTheConfigUsesNothingAreWarnings) {
    Session session(options);
    EXPECT_THAT(session.use_context({"SHOT=half", "TAKE=3"}),
                testing::ElementsAre(Field(&diagnostics::Diagnostic::subject, "TAKE")));
    EXPECT_FLOAT_EQ(convert_gray(session), 0.125f);
}

TEST_F(Contexts, ThatCannotBeUsedChangeNothing) {
    Session session(options);
    EXPECT_EQ(failure_of([&] { session.use_context({"SHOT"}); }).code, Code::USAGE);
    EXPECT_FLOAT_EQ(convert_gray(session), 0.5f);
    folder.write("show.ocio", "no config at all\n");
    EXPECT_EQ(failure_of([&] { session.use_context({"SHOT=half"}); }).code, Code::CONFIG_INVALID);
    EXPECT_THAT(session.get_context(), testing::ElementsAre("SHOT=double"));
    EXPECT_FLOAT_EQ(convert_gray(session), 0.5f);
}

TEST_F(Contexts, AreOfNoUseToTheBuiltInConfig) {
    options.builtin_only = true;
    options.context.clear();
    Session session(options);
    EXPECT_EQ(session.use_context({"SHOT=half"}).size(), 1u);
}

} // namespace
