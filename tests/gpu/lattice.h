#pragma once

#include <array>
#include <vector>

/// A color table as GL_LINEAR and GL_CLAMP_TO_EDGE sample it, in double precision: edge^3 RGB triples, red
/// fastest, values at the centers of the texels.
class Lattice {
public:
    using Rgb = std::array<double, 3>;

    Lattice(std::vector<float> table, int edge);

    /// True when the coordinates lie between the first and the last entry along every axis, so that nothing
    /// is clamped.
    bool covers(const Rgb& coordinates) const;
    /// Trilinear interpolation between the eight entries around the coordinates.
    Rgb sample(const Rgb& coordinates) const;
    /// How far the eight entries around the coordinates lie apart, per channel.
    Rgb get_spread(const Rgb& coordinates) const;
    /// How far a function that goes through the table's entries may be from what `sample` gives. Along one
    /// axis a function bent once between two entries by d (per step) is off by d / 4 at most, a smooth one by
    /// half of that; the bend is what the second differences at both entries add up to.
    Rgb get_error_bound(const Rgb& coordinates) const;

private:
    struct Cell {
        int low[3];
        double fraction[3];
    };

    Cell find_cell(const Rgb& coordinates) const;
    double at(const int (&place)[3], int channel) const;
    double get_bend(const int (&place)[3], int axis, int channel) const;

    std::vector<float> table;
    int edge;
};
