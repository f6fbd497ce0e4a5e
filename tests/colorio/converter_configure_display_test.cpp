#include "colorio/color_io_converter.h"

#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/converter_fixture.h"

namespace {

using testing::ElementsAre;
using testing::FloatNear;
using testing::IsEmpty;

class ConverterDisplayConfiguration : public ConverterTest {
protected:
    void SetUp() override {
        ConverterTest::SetUp();
        use_config(CONFIG_WITHOUT_FAMILIES);
        take_log();
        take_events();
    }
    static LogLine failure(const std::string& input, const std::string& display, const std::string& view) {
        return error("Color Management: failed to configure the color converter from color space '" + input +
                     "' to display '" + display + " with view '" + view + "'.\n");
    }
};

TEST_F(ConverterDisplayConfiguration, ShowsAColorSpaceInAView) {
    EXPECT_TRUE(converter->configure_for_display("lin", "Monitor", "Film"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(1, 0.5f, -2), ElementsAre(0.5f, 0.25f, -1));
    EXPECT_TRUE(converter->configure_for_display("Any|film", "Monitor", "Video.v2"));
    EXPECT_THAT(convert(0.5f, 0.125f, 0), ElementsAre(FloatNear(1, 1e-6f), FloatNear(0.5f, 1e-6f), 0));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT(take_events(), IsEmpty());
}

TEST_F(ConverterDisplayConfiguration, OfABuiltInViewEncodesForIt) {
    use_builtin_config();
    EXPECT_TRUE(converter->configure_for_display("Tavelion|linear", "Tavelion", "sRGB"));
    EXPECT_THAT(convert(0.2140411f, 0, 1),
                ElementsAre(FloatNear(0.5f, 2e-6f), FloatNear(0, 2e-6f), FloatNear(1, 2e-6f)));
}

TEST_F(ConverterDisplayConfiguration, WithAnEmptyNameIsAPassThrough) {
    EXPECT_FALSE(converter->configure_for_display("", "Monitor", "Film"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    for (auto [input, display, view] :
         {std::tuple{"", "Monitor", "Film"}, {"lin", "", "Film"}, {"lin", "Monitor", ""}, {"", "", ""}}) {
        ASSERT_TRUE(converter->configure_for_display("lin", "Monitor", "Film"));
        EXPECT_FALSE(converter->configure_for_display(input, display, view));
        EXPECT_EQ(flags(), Flags::PASSING);
    }
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(ConverterDisplayConfiguration, OfTheViewsOwnColorSpaceIsAConversion) {
    EXPECT_TRUE(converter->configure_for_display("film", "Monitor", "Film"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(0.25f, -3, 17), ElementsAre(0.25f, -3, 17));
}

TEST_F(ConverterDisplayConfiguration, ReportsAMissingInput) {
    ASSERT_TRUE(converter->configure_for_display("lin", "Monitor", "Film"));
    EXPECT_FALSE(converter->configure_for_display("Film|log", "Monitor", "Film"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("log")));
}

TEST_F(ConverterDisplayConfiguration, OfAMissingInputDoesNotReportTheDisplayToo) {
    EXPECT_FALSE(converter->configure_for_display("log", "no such display", "Film"));
    EXPECT_THAT(take_log(), ElementsAre(no_source_space("log")));
}

TEST_F(ConverterDisplayConfiguration, ReportsADisplayThatTheColorLibraryDoesNotKnow) {
    ASSERT_TRUE(converter->configure_for_display("lin", "Monitor", "Film"));
    EXPECT_FALSE(converter->configure_for_display("Any|lin", "Projector", "Film"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(
        take_log(),
        ElementsAre(error("Color Management: failed to configure the color converter from color space "
                          "'lin' to display 'Projector with view 'Film'.\n"),
                    OcioExceptionAt(LOG_ERROR)));
}

TEST_F(ConverterDisplayConfiguration, ReportsAViewThatTheColorLibraryDoesNotKnow) {
    EXPECT_FALSE(converter->configure_for_display("lin", "Monitor", "Raw"));
    EXPECT_EQ(flags(), Flags::UNCONFIGURED);
    EXPECT_THAT(take_log(), ElementsAre(failure("lin", "Monitor", "Raw"), OcioExceptionAt(LOG_ERROR)));
}

TEST_F(ConverterDisplayConfiguration, TakesDisplayAndViewInOneName) {
    EXPECT_TRUE(converter->configure_for_display("lin", "Cinema.Film"));
    EXPECT_EQ(flags(), Flags::ENABLED);
    EXPECT_THAT(convert(1, 0.5f, -2), ElementsAre(0.5f, 0.25f, -1));
}

TEST_F(ConverterDisplayConfiguration, SplitsOneNameAtItsFirstFullStop) {
    EXPECT_TRUE(converter->configure_for_display("lin", "Monitor.Video.v2"));
    EXPECT_THAT(convert(0.25f, 1, 0), ElementsAre(FloatNear(0.5f, 1e-6f), FloatNear(1, 1e-6f), 0));
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_FALSE(converter->configure_for_display("lin", "Monitor.Film.v2.final"));
    EXPECT_THAT(take_log(),
                ElementsAre(failure("lin", "Monitor", "Film.v2.final"), OcioExceptionAt(LOG_ERROR)));
}

TEST_F(ConverterDisplayConfiguration, TakesANameWithoutAFullStopForBothParts) {
    EXPECT_FALSE(converter->configure_for_display("lin", "Monitor"));
    EXPECT_THAT(take_log(), ElementsAre(failure("lin", "Monitor", "Monitor"), OcioExceptionAt(LOG_ERROR)));
}

TEST_F(ConverterDisplayConfiguration, WithAnEmptyPartOfOneNameIsAPassThrough) {
    for (const char* name : {"", ".", ".Film", "Monitor."}) {
        ASSERT_TRUE(converter->configure_for_display("lin", "Monitor.Film"));
        EXPECT_FALSE(converter->configure_for_display("lin", name)) << name;
        EXPECT_EQ(flags(), Flags::PASSING) << name;
    }
    EXPECT_FALSE(converter->configure_for_display("", "Monitor.Film"));
    EXPECT_THAT(take_log(), IsEmpty());
}

} // namespace
