#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "tests/colorio/running_module.h"

using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;

namespace {

// sRGB 0.5 in linear light and back (IEC 61966-2-1).
const float GRAY = static_cast<float>(std::pow((0.5 + 0.055) / 1.055, 2.4));
const float TOLERANCE = 2e-6f;

using ColorIOForwarding = RunningModule;

class ColorIOConversions : public RunningModule {
protected:
    /// Adds a CDL of the host's own whose slope is `slope` in all channels.
    void add_local_CDL(const char* name, float slope) {
        ColorIOManager::ColorDecisionListDef def =
            ColorIOManager::get_instance()->get_tavelion_color_decision_lists()[0];
        def.name = name;
        def.is_builtin = false;
        for (float& value : def.slope)
            value = slope;
        ASSERT_TRUE(ColorIOManager::get_instance()->add_local_CDL(def));
    }
};

} // namespace

// What the facade forwards

TEST_F(ColorIOForwarding, AnswersForColorSpaces) {
    EXPECT_TRUE(ColorIO::color_space_exists("Tavelion|sRGB"));
    EXPECT_FALSE(ColorIO::color_space_exists("sRGB"));
    EXPECT_EQ(ColorIO::get_color_space_index("cineon"), 1u);
    EXPECT_EQ(ColorIO::get_color_space_index("unknown"), NOT_FOUND);
    EXPECT_EQ(str(ColorIO::get_color_space_name(2)), "Tavelion|linear");
    EXPECT_EQ(str(ColorIO::get_full_color_space_name("sRGB")), "Tavelion|sRGB");
    EXPECT_THAT(strings(ColorIO::get_color_space_names()), ElementsAre("sRGB", "Cineon", "linear"));
    EXPECT_EQ(&ColorIO::get_color_space_names(), &ColorIOManager::get_instance()->get_color_space_names());
}

TEST_F(ColorIOForwarding, AnswersForDisplayViews) {
    EXPECT_TRUE(ColorIO::display_view_exists("Tavelion.Cineon"));
    EXPECT_FALSE(ColorIO::display_view_exists("Cineon"));
    EXPECT_THAT(strings(ColorIO::get_display_view_names()),
                ElementsAre("Tavelion.sRGB", "Tavelion.Cineon", "Tavelion.linear"));
    EXPECT_EQ(&ColorIO::get_display_view_names(), &ColorIOManager::get_instance()->get_display_view_names());
    EXPECT_EQ(str(ColorIO::get_color_space_from_display_view("Tavelion.Cineon")), "Tavelion|Cineon");

    CoreString display, view;
    EXPECT_TRUE(ColorIO::get_display_view("Tavelion.linear", display, view));
    EXPECT_EQ(str(display), "Tavelion");
    EXPECT_EQ(str(view), "linear");
    EXPECT_FALSE(ColorIO::get_display_view("unknown", display, view));
    EXPECT_TRUE(ColorIO::get_default_display_view(display, view));
    EXPECT_EQ(str(view), "sRGB");
    EXPECT_EQ(str(ColorIO::get_default_display_view()), "Tavelion.sRGB");
}

TEST_F(ColorIOForwarding, AnswersForRolesAndDefaults) {
    EXPECT_EQ(str(ColorIO::get_role_color_space(0)), "sRGB");
    EXPECT_EQ(str(ColorIO::get_role_color_space(7)), "linear");
    EXPECT_EQ(str(ColorIO::get_default_color_picker_space_name()), "sRGB");
    EXPECT_EQ(&ColorIO::get_default_color_picker_space_name(), &ColorIO::get_role_color_space(0));
    EXPECT_EQ(str(ColorIO::get_ROLE_SCENE_LINEAR()), "linear");
    ColorIOManager::s_default_color_space_name = "changed";
    EXPECT_EQ(str(ColorIO::get_default_color_space_name()), "changed");
}

TEST_F(ColorIOForwarding, AnswersForCDLs) {
    EXPECT_EQ(ColorIO::get_CDL_index("No CDL"), 0u);
    EXPECT_EQ(ColorIO::get_CDL_index("unknown"), NOT_FOUND);
    EXPECT_EQ(str(ColorIO::get_CDL_name(0)), "No CDL");
    EXPECT_EQ(str(ColorIO::get_CDL_name(1)), "");
    EXPECT_EQ(str(ColorIO::get_default_CDL_name()), "No CDL");
}

TEST_F(ColorIOForwarding, AnswersForLegacyNames) {
    EXPECT_TRUE(ColorIO::is_legacy_builtin_color_space("linear"));
    EXPECT_FALSE(ColorIO::is_legacy_builtin_color_space("Linear"));
    EXPECT_EQ(str(ColorIO::convert_legacy_builtin_color_space("Any|sRGB")), "Tavelion|sRGB");
    EXPECT_EQ(str(ColorIO::convert_legacy_preferences_display_color_space_to_display_view("Tavelion|Cineon")),
              "Tavelion.Cineon");
    EXPECT_EQ(str(ColorIO::convert_legacy_widget_display_color_space_to_display_view("Cineon")),
              "Tavelion.Cineon");
}

TEST_F(ColorIOForwarding, AnswersForFileExtensions) {
    EXPECT_EQ(str(ColorIO::get_instance()->get_default_color_space_from_ext("EXR")), "Tavelion|linear");
    EXPECT_EQ(str(ColorIO::get_instance()->get_default_color_space_from_ext("jpeg")), "Tavelion|sRGB");
}

// Interleaved buffers

TEST_F(ColorIOConversions, ABufferIsConvertedFromTheSecondNameToTheFirst) {
    float rgb[] = {0.5f, 0.5f, 0.5f};
    EXPECT_TRUE(ColorIO::convert_buffer(rgb, 1, 1, 3, "linear", "sRGB"));
    EXPECT_NEAR(rgb[0], GRAY, TOLERANCE);
    EXPECT_TRUE(ColorIO::convert_buffer(rgb, 1, 1, 3, "sRGB", "linear"));
    EXPECT_NEAR(rgb[0], 0.5f, TOLERANCE);
}

TEST_F(ColorIOConversions, TheSizesAreWidthHeightAndChannels) {
    std::vector<float> pixels((2 * 3 + 1) * 4, 0.5f);
    EXPECT_TRUE(ColorIO::convert_buffer(pixels.data(), 2, 3, 4, "linear", "sRGB"));
    for (size_t i = 0; i < 2 * 3 * 4; ++i)
        EXPECT_NEAR(pixels[i], i % 4 == 3 ? 0.5f : GRAY, TOLERANCE) << i;
    for (size_t i = 2 * 3 * 4; i < pixels.size(); ++i)
        EXPECT_EQ(pixels[i], 0.5f) << i;
}

TEST_F(ColorIOConversions, FullNamesServeAsWell) {
    float rgb[] = {0.5f, 0.5f, 0.5f};
    EXPECT_TRUE(ColorIO::convert_buffer(rgb, 1, 1, 3, "Tavelion|linear", "sRGB"));
    EXPECT_NEAR(rgb[2], GRAY, TOLERANCE);
}

TEST_F(ColorIOConversions, EqualNamesConvertNothingAndReportFailure) {
    float rgb[] = {0.5f, 0.25f, 0.125f};
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "sRGB", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "unknown", "unknown"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "", ""));
    EXPECT_FALSE(ColorIO::convert_buffers(&rgb[0], &rgb[1], &rgb[2], nullptr, 1, 1, "sRGB", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_CDL_buffers(&rgb[0], &rgb[1], &rgb[2], nullptr, 1, 1, "No CDL", "No CDL"));
    EXPECT_THAT(rgb, ElementsAre(0.5f, 0.25f, 0.125f));
    EXPECT_THAT(take_log(), IsEmpty());
}

// Only equal texts are equal names: this asks for a conversion, which changes nothing.
TEST_F(ColorIOConversions, OneSpaceUnderTwoNamesIsAConversion) {
    float rgb[] = {0.5f, 0.25f, 0.125f};
    EXPECT_TRUE(ColorIO::convert_buffer(rgb, 1, 1, 3, "Tavelion|sRGB", "sRGB"));
    EXPECT_THAT(rgb, ElementsAre(0.5f, 0.25f, 0.125f));
}

TEST_F(ColorIOConversions, UnknownNamesConvertNothing) {
    float rgb[] = {0.5f, 0.25f, 0.125f};
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "linear", "unknown"));
    EXPECT_THAT(take_log(), ElementsAre(warning("Color Management: failed to configure the color converter. "
                                                "Source color space 'unknown' doesn't exist.\n")));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "unknown", "linear"));
    EXPECT_THAT(take_log(), ElementsAre(warning("Color Management: failed to configure the color converter. "
                                                "Destination color space 'unknown' doesn't exist.\n")));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 3, "linear", ""));
    EXPECT_THAT(rgb, ElementsAre(0.5f, 0.25f, 0.125f));
}

TEST_F(ColorIOConversions, ABufferWithoutPixelsOrWithoutMemoryConvertsNothing) {
    float rgb[] = {0.5f, 0.25f, 0.125f};
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 0, 1, 3, "linear", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 0, 3, "linear", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffer(nullptr, 1, 1, 3, "linear", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 0, "linear", "sRGB"));
    EXPECT_THAT(rgb, ElementsAre(0.5f, 0.25f, 0.125f));
    take_log();
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 0, 1, 3, "linear", "unknown"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 0, 3, "linear", "unknown"));
    EXPECT_FALSE(ColorIO::convert_buffer(rgb, 1, 1, 0, "linear", "unknown"));
    EXPECT_FALSE(ColorIO::convert_buffer(nullptr, 1, 1, 3, "linear", "unknown"));
    EXPECT_THAT(take_log(), IsEmpty()) << "refused before any name is looked up";
}

// Planes

TEST_F(ColorIOConversions, PlanesAreConvertedFromTheSecondNameToTheFirst) {
    float r[] = {0.5f, 0.0f}, g[] = {0.5f, 1.0f}, b[] = {0.0f, 0.5f}, a[] = {0.5f, 0.25f};
    EXPECT_TRUE(ColorIO::convert_buffers(r, g, b, a, 2, 1, "linear", "sRGB"));
    EXPECT_NEAR(r[0], GRAY, TOLERANCE);
    EXPECT_NEAR(g[0], GRAY, TOLERANCE);
    EXPECT_NEAR(g[1], 1.0f, TOLERANCE);
    EXPECT_NEAR(b[0], 0.0f, TOLERANCE);
    EXPECT_NEAR(b[1], GRAY, TOLERANCE);
    EXPECT_THAT(a, ElementsAre(0.5f, 0.25f));
}

TEST_F(ColorIOConversions, PlanesNeedNoAlpha) {
    float r[] = {0.5f, 0.5f, 9.0f}, g[] = {0.5f, 0.5f, 9.0f}, b[] = {0.5f, 0.5f, 9.0f};
    EXPECT_TRUE(ColorIO::convert_buffers(r, g, b, nullptr, 1, 2, "linear", "sRGB"));
    for (const float* plane : {r, g, b}) {
        EXPECT_NEAR(plane[0], GRAY, TOLERANCE);
        EXPECT_NEAR(plane[1], GRAY, TOLERANCE);
        EXPECT_EQ(plane[2], 9.0f);
    }
}

// A converter would complain about the names.
TEST_F(ColorIOConversions, MissingPlanesAndEmptySizesAreRefusedBeforeAnythingElse) {
    float r = 0.5f, g = 0.5f, b = 0.5f, a = 0.5f;
    for (auto* convert : {&ColorIO::convert_buffers, &ColorIO::convert_CDL_buffers}) {
        EXPECT_FALSE(convert(nullptr, &g, &b, &a, 1, 1, "linear", "unknown"));
        EXPECT_FALSE(convert(&r, nullptr, &b, &a, 1, 1, "linear", "unknown"));
        EXPECT_FALSE(convert(&r, &g, nullptr, &a, 1, 1, "linear", "unknown"));
        EXPECT_FALSE(convert(&r, &g, &b, &a, 0, 1, "linear", "unknown"));
        EXPECT_FALSE(convert(&r, &g, &b, &a, 1, 0, "linear", "unknown"));
    }
    EXPECT_THAT(take_log(), IsEmpty());
    EXPECT_THAT((std::vector{r, g, b, a}), ElementsAre(0.5f, 0.5f, 0.5f, 0.5f));
}

TEST_F(ColorIOConversions, MissingPlanesAreRefusedForConversionsThatWouldWork) {
    float r = 0.5f, g = 0.5f, b = 0.5f;
    EXPECT_FALSE(ColorIO::convert_buffers(nullptr, &g, &b, nullptr, 1, 1, "linear", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffers(&r, nullptr, &b, nullptr, 1, 1, "linear", "sRGB"));
    EXPECT_FALSE(ColorIO::convert_buffers(&r, &g, nullptr, nullptr, 1, 1, "linear", "sRGB"));
    EXPECT_THAT((std::vector{r, g, b}), ElementsAre(0.5f, 0.5f, 0.5f));
}

// CDLs

TEST_F(ColorIOConversions, TheFirstCDLIsAppliedAndTheSecondUndone) {
    add_local_CDL(OUTPUT_LOCAL_CDL, 2.0f);
    float r = 0.25f, g = 0.125f, b = 0.0f, a = 0.75f;
    EXPECT_TRUE(ColorIO::convert_CDL_buffers(&r, &g, &b, &a, 1, 1, "output_local_CDL", "No CDL"));
    EXPECT_THAT((std::vector{r, g, b, a}), ElementsAre(0.5f, 0.25f, 0.0f, 0.75f));
    EXPECT_TRUE(ColorIO::convert_CDL_buffers(&r, &g, &b, nullptr, 1, 1, "No CDL", "output_local_CDL"));
    EXPECT_THAT((std::vector{r, g, b, a}), ElementsAre(0.25f, 0.125f, 0.0f, 0.75f));
}

TEST_F(ColorIOConversions, AnUnknownCDLStandsForNoCDL) {
    add_local_CDL(OUTPUT_LOCAL_CDL, 2.0f);
    float r = 0.25f, g = 0.25f, b = 0.25f;
    EXPECT_TRUE(ColorIO::convert_CDL_buffers(&r, &g, &b, nullptr, 1, 1, "output_local_CDL", "unknown"));
    EXPECT_EQ(r, 0.5f);
    EXPECT_FALSE(ColorIO::convert_CDL_buffers(&r, &g, &b, nullptr, 1, 1, "unknown", "No CDL"));
    EXPECT_EQ(r, 0.5f);
}

// Each call uses a separate converter.

TEST_F(ColorIOConversions, ACallDoesNotRememberTheOneBefore) {
    float rgb[] = {0.5f, 0.5f, 0.5f};
    EXPECT_TRUE(ColorIO::convert_buffer(rgb, 1, 1, 3, "linear", "sRGB"));
    float other[] = {0.5f, 0.5f, 0.5f};
    EXPECT_FALSE(ColorIO::convert_buffer(other, 1, 1, 3, "linear", "unknown"));
    EXPECT_EQ(other[0], 0.5f);
}

TEST_F(ColorIOConversions, AreTheSameWhenSeveralThreadsAskAtOnce) {
    std::vector<std::vector<float>> buffers(4, std::vector<float>(64 * 3, 0.5f));
    std::vector<std::thread> threads;
    for (std::vector<float>& buffer : buffers)
        threads.emplace_back([&] {
            for (int i = 0; i < 8; ++i) {
                ColorIO::convert_buffer(buffer.data(), 64, 1, 3, "linear", "sRGB");
                ColorIO::convert_buffer(buffer.data(), 64, 1, 3, "sRGB", "linear");
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::vector<float>& buffer : buffers)
        EXPECT_THAT(buffer, Eq(buffers[0]));
    EXPECT_NEAR(buffers[0][0], 0.5f, 1e-5f);
}
