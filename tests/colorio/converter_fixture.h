#pragma once

#include <memory>
#include <string>
#include <vector>

#include "colorio/color_io_converter.h"
#include "tests/colorio/color_formulas.h"
#include "tests/colorio/running_module.h"

/// What a converter says of itself.
enum class Flags { UNCONFIGURED, ENABLED, PASSING };
Flags flags_of(const ColorIOConverter& converter);

/// A fresh converter beside the running module with its built-in configuration.
class ConverterTest : public RunningModule {
protected:
    void SetUp() override;
    void TearDown() override;

    Flags flags() const { return flags_of(*converter); }
    /// The color as the converter converts it; alpha must stay.
    std::vector<float> convert(float r, float g, float b, float a = 1) const;

    /// Makes "No CDL" and these the module's CDLs.
    void use_cdls(const std::vector<ColorIOManager::ColorDecisionListDef>& custom);

    std::unique_ptr<ColorIOConverter> converter;
};

/// Record of a custom CDL of those values.
ColorIOManager::ColorDecisionListDef cdl_record(const char* name, const formula::Cdl& values);

/// The warning about a source color space that is not published.
LogLine no_source_space(const std::string& name);

/// Equal within 2e-6, absolute or relative.
testing::AssertionResult is_near(float actual, double expected);
