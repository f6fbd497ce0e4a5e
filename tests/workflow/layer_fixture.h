#pragma once

#include <cmath>
#include <functional>
#include <string>

#include "tests/tool/native_image.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/image_conversion.h"

/// "lin" is scene_linear; "squared" is its square; "swapped" has red and green of "lin" exchanged;
/// "half_light" is "lin" times 0.5, and "warm" has its red doubled.
inline constexpr char LAYER_CONFIG[] = R"(ocio_profile_version: 1
strictparsing: true
roles:
  scene_linear: lin
displays:
  Monitor:
    - !<View> {name: Squared, colorspace: squared}
colorspaces:
  - !<ColorSpace> {name: lin, bitdepth: 32f}
  - !<ColorSpace>
    name: squared
    bitdepth: 32f
    from_reference: !<ExponentTransform> {value: [2, 2, 2, 1]}
  - !<ColorSpace>
    name: swapped
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [0, 1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: half_light
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: warm
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
)";

/// Converts images of several layers, from "lin".
class LayerTest : public WorkflowTest {
protected:
    workflow::ImageReport convert(const std::string& destination = "squared",
                                  const workflow::ImageOptions& options = {},
                                  const std::string& output = "out.exr") {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = destination;
        const workflow::Conversion conversion(session, request);
        return workflow::convert_image(conversion, folder.file("in.exr"), folder.file(output), options);
    }

    static workflow::ImageOptions make_options(std::vector<std::string> layers,
                                               std::vector<std::string> parts = {},
                                               std::vector<std::string> skipped = {}) {
        workflow::ImageOptions options;
        options.layers = {std::move(layers), std::move(parts), std::move(skipped)};
        return options;
    }

    static double square(double value) { return value * value; }

    workflow::Session session{options_for(LAYER_CONFIG)};
};
