#pragma once

/// A configuration of version 1: "lin" (scene_linear), "half_light" (lin times 0.5), "ops|warm" (red doubled,
/// family "ops"). Display "Monitor" with the views
/// "Film" (half_light) and "Warm" (warm), display "Cinema" with the view "Film.v2" (half_light).
inline constexpr char SHOW_CONFIG[] = R"(ocio_profile_version: 1
search_path: luts
strictparsing: true
roles:
  scene_linear: lin
  texture_paint: half_light
displays:
  Monitor:
    - !<View> {name: Film, colorspace: half_light}
    - !<View> {name: Warm, colorspace: warm}
  Cinema:
    - !<View> {name: Film.v2, colorspace: half_light}
active_displays: [Monitor, Cinema]
colorspaces:
  - !<ColorSpace>
    name: lin
    bitdepth: 32f
    allocation: lg2
    allocationvars: [-10, 6]
  - !<ColorSpace>
    name: half_light
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1]}
  - !<ColorSpace>
    name: warm
    family: ops
    bitdepth: 32f
    from_reference: !<MatrixTransform> {matrix: [2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]}
)";
