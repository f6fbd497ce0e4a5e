#include "colorio/color_io_converter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_constants.h"
#include "tests/colorio/converter_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ConverterCdlConfiguration : public ConverterTest {
protected:
    void SetUp() override {
        ConverterTest::SetUp();
        use_cdls({cdl_record("double", {{2, 2, 2}}), cdl_record("half", {{0.5, 0.5, 0.5}})});
    }
    static LogLine no_source(const std::string& name) {
        return warning("Color Management: failed to configure the color converter. Source CDL '" + name +
                       "' doesn't exist.\n");
    }
    static LogLine no_destination(const std::string& name) {
        return warning("Color Management: failed to configure the color converter. Destination CDL '" + name +
                       "' doesn't exist.\n");
    }
};

TEST_F(ConverterCdlConfiguration, AppliesTheDestination) {
    EXPECT_TRUE(converter->configure_CDL("No CDL", "double"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, UndoesTheSource) {
    EXPECT_TRUE(converter->configure_CDL("double", "No CDL"));
    EXPECT_THAT(convert(0.25f, 0.5f, 1), ElementsAre(0.125f, 0.25f, 0.5f));
    EXPECT_TRUE(converter->configure_CDL("double", "half"));
    EXPECT_THAT(convert(0.25f, 0.5f, 1), ElementsAre(0.0625f, 0.125f, 0.25f));
}

TEST_F(ConverterCdlConfiguration, ReadsAnUnknownNameAsNoCdl) {
    EXPECT_TRUE(converter->configure_CDL("unknown", "double"));
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_TRUE(converter->configure_CDL("double", "unknown"));
    EXPECT_THAT(convert(0.25f, 0.5f, 1), ElementsAre(0.125f, 0.25f, 0.5f));
    EXPECT_TRUE(converter->configure_CDL("", "double"));
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, OfTwoUnknownNamesIsASilentPassThrough) {
    EXPECT_FALSE(converter->configure_CDL("one", "two"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    ASSERT_TRUE(converter->configure_CDL("No CDL", "double"));
    EXPECT_FALSE(converter->configure_CDL("one", "two"));
    EXPECT_EQ(flags(), Flags::PASSING);
    EXPECT_FALSE(converter->configure_CDL("", ""));
    EXPECT_FALSE(converter->configure_CDL("one", "No CDL"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, OfEqualNamesIsAPassThrough) {
    EXPECT_FALSE(converter->configure_CDL("double", "double"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure_CDL("double", "double"));
    EXPECT_EQ(flags(), Flags::PASSING);
}

TEST_F(ConverterCdlConfiguration, TakesNamesAsTheyAre) {
    EXPECT_FALSE(converter->configure_CDL("Any|double", "No CDL")) << "no family is dropped";
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, ReportsASourceThatOnlyTheColorLibraryKnows) {
    EXPECT_FALSE(converter->configure_CDL("DOUBLE", "half"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(no_source("DOUBLE")));
}

TEST_F(ConverterCdlConfiguration, ReportsADestinationThatOnlyTheColorLibraryKnows) {
    ASSERT_TRUE(converter->configure_CDL("No CDL", "double"));
    EXPECT_FALSE(converter->configure_CDL("half", "Double"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(no_destination("Double")));
}

TEST_F(ConverterCdlConfiguration, ReportsBothNamesSourceFirst) {
    EXPECT_FALSE(converter->configure_CDL("HALF", "DOUBLE"));
    EXPECT_THAT(take_log(), ElementsAre(no_source("HALF"), no_destination("DOUBLE")));
}

TEST_F(ConverterCdlConfiguration, TakesTheLocalCdlsThoughTheyAreNotListed) {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    ASSERT_TRUE(manager.add_local_CDL(cdl_record(OUTPUT_LOCAL_CDL, {{4, 4, 4}})));
    ASSERT_TRUE(manager.add_local_CDL(cdl_record(INPUT_LOCAL_CDL, {{0.25, 0.25, 0.25}})));
    ASSERT_THAT(strings(manager.get_CDL_names()), ElementsAre("No CDL", "double", "half"));

    EXPECT_TRUE(converter->configure_CDL("double", "output_local_CDL"));
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_TRUE(converter->configure_CDL("input_local_CDL", "double"));
    EXPECT_THAT(convert(0.125f, 0.0625f, 0), ElementsAre(1, 0.5f, 0));
    EXPECT_TRUE(converter->configure_CDL("output_local_CDL", "input_local_CDL"))
        << "each may stand on either side";
    EXPECT_THAT(convert(1, 0.5f, 0), ElementsAre(0.0625f, 0.03125f, 0));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, ReadsALocalCdlThatWasNotAddedAsNoCdl) {
    EXPECT_TRUE(converter->configure_CDL("input_local_CDL", "double"));
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_FALSE(converter->configure_CDL("input_local_CDL", "output_local_CDL"));
    EXPECT_EQ(flags(), Flags::PASSING);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, ReportsAMissingDestinationBesideALocalSource) {
    ASSERT_TRUE(ColorIOManager::get_instance()->add_local_CDL(cdl_record(INPUT_LOCAL_CDL, {{4, 4, 4}})));
    EXPECT_FALSE(converter->configure_CDL("input_local_CDL", "HALF"));
    EXPECT_THAT(take_log(), ElementsAre(no_destination("HALF")));
}

TEST_F(ConverterCdlConfiguration, ReportsWhatTheColorLibraryThrowsAsAWarning) {
    use_cdls({cdl_record("flat", {{1, 1, 1}, {0, 0, 0}, {0, 0, 0}})});
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure_CDL("flat", "No CDL"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(),
                ElementsAre(warning("Color Management: failed to configure the color converter from "
                                    "'flat' to 'No CDL'.\n"),
                            OcioExceptionAt(LOG_WARNING)));
    log.set_level(LOG_ERROR);
    EXPECT_FALSE(converter->configure_CDL("flat", "No CDL"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterCdlConfiguration, SurvivesAChangeOfTheCdls) {
    ASSERT_TRUE(converter->configure_CDL("No CDL", "double"));
    use_cdls({});
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
    EXPECT_FALSE(converter->configure_CDL("No CDL", "double"));
    EXPECT_EQ(flags(), Flags::PASSING);
}

TEST_F(ConverterCdlConfiguration, DoesNotDependOnTheActiveConfiguration) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_TRUE(converter->configure_CDL("No CDL", "double"));
    EXPECT_THAT(convert(0.25f, 0.5f, 0.125f), ElementsAre(0.5f, 1, 0.25f));
}

} // namespace
