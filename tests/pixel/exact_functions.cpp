#include "exact_functions.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace pixel_test {

namespace {

using pixel::Direction;
using pixel::FixedFunction;
using pixel::FixedStyle;

double most_of(const ExactPixel& v) {
    return std::max({v[0], v[1], v[2]});
}

double least_of(const ExactPixel& v) {
    return std::min({v[0], v[1], v[2]});
}

double saturation_of(const ExactPixel& v) {
    return (std::max(1e-10, most_of(v)) - std::max(1e-10, least_of(v))) / std::max(0.01, most_of(v));
}

/// The cubic B-spline over four intervals of the hue that are centered at red.
double red_weight(const ExactPixel& v, double width) {
    const double angle = std::atan2(std::sqrt(3.0) * (v[1] - v[2]), 2 * v[0] - (v[1] + v[2]));
    const double knot = angle * width + 2;
    if (!(knot > 1e-7 && knot < 4 - 1e-7)) { // at the very ends it is below 1e-21
        return 0;
    }
    const double t = knot - std::floor(knot);
    switch (static_cast<int>(knot)) {
    case 0:
        return t * t * t / 4;
    case 1:
        return (-3 * t * t * t + 3 * t * t + 3 * t + 1) / 4;
    case 2:
        return (3 * t * t * t - 6 * t * t + 4) / 4;
    default:
        return std::pow(1 - t, 3) / 4;
    }
}

ExactPixel modify_red(const FixedFunction& function, ExactPixel v) {
    const bool early = function.style == FixedStyle::AcesRedModifier03;
    const double scale = early ? 0.15 : 0.18, pivot = 0.03;
    const double weight = red_weight(v, early ? 1.9098593171027443 : 1.6976527263135504);
    if (!(weight > 0)) {
        return v;
    }
    const double old = v[0];
    if (function.direction == Direction::Forward) {
        v[0] = old + weight * saturation_of(v) * (pivot - old) * scale;
    } else {
        const double least = v[1] < v[2] ? v[1] : v[2];
        const double a = weight * scale - 1, b = old - weight * (pivot + least) * scale,
                     c = weight * pivot * least * scale;
        v[0] = (-b - std::sqrt(b * b - 4 * a * c)) / (2 * a);
    }
    if (early) {
        const std::size_t middle = v[1] >= v[2] ? 1 : 2;
        const double least = v[3 - middle];
        v[middle] = (v[middle] - least) / std::max(1e-10, old - least) * (v[0] - least) + least;
    }
    return v;
}

ExactPixel glow(const FixedFunction& function, ExactPixel v) {
    const bool early = function.style == FixedStyle::AcesGlow03;
    const double gain = early ? 0.075 : 0.05, mid = early ? 0.1 : 0.08;
    const double radicand = v[2] * (v[2] - v[1]) + v[1] * (v[1] - v[0]) + v[0] * (v[0] - v[2]);
    const double light = (v[0] + v[1] + v[2] + 1.75 * std::sqrt(radicand)) / 3;
    const double x = 5 * (saturation_of(v) - 0.4), sign = std::signbit(x) ? -1 : 1;
    const double t = std::max(0.0, 1 - 0.5 * sign * x);
    const double g = gain * (1 + sign * (1 - t * t)) / 2;
    const bool forward = function.direction == Direction::Forward;
    double amount = forward ? g * (mid / light - 0.5) : g * (mid / light - 0.5) / (g / 2 - 1);
    if (light >= 2 * mid) {
        amount = 0;
    } else if (light <= (forward ? 1 : 1 + g) * 2 * mid / 3) {
        amount = forward ? g : -g / (1 + g);
    }
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] *= 1 + amount;
    }
    return v;
}

/// NaN in the luminance gives the floor.
ExactPixel surround(const ExactPixel& weights, double least, double gamma, ExactPixel v) {
    const double light = weights[0] * v[0] + weights[1] * v[1] + weights[2] * v[2];
    const double factor = std::pow(light > least ? light : least, gamma - 1);
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] *= factor;
    }
    return v;
}

double compress(double distance, double threshold, double limit, double power, Direction direction) {
    const double reach = limit - threshold;
    const double scale = reach / std::pow(std::pow((1 - threshold) / reach, -power) - 1, 1 / power);
    const double n = (distance - threshold) / scale, raised = std::pow(n, power);
    if (direction == Direction::Forward) {
        return threshold + scale * n / std::pow(1 + raised, 1 / power);
    }
    return distance >= threshold + scale ? distance
                                         : threshold + scale * std::pow(raised / (1 - raised), 1 / power);
}

ExactPixel compress_gamut(const FixedFunction& function, ExactPixel v) {
    const auto& p = function.parameters;
    const double axis = std::max(v[0], std::max(v[1], v[2]));
    for (std::size_t c = 0; c < 3; ++c) {
        const double distance = (axis - v[c]) / std::fabs(axis);
        if (axis == 0) {
            v[c] = 0;
        } else if (!(distance < p[3 + c])) {
            v[c] = axis - compress(distance, p[3 + c], p[c], p[6], function.direction) * std::fabs(axis);
        }
    }
    return v;
}

ExactPixel to_hsv(const ExactPixel& v) {
    const double most = most_of(v), least = least_of(v), chroma = most - least;
    double hue = 0, saturation = 0;
    if (most != least) {
        saturation = most == 0 ? 0 : chroma / most;
        hue = v[0] == most   ? (v[1] - v[2]) / chroma
              : v[1] == most ? 2 + (v[2] - v[0]) / chroma
                             : 4 + (v[0] - v[1]) / chroma;
        hue = hue < 0 ? hue + 6 : hue;
    }
    saturation = -least > most ? chroma / -least : saturation;
    return {hue / 6, saturation, most + std::min(least, 0.0), v[3]};
}

double unit(double x) {
    return x > 0 ? std::min(x, 1.0) : 0; // NaN becomes 0
}

ExactPixel from_hsv(const ExactPixel& v) {
    const double hue = 6 * (v[0] - std::floor(v[0])), s = v[1] > 0 ? std::min<double>(v[1], 1.999f) : 0,
                 value = v[2];
    double high = value, low = value * (1 - s);
    if (value < 0) {
        low = value / (2 - s);
        high = value - low;
    } else if (s > 1) {
        low = low / (2 - s);
        high = value - low;
    }
    const auto mix = [&](double part) { return low + unit(part) * (high - low); };
    return {mix(std::fabs(hue - 3) - 1), mix(2 - std::fabs(hue - 2)), mix(2 - std::fabs(hue - 4)), v[3]};
}

double over(double numerator, double x) {
    return x == 0 ? 0 : numerator / x;
}

ExactPixel xyy(Direction direction, const ExactPixel& v) {
    if (direction == Direction::Forward) {
        const double part = over(1, v[0] + v[1] + v[2]);
        return {v[0] * part, v[1] * part, v[1], v[3]};
    }
    const double part = over(1, v[1]);
    return {v[2] * v[0] * part, v[2], v[2] * (1 - v[0] - v[1]) * part, v[3]};
}

ExactPixel uvy(Direction direction, const ExactPixel& v) {
    if (direction == Direction::Forward) {
        const double part = over(1, v[0] + 15 * v[1] + 3 * v[2]);
        return {4 * v[0] * part, 9 * v[1] * part, v[1], v[3]};
    }
    const double part = over(1, v[1]);
    return {2.25 * v[2] * v[0] * part, v[2], 0.75 * v[2] * (4 - v[0] - 20.0 / 3 * v[1]) * part, v[3]};
}

ExactPixel luv(Direction direction, const ExactPixel& v) {
    constexpr double U = 0.19783001, V = 0.46831999;
    if (direction == Direction::Forward) {
        const ExactPixel uv = uvy(direction, v);
        const double l =
            v[1] <= 0.008856451679 ? 9.0329629629629608 * v[1] : 1.16 * std::pow(v[1], 0.333333333) - 0.16;
        return {l, 13 * l * (uv[0] - U), 13 * l * (uv[1] - V), v[3]};
    }
    const double part = over(1.0 / 13, v[0]), u = v[1] * part + U, w = v[2] * part + V;
    const double light = v[0] <= 0.08 ? 0.11070564598794539 * v[0] : std::pow((v[0] + 0.16) / 1.16, 3);
    const double quarter = over(0.25, w);
    return {9 * light * u * quarter, light, light * (12 - 3 * u - 20 * w) * quarter, v[3]};
}

double pq(Direction direction, double v) {
    constexpr double M1 = 0.1593017578125, M2 = 78.84375, C1 = 0.8359375, C2 = 18.8515625, C3 = 18.6875;
    if (direction == Direction::Forward) {
        const double y = std::pow(std::fabs(v) / 100, M1);
        return std::copysign(std::pow((C1 + C2 * y) / (1 + C3 * y), M2), v);
    }
    const double x = std::pow(std::fabs(v), 1 / M2), above = x - C1 > 0 ? x - C1 : 0;
    return std::copysign(100 * std::pow(above / (C2 - C3 * x), 1 / M1), v);
}

double gamma_log(Direction direction, const std::vector<double>& p, double v) {
    const auto gamma = [&](double x) { return p[3] * std::pow(x + p[4], p[2]); };
    const bool forward = direction == Direction::Forward;
    const double mirror = forward ? p[0] : gamma(p[0]), end = forward ? p[1] : gamma(p[1]);
    const double x = std::fabs(v - mirror) + mirror;
    double out = 0;
    if (forward) {
        out = x < end ? gamma(x) : p[6] * std::log(p[8] * x + p[9]) / std::log(p[5]) + p[7];
    } else {
        out = x < end ? std::pow(x / p[3], 1 / p[2]) - p[4]
                      : (std::exp((x - p[7]) * std::log(p[5]) / p[6]) - p[9]) / p[8];
    }
    return std::copysign(1.0, v - mirror) * out;
}

double double_log(Direction direction, const std::vector<double>& p, double v) {
    const auto to_log = [&](std::size_t i, double x) {
        return p[i] * std::log(p[i + 2] * x + p[i + 3]) / std::log(p[0]) + p[i + 1];
    };
    const auto from_log = [&](std::size_t i, double y) {
        return (std::exp((y - p[i + 1]) * std::log(p[0]) / p[i]) - p[i + 3]) / p[i + 2];
    };
    if (direction == Direction::Forward) {
        return v <= p[1] ? to_log(3, v) : v < p[2] ? p[11] * v + p[12] : to_log(7, v);
    }
    return v <= to_log(3, p[1]) ? from_log(3, v) : v < to_log(7, p[2]) ? (v - p[12]) / p[11] : from_log(7, v);
}

template <class F>
ExactPixel each_channel(const ExactPixel& v, F&& f) {
    return {f(v[0]), f(v[1]), f(v[2]), v[3]};
}

ExactPixel mirrored_surround(double gamma, bool forward, ExactPixel v) {
    const double light = std::fabs(0.2627 * v[0] + 0.6780 * v[1] + 0.0593 * v[2]);
    const double least = forward ? 1e-4 : std::pow(1e-4, gamma);
    const double factor = std::pow(light > least ? light : least, (forward ? gamma : 1 / gamma) - 1);
    for (std::size_t c = 0; c < 3; ++c) {
        v[c] *= factor;
    }
    return v;
}

} // namespace

ExactPixel evaluate_function_exactly(const FixedFunction& function, const ExactPixel& in) {
    const bool forward = function.direction == Direction::Forward;
    switch (function.style) {
    case FixedStyle::AcesRedModifier03:
    case FixedStyle::AcesRedModifier10:
        return modify_red(function, in);
    case FixedStyle::AcesGlow03:
    case FixedStyle::AcesGlow10:
        return glow(function, in);
    case FixedStyle::AcesDarkToDim10:
        return surround({0.27222871678091454, 0.67408176581114831, 0.053689517407937051, 0}, 1e-10,
                        forward ? 0.9811 : 1.0192640913260627, in);
    case FixedStyle::AcesGamutCompression13:
        return compress_gamut(function, in);
    case FixedStyle::Rec2100Surround:
        return surround({0.2627, 0.6780, 0.0593, 0}, 1e-4,
                        forward ? function.parameters[0] : 1 / function.parameters[0], in);
    case FixedStyle::Rec2100SurroundMirrored:
        return mirrored_surround(function.parameters[0], forward, in);
    case FixedStyle::LinearToPq:
        return each_channel(in, [&](double v) { return pq(function.direction, v); });
    case FixedStyle::LinearToGammaLog:
        return each_channel(in,
                            [&](double v) { return gamma_log(function.direction, function.parameters, v); });
    case FixedStyle::LinearToDoubleLog:
        return each_channel(in,
                            [&](double v) { return double_log(function.direction, function.parameters, v); });
    case FixedStyle::RgbToHsv:
        return forward ? to_hsv(in) : from_hsv(in);
    case FixedStyle::XyzToXyy:
        return xyy(function.direction, in);
    case FixedStyle::XyzToUvy:
        return uvy(function.direction, in);
    case FixedStyle::XyzToLuv:
        return luv(function.direction, in);
    case FixedStyle::AcesOutput20:
    case FixedStyle::AcesRgbToJmh20:
    case FixedStyle::AcesToneCompression20:
    case FixedStyle::AcesGamutCompression20:
        throw std::logic_error("the roundings of the ACES 2.0 functions are part of them");
    }
    return in;
}

} // namespace pixel_test
