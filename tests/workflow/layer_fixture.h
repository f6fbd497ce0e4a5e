#pragma once

#include <cmath>
#include <functional>
#include <string>

#include "tests/tool/images.h"
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

/// The same for files of channels of any type.
class LayerFileTest : public LayerTest {
protected:
    void expect_kept(const NativeImage& before, const NativeImage& after,
                     const std::vector<std::string>& channels) {
        for (const std::string& channel : channels) {
            EXPECT_EQ(after.get_bits(channel), before.get_bits(channel)) << channel;
            EXPECT_EQ(after.spec.channelformat(after.spec.channelindex(channel)),
                      before.spec.channelformat(before.spec.channelindex(channel)))
                << channel;
        }
    }

    static NativeImage make_color(const std::vector<std::string>& channels, float value,
                                  OIIO::TypeDesc type = OIIO::TypeFloat) {
        ChannelTypes types;
        for (const std::string& channel : channels)
            types.emplace_back(channel, type);
        NativeImage image = make_native_image(3, 2, types);
        for (const std::string& channel : channels)
            image.fill(channel, value);
        return image;
    }

    static NativeImage make_part(const std::string& name, const std::vector<std::string>& channels,
                                 float value) {
        NativeImage part = make_color(channels, value);
        part.spec.attribute("oiio:subimagename", name);
        return part;
    }

    void write(const NativeImage& image) { write_native(folder.file("in.exr"), {image}); }
    NativeImage read(int subimage = 0) const { return read_native(folder.file("out.exr"), subimage); }
};

/// Color layers of two types, and data in channels of all types and under all names.
inline NativeImage make_rich_image() {
    NativeImage image = make_native_image(5, 4,
                                          {{"R", OIIO::TypeHalf},
                                           {"G", OIIO::TypeHalf},
                                           {"B", OIIO::TypeHalf},
                                           {"Z", OIIO::TypeFloat},
                                           {"id", OIIO::TypeUInt32},
                                           {"diffuse.R", OIIO::TypeFloat},
                                           {"diffuse.G", OIIO::TypeFloat},
                                           {"diffuse.B", OIIO::TypeFloat},
                                           {"N.X", OIIO::TypeHalf},
                                           {"N.Y", OIIO::TypeHalf},
                                           {"N.Z", OIIO::TypeHalf},
                                           {"normal.R", OIIO::TypeFloat},
                                           {"normal.G", OIIO::TypeFloat},
                                           {"normal.B", OIIO::TypeFloat},
                                           {"matteless00.R", OIIO::TypeFloat},
                                           {"matteless00.G", OIIO::TypeFloat},
                                           {"matteless00.B", OIIO::TypeFloat},
                                           {"matteless00.A", OIIO::TypeFloat},
                                           {"ids.R", OIIO::TypeUInt32},
                                           {"ids.G", OIIO::TypeUInt32},
                                           {"ids.B", OIIO::TypeUInt32},
                                           {"beauty.left.R", OIIO::TypeHalf},
                                           {"beauty.left.G", OIIO::TypeHalf},
                                           {"beauty.left.B", OIIO::TypeHalf}});
    image.spec.attribute("cryptomatte/0a1b2c3/name", "matteless");
    image.spec.attribute("cryptomatte/0a1b2c3/manifest", "{\"a\":\"3f800000\"}");
    std::uint32_t seed = 1;
    for (const std::string& channel : image.spec.channelnames)
        image.fill_bits(channel, seed++);
    for (const char* layer : {"", "diffuse.", "beauty.left."}) {
        image.fill(layer + std::string("R"), 0.25f);
        image.fill(layer + std::string("G"), 0.5f);
        image.fill(layer + std::string("B"), 0.75f);
    }
    return image;
}

/// A note of that code about a file of that name.
inline auto IsNote(const std::string& code, const std::string& file,
                   const testing::Matcher<const std::string&>& message) {
    using diagnostics::Diagnostic;
    const auto has_name = [code](const Diagnostic& note) { return get_name(note.code) == code; };
    return testing::AllOf(testing::Field(&Diagnostic::severity, diagnostics::Severity::NOTE),
                          testing::Truly(has_name),
                          testing::Field(&Diagnostic::file, testing::EndsWith("/" + file)),
                          testing::Field(&Diagnostic::message, message));
}
