#include "tests/gpu/lattice.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

constexpr int CORNERS = 8;

/// Whether the corner is the higher one along the axis.
int is_high(int corner, int axis) {
    return (corner >> axis) & 1;
}

} // namespace

Lattice::Lattice(std::vector<float> values, int edge_len) : table(std::move(values)), edge(edge_len) {
    if (table.size() != static_cast<size_t>(edge) * static_cast<size_t>(edge) * static_cast<size_t>(edge) * 3)
        throw std::invalid_argument("the table has another size than its edge says");
}

bool Lattice::covers(const Rgb& coordinates) const {
    return std::all_of(coordinates.begin(), coordinates.end(), [&](double coordinate) {
        const double place = coordinate * edge - 0.5;
        return place >= 0 && place <= edge - 1;
    });
}

Lattice::Cell Lattice::find_cell(const Rgb& coordinates) const {
    Cell cell{};
    for (size_t axis = 0; axis < 3; ++axis) {
        const double place = std::clamp(coordinates[axis] * edge - 0.5, 0.0, edge - 1.0);
        cell.low[axis] = std::min(static_cast<int>(place), edge - 2);
        cell.fraction[axis] = place - cell.low[axis];
    }
    return cell;
}

double Lattice::at(const int (&place)[3], int channel) const {
    return table[static_cast<size_t>(((place[2] * edge + place[1]) * edge + place[0]) * 3 + channel)];
}

Lattice::Rgb Lattice::sample(const Rgb& coordinates) const {
    const Cell cell = find_cell(coordinates);
    Rgb result = {};
    for (int corner = 0; corner < CORNERS; ++corner) {
        int place[3];
        double weight = 1;
        for (int axis = 0; axis < 3; ++axis) {
            place[axis] = cell.low[axis] + is_high(corner, axis);
            weight *= is_high(corner, axis) ? cell.fraction[axis] : 1 - cell.fraction[axis];
        }
        for (int channel = 0; channel < 3; ++channel)
            result[static_cast<size_t>(channel)] += weight * at(place, channel);
    }
    return result;
}

Lattice::Rgb Lattice::get_spread(const Rgb& coordinates) const {
    const Cell cell = find_cell(coordinates);
    Rgb spread;
    for (int channel = 0; channel < 3; ++channel) {
        double least = INFINITY, most = -INFINITY;
        for (int corner = 0; corner < CORNERS; ++corner) {
            int place[3];
            for (int axis = 0; axis < 3; ++axis)
                place[axis] = cell.low[axis] + is_high(corner, axis);
            least = std::min(least, at(place, channel));
            most = std::max(most, at(place, channel));
        }
        spread[static_cast<size_t>(channel)] = most - least;
    }
    return spread;
}

/// Absolute second difference along an axis. None can be formed at an end, where a bend beside it shows in
/// the neighbor's alone, in the share of its distance d from the end, while it causes an error of d (1 - d):
/// three times the neighbor's make up for that.
double Lattice::get_bend(const int (&place)[3], int axis, int channel) const {
    int middle[3] = {place[0], place[1], place[2]};
    middle[axis] = std::clamp(middle[axis], 1, edge - 2);
    int before[3] = {middle[0], middle[1], middle[2]};
    int behind[3] = {middle[0], middle[1], middle[2]};
    --before[axis];
    ++behind[axis];
    const double bend = std::abs(at(before, channel) - 2 * at(middle, channel) + at(behind, channel));
    return middle[axis] == place[axis] ? bend : 3 * bend;
}

Lattice::Rgb Lattice::get_error_bound(const Rgb& coordinates) const {
    const Cell cell = find_cell(coordinates);
    Rgb bound = {};
    for (int channel = 0; channel < 3; ++channel)
        for (int axis = 0; axis < 3; ++axis) {
            double largest = 0;
            for (int corner = 0; corner < CORNERS; ++corner) {
                if (is_high(corner, axis))
                    continue;
                int low[3], high[3];
                for (int i = 0; i < 3; ++i)
                    low[i] = high[i] = cell.low[i] + is_high(corner, i);
                ++high[axis];
                largest = std::max(largest, get_bend(low, axis, channel) + get_bend(high, axis, channel));
            }
            bound[static_cast<size_t>(channel)] += largest / 4;
        }
    return bound;
}
