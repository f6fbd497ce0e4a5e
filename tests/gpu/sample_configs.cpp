#include "tests/gpu/sample_configs.h"

#include <cmath>
#include <sstream>

namespace {

constexpr char VERSION_1[] = R"(ocio_profile_version: 1
search_path: luts
strictparsing: true
luma: [0.2126, 0.7152, 0.0722]
roles:
  default: raw
  reference: lin
  scene_linear: lin
displays:
  Monitor:
    - !<View> {name: Film, colorspace: film}
    - !<View> {name: Graded, colorspace: video, looks: warm}
    - !<View> {name: Raw, colorspace: raw}
  Projector:
    - !<View> {name: Wide, colorspace: wide video}
active_displays: [Monitor, Projector]
active_views: [Film, Graded, Raw, Wide]
looks:
  - !<Look>
    name: warm
    process_space: lin
    transform: !<CDLTransform> {slope: [1.1, 1, 0.85], offset: [0.01, 0, -0.005], power: [0.95, 1, 1.05], sat: 1.2}
colorspaces:
  - !<ColorSpace>
    name: lin
    bitdepth: 32f
    allocation: lg2
    allocationvars: [-10, 6]
  - !<ColorSpace>
    name: raw
    bitdepth: 32f
    isdata: true
    allocation: uniform
  - !<ColorSpace>
    name: video
    bitdepth: 8ui
    allocation: uniform
    allocationvars: [-0.125, 1.125]
    from_reference: !<FileTransform> {src: curve.spi1d, interpolation: linear, direction: inverse}
  - !<ColorSpace>
    name: film
    bitdepth: 10ui
    allocation: uniform
    from_reference: !<GroupTransform>
      children:
        - !<AllocationTransform> {allocation: lg2, vars: [-8, 4]}
        - !<FileTransform> {src: print.spi3d, interpolation: linear}
  - !<ColorSpace>
    name: wide
    bitdepth: 32f
    allocation: lg2
    allocationvars: [-8, 5, 0.00390625]
    to_reference: !<MatrixTransform> {matrix: [1.7, -0.6, -0.1, 0, -0.1, 1.15, -0.05, 0, -0.02, -0.13, 1.15, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: log
    bitdepth: 16f
    allocation: uniform
    from_reference: !<LogTransform> {base: 2}
  - !<ColorSpace>
    name: wide video
    bitdepth: 8ui
    allocation: uniform
    from_reference: !<GroupTransform>
      children:
        - !<FileTransform> {src: curve.spi1d, interpolation: linear, direction: inverse}
        - !<MatrixTransform> {matrix: [0.9, 0.08, 0.02, 0, 0.05, 0.9, 0.05, 0, 0.01, 0.09, 0.9, 0, 0, 0, 0, 1], offset: [0.01, 0.01, 0.01, 0]}
)";

constexpr char VERSION_2[] = R"(ocio_profile_version: 2
environment: {}
search_path: luts
strictparsing: true
roles:
  default: raw
  scene_linear: lin
  cie_xyz_d65_interchange: xyz
file_rules:
  - !<Rule> {name: Default, colorspace: default}
shared_views:
  - !<View> {name: Filmic, view_transform: filmic, display_colorspace: <USE_DISPLAY_NAME>}
displays:
  sRGB Monitor:
    - !<View> {name: Raw, colorspace: raw}
    - !<View> {name: Looked, view_transform: plain, display_colorspace: sRGB Monitor, looks: bold}
    - !<Views> [Filmic]
  Rec.1886:
    - !<View> {name: Plain, view_transform: plain, display_colorspace: Rec.1886}
    - !<Views> [Filmic]
active_displays: [sRGB Monitor, Rec.1886]
active_views: [Raw, Looked, Filmic, Plain]
looks:
  - !<Look>
    name: bold
    process_space: lin
    transform: !<GroupTransform>
      children:
        - !<ExposureContrastTransform> {style: linear, exposure: 0.25, contrast: 1.1, gamma: 1, pivot: 0.18}
        - !<CDLTransform> {slope: [1.05, 1, 0.95], power: [1.1, 1, 0.9], sat: 0.8}
default_view_transform: plain
view_transforms:
  - !<ViewTransform>
    name: plain
    from_scene_reference: !<MatrixTransform> {matrix: [0.4124, 0.3576, 0.1805, 0, 0.2126, 0.7152, 0.0722, 0, 0.0193, 0.1192, 0.9505, 0, 0, 0, 0, 1]}
  - !<ViewTransform>
    name: filmic
    from_scene_reference: !<GroupTransform>
      children:
        - !<AllocationTransform> {allocation: lg2, vars: [-8, 4]}
        - !<FileTransform> {src: print.spi3d, interpolation: linear}
        - !<ExponentTransform> {value: [2.2, 2.2, 2.2, 1]}
        - !<MatrixTransform> {matrix: [0.4124, 0.3576, 0.1805, 0, 0.2126, 0.7152, 0.0722, 0, 0.0193, 0.1192, 0.9505, 0, 0, 0, 0, 1]}
display_colorspaces:
  - !<ColorSpace>
    name: xyz
    bitdepth: 32f
  - !<ColorSpace>
    name: sRGB Monitor
    bitdepth: 32f
    from_display_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {matrix: [3.2406, -1.5372, -0.4986, 0, -0.9689, 1.8758, 0.0415, 0, 0.0557, -0.2040, 1.0570, 0, 0, 0, 0, 1]}
        - !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055, direction: inverse}
  - !<ColorSpace>
    name: Rec.1886
    bitdepth: 32f
    from_display_reference: !<GroupTransform>
      children:
        - !<MatrixTransform> {matrix: [3.2406, -1.5372, -0.4986, 0, -0.9689, 1.8758, 0.0415, 0, 0.0557, -0.2040, 1.0570, 0, 0, 0, 0, 1]}
        - !<RangeTransform> {min_in_value: 0, min_out_value: 0, max_in_value: 1, max_out_value: 1}
        - !<ExponentTransform> {value: [2.4, 2.4, 2.4, 1], direction: inverse}
colorspaces:
  - !<ColorSpace>
    name: lin
    aliases: [scene]
    bitdepth: 32f
    encoding: scene-linear
    allocation: lg2
    allocationvars: [-8, 5, 0.00390625]
  - !<ColorSpace>
    name: raw
    bitdepth: 32f
    isdata: true
  - !<ColorSpace>
    name: camera
    bitdepth: 16f
    encoding: log
    to_scene_reference: !<LogCameraTransform> {base: 10, log_side_slope: 0.25, log_side_offset: 0.4, lin_side_slope: 5.5, lin_side_offset: 0.05, lin_side_break: 0.01}
  - !<ColorSpace>
    name: acescct
    bitdepth: 16f
    encoding: log
    to_scene_reference: !<BuiltinTransform> {style: ACEScct_to_ACES2065-1}
  - !<ColorSpace>
    name: curved
    bitdepth: 16f
    allocation: uniform
    from_scene_reference: !<GroupTransform>
      children:
        - !<FileTransform> {src: curve.spi1d, interpolation: linear, direction: inverse}
        - !<GradingPrimaryTransform> {style: video, gamma: {rgb: [1.1, 1, 0.95], master: 1}, saturation: 0.9}
)";

/// A 1D LUT from encoded to linear values: a power of 2.2 with its slope carried on below 0.
void write_curve(const TempDir& folder) {
    constexpr int LENGTH = 1024;
    std::ostringstream text;
    text << "Version 1\nFrom -0.125 1.125\nLength " << LENGTH << "\nComponents 1\n{\n";
    for (int i = 0; i < LENGTH; ++i) {
        const double encoded = -0.125 + 1.25 * i / (LENGTH - 1);
        text << (encoded > 0 ? std::pow(encoded, 2.2) : 0.001 * encoded) << "\n";
    }
    text << "}\n";
    folder.write("luts/curve.spi1d", text.str());
}

/// A 3D LUT that bends every axis and mixes the channels.
void write_print(const TempDir& folder) {
    constexpr int EDGE = 9;
    const auto bend = [](double x) { return x * x * (3 - 2 * x); };
    std::ostringstream text;
    text << "SPILUT 1.0\n3 3\n" << EDGE << " " << EDGE << " " << EDGE << "\n";
    for (int r = 0; r < EDGE; ++r)
        for (int g = 0; g < EDGE; ++g)
            for (int b = 0; b < EDGE; ++b) {
                const double red = bend(r / (EDGE - 1.0)), green = bend(g / (EDGE - 1.0)),
                             blue = bend(b / (EDGE - 1.0));
                text << r << " " << g << " " << b << " " << 0.9 * red + 0.1 * green << " "
                     << 0.05 * red + 0.9 * green + 0.05 * blue << " " << 0.15 * red * green + 0.85 * blue
                     << "\n";
            }
    folder.write("luts/print.spi3d", text.str());
}

std::string write_config(const TempDir& folder, const std::string& name, const char* text) {
    write_curve(folder);
    write_print(folder);
    return folder.write(name, text);
}

} // namespace

std::string write_version_1_config(const TempDir& folder) {
    return write_config(folder, "version_1.ocio", VERSION_1);
}

std::string write_version_2_config(const TempDir& folder) {
    return write_config(folder, "version_2.ocio", VERSION_2);
}
