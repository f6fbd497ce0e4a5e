#include "tests/colorio/converter_fixture.h"

#include <algorithm>
#include <cmath>

#include "colorio/color_io_manager.h"

Flags flags_of(const ColorIOConverter& converter) {
    if (converter.is_enabled()) {
        EXPECT_TRUE(converter.is_configured()) << "an enabled converter is configured";
        return Flags::ENABLED;
    }
    return converter.is_configured() ? Flags::PASSING : Flags::UNCONFIGURED;
}

void ConverterTest::SetUp() {
    RunningModule::SetUp();
    converter = std::make_unique<ColorIOConverter>();
}

void ConverterTest::TearDown() {
    converter.reset();
}

std::vector<float> ConverterTest::convert(float r, float g, float b, float a) const {
    GMathVec4<float> pixel(r, g, b, a);
    EXPECT_TRUE(converter->convert_pixel(pixel));
    EXPECT_EQ(pixel[3], a) << "alpha is not converted";
    return {pixel[0], pixel[1], pixel[2]};
}

void ConverterTest::use_cdls(const std::vector<ColorIOManager::ColorDecisionListDef>& custom) {
    ColorIOManager& manager = *ColorIOManager::get_instance();
    CoreVector<ColorIOManager::ColorDecisionListDef> list;
    ColorIOManager::ColorDecisionListDef none = cdl_record("No CDL", {});
    none.is_builtin = true;
    list.append(none);
    for (const auto& record : custom)
        list.append(record);
    manager.set_tavelion_config(list);
    take_log();
    take_events();
}

ColorIOManager::ColorDecisionListDef cdl_record(const char* name, const formula::Cdl& values) {
    ColorIOManager::ColorDecisionListDef record{};
    record.name = name;
    std::copy(values.slope.begin(), values.slope.end(), record.slope);
    std::copy(values.offset.begin(), values.offset.end(), record.offset);
    std::copy(values.power.begin(), values.power.end(), record.power);
    record.saturation = static_cast<float>(values.saturation);
    record.is_builtin = false;
    return record;
}

LogLine no_source_space(const std::string& name) {
    return warning("Color Management: failed to configure the color converter. Source color space '" + name +
                   "' doesn't exist.\n");
}

testing::AssertionResult is_near(float actual, double expected) {
    const double difference = std::abs(actual - expected);
    if (actual == expected || difference <= 2e-6 || difference <= 2e-6 * std::abs(expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << actual << " instead of " << expected << ", off by " << difference;
}
