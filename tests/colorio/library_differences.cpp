#include "tests/colorio/library_differences.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string_view>

#include "colorio/ocio/types.h"

namespace library_differences {

namespace {

constexpr std::string_view OCIO = "test_ocio";
constexpr std::string_view MODULE = "test_colorio";
constexpr std::string_view TOOL = "test_tool";
constexpr std::string_view TOOL_SETTINGS = "test_tool_settings";
constexpr std::string_view GPU = "test_gpu";
constexpr std::string_view VIEWER = "test_viewer";

/// Stands where 1.x needs no row.
constexpr const char* AS_2_1 = "as 2.1";

struct Difference {
    const char* subject;
    std::string_view program;
    const char* test;   ///< one of the program's that asks for it
    const char* of_1_x; ///< null where the test is not made for 1.x
    const char* of_2_x;
    const char* reason;
    const char* of_2_5 = nullptr; ///< where newer libraries differ from 2.1
};

constexpr const char* NO_PROGRAMS = "OpenColorIO shows no operations to translate";
constexpr const char* NEW_SPACE_NAMES =
    "OpenImageIO that comes with 2.5 reads the same marks of a file under other names";

constexpr Difference DIFFERENCES[] = {
    {"first display", OCIO, "ConfigDisplays.AreListedWithTheirViews", "another", "one",
     "1.x sorts displays by name, 2.x keeps the order of the file"},
    {"second display", OCIO, "ConfigDisplays.AreListedWithTheirViews", "one", "another",
     "1.x sorts displays by name, 2.x keeps the order of the file"},
    {"views under a list of active ones", OCIO, "ConfigDisplays.FollowTheListsOfActiveOnes", "a b c", "b a",
     "1.x only takes its default view from the list of active views"},
    {"a role of an unknown space", OCIO, "SanityCheck.RolesPointAtSpaces",
     "The role 'default' refers to a colorspace, 'nowhere', which is not defined.",
     "role 'default' refers to an unknown color space, 'nowhere'",
     "1.x names a missing color space in its own check only"},
    {"a role of no space", OCIO, "SanityCheck.RolesPointAtSpaces",
     "The role 'default' refers to a colorspace, '', which is not defined.",
     "role 'default' names no color space", "1.x names a missing color space in its own check only"},
    {"a role of a role", OCIO, "SanityCheck.ARoleDoesNotPointAtARole",
     "The role 'reference' refers to a colorspace, 'default', which is not defined.",
     "role 'reference' refers to an unknown color space, 'default'",
     "1.x names a missing color space in its own check only"},
    {"an allocation without a range", OCIO, "MixedShader.AnAllocationWithoutARangeIsRefused",
     "Max value equals min value", "spans no range", "1.x fits colors to the GPU with its own operation"},
    {"error of a correction's shader", MODULE, "HostShader.OfACdlNeedsNoTable", "2e-5", "5e-6",
     "1.x writes numbers with six digits"},
    {"why the library converts", MODULE, "Evaluation.IsTheLibrarysWithoutTheVectorCode",
     "OpenColorIO 1.1 shows no operations", "switched off", "1.x shows no operations to translate"},
    {"configuration without spaces", MODULE, "ManagerRoles.OfAFileWithoutSpacesAreTheDefaultName",
     "ocio_profile_version: 1\ncolorspaces: []\n",
     "ocio_profile_version: 2\nfile_rules:\n  - !<Rule> {name: Default, colorspace: nowhere}\ncolorspaces: "
     "[]\n",
     "2.x loads no version 1 configuration without spaces, 1.x none of version 2"},
    {"start under a malformed list in the environment", MODULE,
     "Boundary.MalformedListsInTheEnvironmentFailTheStartWhereTheyAreRead", AS_2_1, "succeeds",
     "newer libraries read the lists, and throw, as soon as a configuration is made", "fails"},
    {"a color alone behind a forward table", OCIO,
     "SingleColors.HaveTheBitsOfAnImageWhereOpenColorIOConverts", nullptr, "as in an image",
     "newer libraries leave rows of one pixel out of their SIMD code for tables", "rounded otherwise"},
    {"level of an inactive space that is not there", OCIO,
     "LibraryLog.GoesToTheFunctionWithoutMarksAndLineEnds", nullptr, "Warning",
     "newer versions only report it", "Info"},
    {"line of an inactive space that is not there", TOOL, "Check.ListsWhatTheColorLibraryReportsByItself",
     nullptr, "warning: Inactive 'nowhere'", "newer versions only report it", "note: Inactive 'nowhere'"},
    {"what converts pixels between built-in spaces", TOOL, "Explain.SaysWhichPathIsTaken",
     "converted by OpenColorIO because OpenColorIO 1.1 shows no operations", "converted by SIMD code (",
     NO_PROGRAMS},
    {"OCIO=ocio://default", TOOL, "List.ShowsAConfigurationThatTheColorLibraryHoldsOrWhyItHoldsNone", AS_2_1,
     "cannot load the config 'ocio://default', named by the environment variable OCIO: ",
     "older libraries hold no configurations", "ACES 2.0 - SDR 100 nits (Rec.709)"},
    {"--config ocio://default", TOOL, "List.TakesAConfigInsideOpenColorIOOrSaysThatThereIsNone", AS_2_1,
     "cannot load the config 'ocio://default': ocio://default is a config inside OpenColorIO and needs a "
     "newer ",
     "older libraries hold no configurations", "ACES 2.0 - SDR 100 nits (Rec.709)"},
    {"sRGB in an image file", TOOL, "ConvertKeeps.TheNameOfTheNewColorSpaceInTheFile", AS_2_1, "sRGB",
     NEW_SPACE_NAMES, "srgb_rec709_scene"},
    {"linear in an image file", TOOL, "ConvertKeeps.TheNameOfTheNewColorSpaceInTheFile", AS_2_1, "Linear",
     NEW_SPACE_NAMES, "lin_rec709_scene"},
};

constexpr const char* NO_INVERSE_VIEWS = "OpenColorIO cannot invert views";
constexpr const char* NO_VERSION_2 = "OpenColorIO knows no version 2 configurations";

constexpr const char* NO_OPERATIONS = "OpenColorIO shows no operations";
constexpr const char* NO_CUBES_BACKWARDS = "OpenColorIO takes no cube backwards, as the sample has it";
constexpr const char* NO_BUILTIN_CONFIGS = "this OpenColorIO has no built-in configs";

enum Library : unsigned { OF_1_X = 1, OF_2_1 = 2, OF_2_5 = 4 };

/// Tests that cannot apply to some libraries.
constexpr struct {
    std::string_view program;
    const char* test;
    const char* reason;
    unsigned libraries = OF_1_X;
} LEFT_OUT[] = {
    {OCIO, "Config.AnImpossibleFileRuleIsRefused", NO_VERSION_2},
    {OCIO, "ConfigSpaces.VersionTwoPublishesTheActiveOnes", NO_VERSION_2},
    {OCIO, "SharedViews.AreListedWithTheOthers", NO_VERSION_2},
    {OCIO, "SharedViews.AreListedAtOnceAsOneByOne", NO_VERSION_2},
    {OCIO, "SharedViews.ShowTheSameSpacesWhenTheNamesAreKnown", NO_VERSION_2},
    {OCIO, "SharedViews.ShowTheirOwnSpaceOrTheOneNamedLikeTheDisplay", NO_VERSION_2},
    {OCIO, "SharedViews.ShowNothingWithoutADisplay", NO_VERSION_2},
    {OCIO, "MixedShader.LinearLightWithoutAnAllocationIsSpacedByStopsFromBlackUp", NO_VERSION_2},
    {OCIO, "MixedShader.AStatedAllocationHolds", NO_VERSION_2},
    {OCIO, "Processors.NamedTransformsCountAsKnownUnderLaxParsing", NO_VERSION_2},
    {OCIO, "SanityCheck.VersionTwoIsJudgedByTheLibrary", NO_VERSION_2},
    {OCIO, "SanityCheck.VersionTwoNeedsNoSearchPathEither", NO_VERSION_2},
    {OCIO, "SanityCheck.AFailedConfigurationGivesItsReasonEveryTime", NO_VERSION_2},
    {MODULE, "ManagerSceneLinear.ThatCannotBeMadeBecauseAnAliasHasItsNameIsNoReasonToFail", NO_VERSION_2},
    {MODULE, "ManagerEnumerations.InactiveSpacesOfAVersion2ConfigurationAreNotPublished", NO_VERSION_2},
    {MODULE, "Evaluation.OfABuiltinConversionIsThatOfItsTable", NO_PROGRAMS},
    {MODULE, "Evaluation.KeepsToTheSwitchAsItWasWhenTheConverterWasConfigured", NO_PROGRAMS},
    {TOOL, "Check.ListsWhatTheColorLibraryReportsByItself", NO_VERSION_2},
    {TOOL, "Explain.ShowsTheOperationsAndWhatTheyAreSimplifiedTo", NO_OPERATIONS},
    {TOOL, "Explain.ShowsAPixelAfterEachOperation", NO_OPERATIONS},
    {TOOL, "Explain.AnswersJson", NO_OPERATIONS},
    {TOOL, "Explain.ShowsNoStepsWhereThereAreNone", NO_OPERATIONS},
    {TOOL, "Explain.SaysWhenOperationsAreSimplifiedToAsMany", NO_OPERATIONS},
    {TOOL_SETTINGS, "OwnCdls.AreRefusedWhenTheLibraryCannotReadThem",
     "with 1.1 color corrections are parsed by this project, in every encoding that it knows"},
    {VIEWER, "ModelThatFollowsChanges.ShowsALutWhoseFolderIsMadeLater",
     "OpenColorIO remembers for the life of the process that a file is missing"},
    {VIEWER, "ModelThatFollowsChanges.ReadsAConfigurationOfTheLibraryItselfAgain", NO_BUILTIN_CONFIGS,
     OF_1_X | OF_2_1},
    {TOOL, "Bake.LeadsBackFromAView", NO_INVERSE_VIEWS},
    {VIEWER, "ModelOfAViewer.InvertsTheViewThatAnImageWasMadeFor", NO_INVERSE_VIEWS},
    {VIEWER, "ModelOfAViewer.NoLongerInvertsAViewThatTheConfigLacks", NO_INVERSE_VIEWS},
    {VIEWER, "ModelOfAViewer.InvertsAViewForOneImage", NO_INVERSE_VIEWS},
    {VIEWER, "CommandView.InvertsAView", NO_INVERSE_VIEWS},
    {OCIO, "BuiltinConfigs.HaveADefault", NO_BUILTIN_CONFIGS, OF_2_1},
    {OCIO, "BuiltinConfigs.ShowAcesTwoThroughOneTable", NO_BUILTIN_CONFIGS, OF_2_1},
    {GPU, "ShaderTextTest.OfAVersion1ConfigurationIsValidInBothDialects", NO_CUBES_BACKWARDS},
    {GPU, "ShaderTextTest.OfAVersion2ConfigurationIsValidInBothDialects", NO_VERSION_2},
    {GPU, "ShaderOnGpu.ShowsTheSpacesOfAVersion1ConfigurationAsTheCpuConvertsThem", NO_CUBES_BACKWARDS},
    {GPU, "ShaderOnGpu.ShowsTheSpacesOfAVersion2ConfigurationAsTheCpuConvertsThem", NO_VERSION_2},
    {GPU, "ShaderOnGpu.ShowsTheViewsOfAVersion2ConfigurationAsTheCpuConvertsThem", NO_VERSION_2},
    {GPU, "WholeConfigOnGpu.ShowsWhatTheCpuConverts",
     "the shaders are the library's own, where the logarithm of nothing is infinite and a table is "
     "interpolated of "
     "which the CPU takes the nearest entry"},
    {MODULE, "HostShader.IsNotMadeWhenTheColorLibraryThrowsAndTheCallerHears",
     "OpenColorIO refuses at once to convert what it can write no shader for"},
};

Library get_library() {
    const std::string version = ocio::get_version();
    return version.rfind("1.", 0) == 0 ? OF_1_X : version.rfind("2.1.", 0) == 0 ? OF_2_1 : OF_2_5;
}

/// "Shaders.Run" for "Dialects/Shaders.Run/Core": a row holds for every parameter.
std::string full_name(const testing::TestInfo& test) {
    const std::string suite = test.test_suite_name(), name = test.name();
    return suite.substr(suite.rfind('/') + 1) + "." + name.substr(0, name.find('/'));
}

/// The tests that have asked for a row.
std::set<std::string>& tests_that_asked() {
    static std::set<std::string> tests;
    return tests;
}

std::string note_running_test() {
    const std::string test = full_name(*testing::UnitTest::GetInstance()->current_test_info());
    tests_that_asked().insert(test);
    return test;
}

/// Whether the test is in this program, and whether it runs this time.
struct Place {
    bool in_program;
    bool runs;
};

Place find_test(std::string_view name) {
    const testing::UnitTest& program = *testing::UnitTest::GetInstance();
    for (int i = 0; i < program.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *program.GetTestSuite(i);
        for (int k = 0; k < suite.total_test_count(); ++k)
            if (full_name(*suite.GetTestInfo(k)) == name)
                return {true, suite.GetTestInfo(k)->should_run() && suite.GetTestInfo(k)->result()->Passed()};
    }
    return {false, false};
}

/// Unused rows are errors.
class RowsAreNeeded : public testing::Environment {
public:
    void TearDown() override {
        for (const Difference& row : DIFFERENCES) {
            EXPECT_STRNE(row.of_1_x, row.of_2_x) << row.subject;
            EXPECT_STRNE(row.of_2_5, row.of_2_x) << row.subject;
            if (row.of_1_x || get_library() != OF_1_X)
                expect_asked(row.program, row.test);
        }
        for (const auto& row : LEFT_OUT)
            if (row.libraries & OF_1_X || get_library() != OF_1_X)
                expect_asked(row.program, row.test);
    }

private:
    /// Each row belongs to one of the programs that share the table.
    static void expect_asked(std::string_view program, const char* test) {
        if (program != QB_TEST_PROGRAM)
            return;
        const Place place = find_test(test);
        EXPECT_TRUE(place.in_program) << "the table of library differences names " << test;
        if (place.runs) {
            EXPECT_EQ(tests_that_asked().count(test), 1u) << test << " does not ask for its row";
        }
    }
};

const auto* const rows_are_needed = testing::AddGlobalTestEnvironment(new RowsAreNeeded);

} // namespace

const char* expected(const std::string& subject) {
    note_running_test();
    const auto* row = std::find_if(std::begin(DIFFERENCES), std::end(DIFFERENCES),
                                   [&](const Difference& row) { return row.subject == subject; });
    if (row == std::end(DIFFERENCES))
        throw std::out_of_range("the table of library differences does not name '" + subject + "'");
    const Library library = get_library();
    if (library == OF_1_X && row->of_1_x != AS_2_1)
        return row->of_1_x;
    return library == OF_2_5 && row->of_2_5 ? row->of_2_5 : row->of_2_x;
}

std::string reason_to_skip() {
    const std::string test = note_running_test();
    const auto* row = std::find_if(std::begin(LEFT_OUT), std::end(LEFT_OUT),
                                   [&](const auto& row) { return row.test == test; });
    if (row == std::end(LEFT_OUT))
        throw std::out_of_range("the table of library differences does not name " + test);
    return row->libraries & get_library() ? row->reason : "";
}

} // namespace library_differences
