// What the tool makes of the parts that only version 2 configs have, shown on the sample config.

#include "tests/tool/v2/version_two_fixture.h"

namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using VersionTwo = VersionTwoTest;

TEST_F(VersionTwo, SpacesSayWhatTheyAre) {
    const json answer = list_json();
    const auto spaces = by("name", answer.at("spaces"));
    const json& monitor = spaces.at("Monitor");
    EXPECT_EQ(monitor.at("reference"), "display");
    EXPECT_EQ(monitor.at("encoding"), "sdr-video");
    EXPECT_EQ(monitor.at("categories"), json({"display", "file-io"}));
    EXPECT_EQ(monitor.at("aliases"), json({"screen", "gamma 2.2 monitor"}));
    EXPECT_EQ(monitor.at("description"), "A power of 2.2");
    EXPECT_EQ(spaces.at("linear").at("reference"), "scene");
    EXPECT_EQ(spaces.at("linear").at("data"), false);
    EXPECT_EQ(spaces.at("raw").at("data"), true);
    EXPECT_EQ(spaces.count("unpublished"), 0u);
}

TEST_F(VersionTwo, InactiveSpacesAreListedApart) {
    const auto inactive = by("name", list_json().at("inactive_spaces"));
    EXPECT_EQ(inactive.size(), 2u);
    EXPECT_EQ(inactive.at("unpublished").at("family"), "Old");
    EXPECT_EQ(inactive.at("unpublished").at("aliases"), json({"old scan"}));
    EXPECT_EQ(inactive.at("xyz").at("reference"), "display");
    EXPECT_FALSE(inactive.at("xyz").contains("position")) << "the module does not publish it";
}

TEST_F(VersionTwo, TablesOfSpacesCountInactiveOnesAndListThemOnRequest) {
    const ToolRun brief = run_on_sample({"list", "spaces"});
    EXPECT_THAT(brief.out,
                AllOf(HasSubstr("kind"), HasSubstr("display-referred"), HasSubstr("scene-referred, data"),
                      HasSubstr("gamma 2.2 monitor"), Not(HasSubstr("unpublished")),
                      HasSubstr("Inactive: 2 color spaces; --inactive lists them.\n")));
    const ToolRun whole = run_on_sample({"list", "spaces", "--inactive"});
    EXPECT_THAT(whole.out, AllOf(HasSubstr("inactive color space"), HasSubstr("unpublished"),
                                 HasSubstr("xyz"), Not(HasSubstr("--inactive"))));
}

TEST_F(VersionTwo, ViewsSayWhatLeadsToThem) {
    const auto views = by("label", list_json().at("views"));
    const json& shot = views.at("Projector 2.6.Shot");
    EXPECT_EQ(shot.at("display"), "Projector 2.6");
    EXPECT_EQ(shot.at("view"), "Shot");
    EXPECT_EQ(shot.at("color_space"), "Display|Projector 2.6");
    EXPECT_EQ(shot.at("color_space_published"), true);
    EXPECT_EQ(shot.at("view_transform"), "filmic");
    EXPECT_EQ(shot.at("looks"), "shot grade");
    EXPECT_EQ(shot.at("shared"), true);
    EXPECT_EQ(views.at("Monitor.Plain").at("shared"), false);
    EXPECT_EQ(views.at("Monitor.Film").at("description"), "With a shoulder");
}

TEST_F(VersionTwo, ViewsOfWhatIsNotPublishedSaySo) {
    const auto views = by("label", list_json().at("views"));
    EXPECT_EQ(views.at("Monitor.Hidden").at("color_space"), "Old|unpublished");
    EXPECT_EQ(views.at("Monitor.Hidden").at("color_space_published"), false);
    EXPECT_EQ(views.at("Monitor.Gamma only").at("color_space"), "");
    EXPECT_EQ(views.at("Monitor.Gamma only").at("named_transform"), "gamma");
    EXPECT_THAT(run_on_sample({"list", "views"}).out,
                AllOf(HasSubstr("Old|unpublished (not published)"), HasSubstr("named transform"),
                      HasSubstr("view transform"), HasSubstr("looks"), HasSubstr("shared")));
}

TEST_F(VersionTwo, NamedTransformsAreATopic) {
    const json list = list_json().at("named_transforms");
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list[0], json({{"name", "gamma"},
                             {"family", "Utility"},
                             {"active", true},
                             {"forward", false},
                             {"inverse", true},
                             {"encoding", "sdr-video"},
                             {"categories", {"file-io"}},
                             {"aliases", {"curve only"}},
                             {"description", "A curve without a change of primaries"}}));
    EXPECT_EQ(list[1].at("name"), "exposure up");
    EXPECT_THAT(
        run_on_sample({"list", "named-transforms"}).out,
        AllOf(HasSubstr("gamma"), HasSubstr("inverse"), HasSubstr("curve only"), HasSubstr("exposure up")));
    EXPECT_THAT(run_on_sample({"list"}).out, HasSubstr("named transform  "));
}

TEST_F(VersionTwo, TablesHaveNoEmptyColumns) {
    const ToolRun builtin = run({"list"});
    EXPECT_THAT(builtin.out, AllOf(Not(HasSubstr("encoding")), Not(HasSubstr("looks")),
                                   Not(HasSubstr("kind")), Not(HasSubstr("named transform"))));
    EXPECT_THAT(run({"list", "named-transforms"}).out, HasSubstr("No named transforms."));
}

TEST_F(VersionTwo, InactiveNamedTransformsAreMarked) {
    EnvGuard inactive("OCIO_INACTIVE_COLORSPACES", "gamma");
    EXPECT_THAT(run_on_sample({"list", "named-transforms"}).out,
                AllOf(Not(HasSubstr("curve only")), HasSubstr("Inactive: 1 named transform; --inactive")));
    EXPECT_THAT(run_on_sample({"list", "named-transforms", "--inactive"}).out, HasSubstr("curve only"));
    EXPECT_EQ(list_json().at("named_transforms").at(0).at("active"), false);
}

TEST_F(VersionTwo, HiddenViewsAreListedOnRequest) {
    EnvGuard active("OCIO_ACTIVE_DISPLAYS", "Monitor");
    const json answer = list_json();
    const auto hidden = by("label", answer.at("inactive_views"));
    EXPECT_EQ(hidden.size(), 4u);
    EXPECT_EQ(hidden.at("Projector 2.6.Film").at("view_transform"), "filmic");
    EXPECT_THAT(run_on_sample({"list", "views"}).out,
                AllOf(Not(HasSubstr("Projector 2.6.Film")), HasSubstr("Inactive: 4 views; --inactive")));
    EXPECT_THAT(run_on_sample({"list", "views", "--inactive"}).out, HasSubstr("Projector 2.6.Film"));
    EXPECT_THAT(run_on_sample({"explain", "linear", "--view", "Projector 2.6.Film"}),
                FailsWith(1, HasSubstr("the view 'Projector 2.6.Film' of config.ocio is inactive")));
}

TEST_F(VersionTwo, CheckTriesEverything) {
    const ToolRun result = run_on_sample({"check", "--json"});
    EXPECT_THAT(result, Succeeds());
    const json answer = json::parse(result.out);
    EXPECT_EQ(answer.at("spaces_tried"), 7);
    EXPECT_EQ(answer.at("views_tried"), 13);
    EXPECT_EQ(answer.at("views_with_view_transform"), 7);
    EXPECT_EQ(answer.at("views_with_looks"), 4);
    EXPECT_EQ(answer.at("views_with_named_transform"), 1);
    EXPECT_EQ(answer.at("named_transforms_tried"), 2);
    EXPECT_EQ(answer.at("inactive_spaces_tried"), 2);
    EXPECT_EQ(answer.at("looks_tried"), 2);
    EXPECT_EQ(answer.at("view_transforms_tried"), 2);
    EXPECT_EQ(answer.at("failures"), json::array());
    EXPECT_EQ(answer.at("notes"), json::array());
    EXPECT_THAT(
        run_on_sample({"check"}).out,
        HasSubstr("Views: 7 with a view transform, 4 with looks, 1 showing a named transform.\n"
                  "Also tried: 2 named transforms, 2 inactive color spaces, 2 looks, 2 view transforms. "
                  "Notes: none.\n"));
}

constexpr char FAULTY_CONFIG[] = R"(ocio_profile_version: 2.1
search_path: luts
roles: {default: lin, scene_linear: lin}
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  Monitor:
    - !<View> {name: Film, view_transform: lost film, display_colorspace: screen, looks: warm}
    - !<View> {name: Plain, colorspace: lin}
inactive_colorspaces: [lost space]
looks:
  - !<Look> {name: warm, process_space: lin, transform: !<CDLTransform> {slope: [2, 1, 1]}}
  - !<Look> {name: lost look, process_space: lin, transform: !<FileTransform> {src: look.cc}}
view_transforms:
  - !<ViewTransform>
    name: lost film
    from_scene_reference: !<FileTransform> {src: film.spi1d}
display_colorspaces:
  - !<ColorSpace> {name: screen}
colorspaces:
  - !<ColorSpace> {name: lin}
  - !<ColorSpace>
    name: lost space
    to_scene_reference: !<FileTransform> {src: space.spi1d}
named_transforms:
  - !<NamedTransform>
    name: lost curve
    transform: !<FileTransform> {src: curve.spi1d}
)";

TEST_F(VersionTwo, CheckTellsFailuresFromWhatNobodyUses) {
    folder.write("show.ocio", FAULTY_CONFIG);
    const ToolRun result = run({"check", "--json", "--config", path("show.ocio")});
    EXPECT_EQ(result.code, 1);
    const json answer = json::parse(result.out);
    const auto failures = by("name", answer.at("failures"));
    EXPECT_EQ(failures.at("Monitor.Film").at("what"), "view");
    EXPECT_EQ(failures.at("Monitor.Film").at("path"), "the view transform 'lost film' and the looks 'warm'");
    EXPECT_EQ(failures.at("lost curve").at("what"), "named transform");
    EXPECT_EQ(failures.at("lost curve").at("directions"), json({"forward"}));
    EXPECT_EQ(failures.count("lost space"), 0u);
    const auto notices = by("name", answer.at("notes"));
    EXPECT_EQ(notices.size(), 3u);
    EXPECT_EQ(notices.at("lost space").at("what"), "inactive color space");
    EXPECT_EQ(notices.at("lost space").at("reason").at("code"), "lut-missing");
    EXPECT_EQ(notices.at("lost space").at("directions"), json({"to lin", "from lin"}));
    EXPECT_EQ(notices.at("lost look").at("what"), "look");
    EXPECT_EQ(notices.at("lost film").at("what"), "view transform");
}

TEST_F(VersionTwo, CheckSaysItInWords) {
    folder.write("show.ocio", FAULTY_CONFIG);
    EXPECT_THAT(
        run({"check", "--config", path("show.ocio")}).out,
        AllOf(HasSubstr("failed: view 'Monitor.Film', through the view transform 'lost film' and the looks "
                        "'warm': the file 'film.spi1d' is missing"),
              HasSubstr("failed: named transform 'lost curve', forward: the file 'curve.spi1d'"),
              HasSubstr("note: inactive color space 'lost space', to lin and from lin: "),
              HasSubstr("note: look 'lost look': the file 'look.cc' is missing"),
              HasSubstr("note: view transform 'lost film': "), HasSubstr("Notes: 3.")));
}

TEST_F(VersionTwo, NoticesAloneAreNoFailure) {
    std::string config = FAULTY_CONFIG;
    config.replace(config.find("lost film, display_colorspace"), 9, "good film");
    config.insert(
        config.find("  - !<ViewTransform>\n    name: lost film"),
        "  - !<ViewTransform>\n    name: good film\n    from_scene_reference: !<MatrixTransform> {}\n");
    config.erase(config.find("named_transforms:"));
    folder.write("show.ocio", config);
    const ToolRun result = run({"check", "--config", path("show.ocio")});
    EXPECT_THAT(result, Succeeds());
    EXPECT_THAT(result.out, AllOf(HasSubstr("Failures: none."), HasSubstr("Notes: 3.")));
}

/// The default view transform is not the first.
constexpr char DEFAULT_VIEW_TRANSFORM[] = R"(ocio_profile_version: 2
environment: {SHOT: a}
search_path: luts
roles: {default: lin, scene_linear: lin, cie_xyz_d65_interchange: lin}
displays:
  D: [!<View> {name: V, view_transform: half, display_colorspace: disp}]
view_transforms:
  - !<ViewTransform>
    name: quarter
    from_scene_reference: !<MatrixTransform> {matrix: [0.25, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, 0.25, 0, 0, 0, 0, 1]}
  - !<ViewTransform>
    name: half
    from_scene_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
default_view_transform: half
display_colorspaces:
  - !<ColorSpace> {name: disp}
colorspaces:
  - !<ColorSpace> {name: lin, encoding: scene-linear}
)";

TEST_F(VersionTwo, DisplayReferredSpacesAreReachedByTheDefaultViewTransform) {
    folder.write("show.ocio", DEFAULT_VIEW_TRANSFORM);
    const auto convert = [&](const std::string& from, const std::string& to,
                             const std::vector<std::string>& options) {
        std::vector<std::string> arguments = {"explain", from,     to,         "--pixel",
                                              "1,1,1",   "--json", "--config", path("show.ocio")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const ToolRun result = run(arguments);
        EXPECT_THAT(result, Succeeds());
        return json::parse(result.out).at("parts").back().at("steps").back().at("pixel").at(0).get<double>();
    };
    for (const std::vector<std::string>& options :
         {std::vector<std::string>(), std::vector<std::string>{"--context", "SHOT=b"}}) {
        EXPECT_NEAR(convert("lin", "disp", options), 0.5, 1e-6);
        EXPECT_NEAR(convert("disp", "lin", options), 2.0, 1e-6);
    }
}

} // namespace
