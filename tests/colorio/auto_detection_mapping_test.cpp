#include "colorio/color_io_auto_detection.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "host/event/event_ids.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A detector that follows the application's mapping file, beside a running module.
class MappingFile : public RunningModule {
protected:
    using Row = std::vector<std::string>;

    void SetUp() override {
        RunningModule::SetUp();
        ASSERT_NE(ColorIOAutoDetection::get_instance(), nullptr);
        detection = ColorIOAutoDetection::get_instance();
    }

    /// Writes a mapping file and makes it the application's, without telling the module.
    std::string point_application_at(const std::string& yaml) {
        std::string path = write_file("mapping.yaml", yaml);
        want_mapping(path);
        return path;
    }
    /// The same for a path, whatever lies there.
    void want_mapping(const std::string& path) { app.color_space_by_extension_file_path = path.c_str(); }
    /// Changes the application's mapping preferences and tells the module.
    void change_mapping(unsigned int use, const std::string& path) {
        app.use_color_space_by_extension_file = use;
        want_mapping(path);
        app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    }

    /// The table in force: format, extensions, colour space per row.
    std::vector<Row> rows() const {
        std::vector<Row> table;
        for (unsigned int i = 0; i < detection->get_categories_count(); ++i) {
            CoreString format = detection->get_file_format(i);
            table.push_back({str(format), str(detection->get_extension_from_file_format(format)),
                             str(detection->get_default_color_space_from_file_format(format))});
        }
        return table;
    }
    std::vector<std::string> formats() const {
        std::vector<std::string> names;
        for (unsigned int i = 0; i < detection->get_categories_count(); ++i)
            names.push_back(str(detection->get_file_format(i)));
        return names;
    }

    ColorIOAutoDetection* detection = nullptr;
};

const char* const TWO_FORMATS_AND_DEFAULT = R"(
Open EXR: {extensions: "exr, sxr", color_space: Tavelion|linear}
Scans: {extensions: "dpx, cin", color_space: Tavelion|Cineon}
default: {extensions: Other, color_space: Tavelion|sRGB}
)";

// Reading

TEST_F(MappingFile, GivesOneRowPerGroupInFileOrder) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr, sxr", "Tavelion|linear"},
                                    Row{"Scans", "dpx, cin", "Tavelion|Cineon"},
                                    Row{"default", "Other", "Tavelion|sRGB"}));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, AnswersLookUpsByExtension) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("CIN")), "Tavelion|Cineon");
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("hdr")), "Tavelion|sRGB");
    EXPECT_EQ(str(detection->get_extension_from_file_format("Scans")), "dpx,cin");
}

TEST_F(MappingFile, WithoutADefaultGroupGainsOneInTheApplicationsDefaultColourSpace) {
    app.default_color_space_name = "Tavelion|Cineon";
    point_application_at("Open EXR: {extensions: exr, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr", "Tavelion|linear"},
                                    Row{"default", "Other", "Tavelion|Cineon"}));
}

TEST_F(MappingFile, OfNoGroupsIsATableOfTheDefaultRowAlone) {
    app.default_color_space_name = "Tavelion|linear";
    point_application_at("{}\n");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(), ElementsAre(Row{"default", "Other", "Tavelion|linear"}));
}

TEST_F(MappingFile, KeepsItsDefaultRowLastWhereverItStands) {
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: {extensions: Other, color_space: Tavelion|sRGB}
B: {extensions: b, color_space: Tavelion|linear}
C: {extensions: c, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "C", "default"));
}

TEST_F(MappingFile, KeepsALeadingDefaultRowLast) {
    point_application_at(R"(
default: {extensions: Other, color_space: Tavelion|sRGB}
A: {extensions: a, color_space: Tavelion|linear}
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "default"));
}

TEST_F(MappingFile, KnowsItsDefaultGroupByExactName) {
    point_application_at("Default: {extensions: Other, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("Default", "default"));
}

TEST_F(MappingFile, PassesOverGroupsThatLackExtensionsOrColourSpace) {
    point_application_at(R"(
No space: {extensions: a}
No extensions: {color_space: Tavelion|linear}
Empty: {}
Other words: {Extensions: a, Color_space: Tavelion|linear}
Whole: {color_space: Tavelion|linear, extensions: w, note: "order does not matter"}
default: {extensions: Other, color_space: Tavelion|sRGB}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(rows(),
                ElementsAre(Row{"Whole", "w", "Tavelion|linear"}, Row{"default", "Other", "Tavelion|sRGB"}));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, CountsAnIncompleteDefaultGroupAsSeen) {
    point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
default: {extensions: Other}
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("B", "A")) << "no fall-back row, and later rows go before the last";
}

TEST_F(MappingFile, PassesOverValuesThatAreNoGroups) {
    app.default_color_space_name = "Tavelion|linear";
    point_application_at(R"(
version: 3
name: "a mapping"
list: [1, 2]
A: {extensions: a, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("A", "default"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, StopsAtAnEntryWithoutValueAndIsNotUsed) {
    std::string path = point_application_at(R"(
A: {extensions: a, color_space: Tavelion|linear}
Broken:
B: {extensions: b, color_space: Tavelion|linear}
)");
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: color space mapping configuration file '" + path +
                            "' has an entry without value: 'Broken.\n"),
                    warning("Color Management: failed to load color space mapping configuration file '" +
                            path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, KeepsTheRowsReadBeforeAnEntryWithoutValue) {
    point_application_at("A: {extensions: a, color_space: Tavelion|linear}\nBroken:\n");
    detection->use_file_config(true);
    point_application_at("B: {extensions: b, color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("A", "B", "default"));
}

TEST_F(MappingFile, ThatCannotBeParsedIsReportedAndNotUsed) {
    std::string path = point_application_at("A: {extensions: [unclosed\n");
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: color space mapping configuration file '" + path +
                            "' has errors and can't be read.\n"),
                    warning("Color Management: " + path + ":2:1: end of sequence flow not found\n"),
                    warning("Color Management: failed to load color space mapping configuration file '" +
                            path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, ThatDoesNotExistIsReportedOnceAndNotUsed) {
    std::string path = path_of("absent.yaml");
    want_mapping(path);
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), ElementsAre(warning(
                                "Color Management: failed to load color space mapping configuration file '" +
                                path + "'. Defaulting to Tavelion built-in associations.\n")));
}

TEST_F(MappingFile, OfAnEmptyPathIsNotUsedAndNotMentioned) {
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, IsReadByBuildFromFileWithoutPuttingItInForce) {
    std::string path = write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT);
    EXPECT_TRUE(detection->build_from_file(path.c_str()));
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_FALSE(detection->build_from_file(""));
    EXPECT_FALSE(detection->build_from_file(path_of("absent.yaml").c_str()));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, IsNeverReadWithoutAnApplication) {
    std::string path = write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT);
    ColorIOAutoDetection headless(nullptr);
    EXPECT_FALSE(headless.build_from_file(path.c_str()));
    headless.use_file_config(true);
    EXPECT_FALSE(headless.is_file_config());
    headless.use_file_config(false);
    EXPECT_EQ(headless.get_categories_count(), 9u);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

// The switch

TEST_F(MappingFile, PutInForceRaisesOneEvent) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, PutOutOfForceRaisesOneEventAndBringsTheBuiltInRowsBack) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    take_events();
    detection->use_file_config(false);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, SwitchedOffTwiceRaisesTheEventTwice) {
    detection->use_file_config(false);
    detection->use_file_config(false);
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT, EXTENSION_EVENT));
}

TEST_F(MappingFile, ThatCannotBeUsedRaisesNoEventAndChecksNothing) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_log();
    take_events();
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    EXPECT_THAT(take_events(), IsEmpty());
    EXPECT_EQ(take_log().size(), 1u) << "only the file is reported, not the colour spaces the rows lack";
}

TEST_F(MappingFile, OnceReadStaysInUseWhenThePathIsEmptied) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    detection->use_file_config(false);
    want_mapping("");
    take_events();
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default"));
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
}

TEST_F(MappingFile, ReadAgainAppendsItsRowsToTheEarlierOnes) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    point_application_at("New: {extensions: \"new, dpx\", color_space: Tavelion|linear}\n");
    detection->use_file_config(true);
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default", "New", "default"));
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("dpx")), "Tavelion|Cineon");
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("new")), "Tavelion|linear");
}

TEST_F(MappingFile, ThatTurnsUnreadableGivesWayToTheBuiltInRows) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
}

TEST_F(MappingFile, ThatTurnedUnreadableIsNotBroughtBackByAnEmptiedPath) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    want_mapping(path_of("absent.yaml"));
    detection->use_file_config(true);
    take_log();
    take_events();
    want_mapping("");
    detection->use_file_config(true);
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(MappingFile, LeavesEditsToTheBuiltInTable) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    detection->add_file_format("Added", "add", "Tavelion|linear");
    detection->set_file_format(0, "Renamed");
    detection->set_extension_from_file_format(1, "pic");
    detection->set_default_color_space_from_file_format(2, "linear");
    detection->remove_file_format(3);
    EXPECT_THAT(rows(), ElementsAre(Row{"Open EXR", "exr, sxr", "Tavelion|linear"},
                                    Row{"Scans", "dpx, cin", "Tavelion|Cineon"},
                                    Row{"default", "Other", "Tavelion|sRGB"}));

    detection->use_file_config(false);
    EXPECT_THAT(formats(),
                ElementsAre("Renamed", "Jpeg", "Bitmap", "Png", "Tiff", "Tx", "HDR", "Added", "default"));
    EXPECT_EQ(str(detection->get_extension_from_file_format("Jpeg")), "pic");
    EXPECT_EQ(str(detection->get_default_color_space_from_file_format("Bitmap")), "Tavelion|linear");
}

TEST_F(MappingFile, MakesTheFacadeWhenItHasToRaiseItsEvent) {
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    forget_facade();
    detection->use_file_config(true);
    EXPECT_NE(ColorIO::s_singleton, nullptr);
}

TEST_F(MappingFile, FollowsTheApplicationsPath) {
    change_mapping(1, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_TRUE(detection->is_file_config());
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Scans", "default"));
}

TEST_F(MappingFile, IsPutOutOfForceWhenThePathChangesWhileTheApplicationWantsNone) {
    change_mapping(1, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    change_mapping(0, write_file("other.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_FALSE(detection->is_file_config());
    EXPECT_EQ(detection->get_categories_count(), 9u);
}

TEST_F(MappingFile, IsWantedForAnyFlagButZero) {
    change_mapping(0x80000000u, write_file("mapping.yaml", TWO_FORMATS_AND_DEFAULT));
    EXPECT_TRUE(detection->is_file_config());
}

// Validation

TEST_F(MappingFile, WithKnownColourSpacesPassesTheCheckInSilence) {
    EXPECT_TRUE(detection->check_mappings());
    point_application_at(TWO_FORMATS_AND_DEFAULT);
    detection->use_file_config(true);
    EXPECT_TRUE(detection->check_mappings());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(MappingFile, OfOneUnknownColourSpaceInThreeRowsNamesItOnce) {
    point_application_at(R"(
A: {extensions: a, color_space: Film|log}
B: {extensions: b, color_space: Film|log}
C: {extensions: c, color_space: Film|log}
default: {extensions: Other, color_space: Tavelion|sRGB}
)");
    detection->use_file_config(true);
    EXPECT_TRUE(detection->is_file_config()) << "an unknown colour space is reported, and used";
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 1 unknown color space(s) assigned to 3 file format "
                            "/ color space mapping(s):\n"),
                    warning("'Film|log'\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
    EXPECT_THAT(take_events(), ElementsAre(EXTENSION_EVENT));
    EXPECT_FALSE(detection->check_mappings());
}

TEST_F(MappingFile, NamesUnknownColourSpacesInTheOrderOfTheirRows) {
    point_application_at(R"(
A: {extensions: a, color_space: zeta}
B: {extensions: b, color_space: alpha}
C: {extensions: c, color_space: zeta}
D: {extensions: d, color_space: Tavelion|linear}
E: {extensions: e, color_space: linear}
default: {extensions: Other, color_space: ""}
)");
    detection->use_file_config(true);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 4 unknown color space(s) assigned to 5 file format "
                            "/ color space mapping(s):\n"),
                    warning("'zeta'\n"), warning("'alpha'\n"), warning("'linear'\n"), warning("''\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
}

TEST_F(MappingFile, IsCheckedAgainstEveryNewConfiguration) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_THAT(
        take_log(),
        ElementsAre(warning("Color Management: found 2 unknown color space(s) assigned to 9 file format "
                            "/ color space mapping(s):\n"),
                    warning("'Tavelion|linear'\n"), warning("'Tavelion|sRGB'\n"),
                    warning("Please update the file format / color space mappings or set an OCIO "
                            "configuration that defines the missing color spaces and restart "
                            "Tavelion.\n")));
    EXPECT_FALSE(detection->check_mappings());
    take_log();
    use_builtin_config();
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_TRUE(detection->check_mappings());
}

TEST_F(MappingFile, FailsTheCheckInSilenceWhenNobodyWantsWarnings) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    take_log();
    log.set_level(LOG_ERROR);
    EXPECT_FALSE(detection->check_mappings());
    EXPECT_THAT(take_log(), IsEmpty());
}

// Life

TEST_F(MappingFile, DetectorIsMadeOnceAndDestroyedByItself) {
    EXPECT_EQ(ColorIOAutoDetection::s_instance, detection);
    detection->add_file_format("Kept", "k", "Tavelion|linear");
    EXPECT_TRUE(ColorIOAutoDetection::static_init(&app));
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), detection);
    EXPECT_EQ(detection->get_categories_count(), 10u);

    ColorIOAutoDetection::destroy();
    EXPECT_EQ(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_EQ(ColorIOAutoDetection::s_instance, nullptr);
    ColorIOAutoDetection::destroy();

    EXPECT_TRUE(ColorIOAutoDetection::static_init(nullptr));
    ASSERT_NE(ColorIOAutoDetection::get_instance(), nullptr);
    EXPECT_EQ(ColorIOAutoDetection::get_instance()->get_categories_count(), 9u);
}

TEST_F(MappingFile, DetectorOutlivesTheManager) {
    ColorIO::destroy();
    ASSERT_EQ(ColorIOAutoDetection::get_instance(), detection);
    EXPECT_EQ(str(detection->get_default_color_space_from_extension("exr")), "Tavelion|linear");
}

} // namespace
