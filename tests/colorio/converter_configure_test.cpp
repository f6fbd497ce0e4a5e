#include "colorio/color_io_converter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "host/event/event_ids.h"
#include "tests/colorio/converter_fixture.h"

namespace {

using testing::ElementsAre;
using testing::FloatNear;
using testing::IsEmpty;

LogLine no_destination_space(const std::string& name) {
    return warning("Color Management: failed to configure the color converter. Destination color space '" +
                   name + "' doesn't exist.\n");
}

/// The configuration of the other tests and the space "broken", whose LUT file does not exist.
std::string config_with_broken_space() {
    return std::string(CONFIG_WITHOUT_FAMILIES) + R"(
  - !<ColorSpace>
    name: broken
    family: Film
    bitdepth: 32f
    to_reference: !<FileTransform> {src: absent.spi1d, interpolation: linear}
)";
}

class ConverterConfiguration : public ConverterTest {};

// Between color spaces

TEST_F(ConverterConfiguration, IsMissingFromAFreshConverter) {
    EXPECT_FALSE(converter->is_configured());
    EXPECT_FALSE(converter->is_enabled());
}

TEST_F(ConverterConfiguration, OfTwoKnownColorSpacesEnables) {
    EXPECT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(ConverterConfiguration, TakesNamesBehindAnyFamily) {
    EXPECT_TRUE(converter->configure("Tavelion|sRGB", "Any|linear"));
    EXPECT_THAT(convert(0.5f, 0.5f, 0.5f),
                ElementsAre(FloatNear(0.2140411f, 2e-6f), FloatNear(0.2140411f, 2e-6f),
                            FloatNear(0.2140411f, 2e-6f)));
    EXPECT_TRUE(converter->configure("|linear", "sRGB"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterConfiguration, DropsAFamilyUpToTheFirstBarOnly) {
    EXPECT_FALSE(converter->configure("A|B|sRGB", "linear"));
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("B|sRGB")));
}

TEST_F(ConverterConfiguration, OfEqualNamesLeavesAFreshConverterUnconfigured) {
    EXPECT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_FALSE(converter->is_configured());
    EXPECT_FALSE(converter->is_enabled());
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterConfiguration, OfEqualNamesMakesAConfiguredConverterPass) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_TRUE(converter->is_configured());
    EXPECT_FALSE(converter->is_enabled());
}

TEST_F(ConverterConfiguration, OfEqualNamesAsksNothingElseOfThem) {
    EXPECT_FALSE(converter->configure("no such space", "no such space"));
    EXPECT_FALSE(converter->configure("", ""));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterConfiguration, OfAnEmptyNameIsAPassThrough) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure("", "linear"));
    EXPECT_EQ(flags(), Flags::PASSING);
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure("sRGB", ""));
    EXPECT_EQ(flags(), Flags::PASSING);
    EXPECT_FALSE(converter->configure("no such space", ""));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterConfiguration, ComparesNamesBeforeDroppingTheirFamilies) {
    EXPECT_TRUE(converter->configure("Tavelion|sRGB", "sRGB"));
    EXPECT_EQ(flags(), Flags::ENABLED) << "different names of one space are a conversion, if an idle one";
    EXPECT_THAT(convert(0.25f, -3.0f, 17.0f), ElementsAre(0.25f, -3.0f, 17.0f));
}

TEST_F(ConverterConfiguration, ReportsAMissingSource) {
    EXPECT_FALSE(converter->configure("Film|log", "linear"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("log")));
}

TEST_F(ConverterConfiguration, ReportsAMissingDestination) {
    EXPECT_FALSE(converter->configure("linear", "Film|log"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(no_destination_space("log")));
}

TEST_F(ConverterConfiguration, ReportsBothNamesSourceFirst) {
    EXPECT_FALSE(converter->configure("one", "two"));
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("one"), no_destination_space("two")));
}

TEST_F(ConverterConfiguration, TellsLettersOfDifferentCaseApart) {
    EXPECT_FALSE(converter->configure("SRGB", "Linear"));
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("SRGB"), no_destination_space("Linear")));
}

TEST_F(ConverterConfiguration, TakesNoRolesAndNoMenuEntries) {
    EXPECT_FALSE(converter->configure("scene_linear", "sRGB"));
    EXPECT_FALSE(converter->configure("sRGB", "Use scene_linear"));
    EXPECT_THAT(take_log(),
                ElementsAre(no_source_space("scene_linear"), no_destination_space("Use scene_linear")));
}

TEST_F(ConverterConfiguration, OfAMissingNameUndoesAnEarlierOne) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_FALSE(converter->configure("sRGB", "log"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_FALSE(converter->configure("sRGB", "sRGB"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED) << "a pass-through does not bring it back";
    EXPECT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_EQ(flags(), Flags::ENABLED);
}

TEST_F(ConverterConfiguration, AfterAPassThroughEnablesAgain) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ASSERT_FALSE(converter->configure("", ""));
    EXPECT_TRUE(converter->configure("linear", "sRGB"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(1, 1, 1)[0], FloatNear(1, 2e-6f));
}

TEST_F(ConverterConfiguration, ReportsWhatTheColorLibraryThrows) {
    use_config(config_with_broken_space());
    take_log();
    ASSERT_TRUE(converter->configure("lin", "film"));
    EXPECT_FALSE(converter->configure("Film|broken", "film"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(),
                ElementsAre(error("Color Management: failed to configure the color converter from "
                                  "'broken' to 'film'.\n"),
                            OcioExceptionAt(LOG_ERROR)));
}

TEST_F(ConverterConfiguration, ReportsErrorsAndWarningsToWhomeverWantsThem) {
    use_config(config_with_broken_space());
    take_log();
    log.set_level(LOG_ERROR);
    EXPECT_FALSE(converter->configure("one", "two"));
    EXPECT_FALSE(converter->configure_for_display("one", "Monitor", "Film"));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FALSE(converter->configure("broken", "film"));
    EXPECT_EQ(take_log().size(), 2u);
    log.set_level(0);
    EXPECT_FALSE(converter->configure("broken", "film"));
    EXPECT_FALSE(converter->configure_for_display("lin", "Monitor", "no such view"));
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterConfiguration, UsesTheConfigurationThatIsActiveWhenItIsMade) {
    EXPECT_FALSE(converter->configure("lin", "film"));
    use_config(CONFIG_WITHOUT_FAMILIES);
    EXPECT_TRUE(converter->configure("lin", "film"));
    EXPECT_THAT(convert(1, 0.5f, -2), ElementsAre(0.5f, 0.25f, -1));
    EXPECT_FALSE(converter->configure("sRGB", "linear"));
    use_builtin_config();
    EXPECT_TRUE(converter->configure("sRGB", "linear"));
}

TEST_F(ConverterConfiguration, SurvivesAChangeOfTheActiveConfiguration) {
    use_config(CONFIG_WITHOUT_FAMILIES);
    ASSERT_TRUE(converter->configure("lin", "film"));
    use_builtin_config();
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(1, 0.5f, -2), ElementsAre(0.5f, 0.25f, -1));
    use_config(config_text({{"", "lin"}}, {{"D", "V", "lin"}}));
    EXPECT_THAT(convert(1, 0.5f, -2), ElementsAre(0.5f, 0.25f, -1));
}

TEST_F(ConverterConfiguration, SurvivesTheManager) {
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    ColorIO::destroy();
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(0.5f, 0, 1), ElementsAre(FloatNear(0.2140411f, 2e-6f), 0, FloatNear(1, 2e-6f)));
}

TEST_F(ConverterConfiguration, OfOneConverterLeavesOthersAlone) {
    ColorIOConverter other;
    ASSERT_TRUE(converter->configure("sRGB", "linear"));
    EXPECT_EQ(flags_of(other), Flags::UNCONFIGURED);
    ASSERT_TRUE(other.configure("linear", "sRGB"));
    ASSERT_FALSE(other.configure("no such space", "sRGB"));
    EXPECT_EQ(flags(), Flags::ENABLED);
}

TEST(ConverterWithoutAManager, PassesAndStaysUnconfigured) {
    ASSERT_EQ(ColorIOManager::get_instance(), nullptr);
    ColorIOConverter converter;
    EXPECT_EQ(flags_of(converter), Flags::UNCONFIGURED);
    EXPECT_FALSE(converter.configure("sRGB", "sRGB"));
    EXPECT_FALSE(converter.configure_for_display("sRGB", "", ""));
    EXPECT_EQ(flags_of(converter), Flags::UNCONFIGURED);
}

} // namespace
