#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/tool/tool_fixture.h"

/// A one-dimensional table that halves: 0 becomes 0, 1 becomes 0.5.
inline constexpr char HALVING_LUT[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";

/// Two corrections: "warm" has the slope 2 1 0.5, "cold" offset 0 0 0.25 and saturation 0.8.
inline constexpr char GRADES[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<ColorCorrectionCollection xmlns="urn:ASC:CDL:v1.2">
  <ColorCorrection id="warm">
    <SOPNode>
      <Description>Evening light</Description>
      <Slope>2 1 0.5</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power>
    </SOPNode>
  </ColorCorrection>
  <ColorCorrection id="cold">
    <SOPNode><Slope>1 1 1</Slope><Offset>0 0 0.25</Offset><Power>1 1 1</Power></SOPNode>
    <SatNode><Saturation>0.8</Saturation></SatNode>
  </ColorCorrection>
</ColorCorrectionCollection>
)";

/// Commands that show and change preferences, kept in the test's own folder.
class SettingsTest : public ToolTest {
protected:
    /// Runs a command that must succeed, and answers its results.
    std::string print(const std::vector<std::string>& arguments) {
        const ToolRun result = run(arguments);
        EXPECT_THAT(result, Succeeds());
        return result.out;
    }

    nlohmann::json print_json(std::vector<std::string> arguments) {
        arguments.push_back("--json");
        const std::string text = print(arguments);
        return nlohmann::json::parse(text, nullptr, false);
    }

    static constexpr char PREFERENCES[] = "config/qb_colorio/preferences.yaml";
};
