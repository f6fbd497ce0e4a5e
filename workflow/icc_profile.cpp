#include "workflow/icc_profile.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <string_view>

namespace workflow {

namespace {

// Layout: ISO 15076-1:2010, 7.2, 7.3, 10.5 (curveType), 10.15 (parametricCurveType), 10.27 (XYZType).
constexpr std::size_t HEADER_BYTES = 128;
constexpr std::size_t COLOR_SPACE_OFFSET = 16;
constexpr std::size_t TAG_BYTES = 12;
constexpr std::uint32_t MAX_TAGS = 1024;
constexpr std::size_t CURVE_SAMPLES = 33;
/// Rounding of 16-bit tables.
constexpr double SAME_CURVE = 1e-3;

using Curve = std::function<double(double)>;

class ProfileReader {
public:
    explicit ProfileReader(const std::vector<unsigned char>& bytes) : bytes(bytes) {}

    std::optional<IccProfile> read() const {
        if (get_text(COLOR_SPACE_OFFSET) != "RGB ")
            return std::nullopt;
        IccProfile profile;
        const std::string_view colorants[] = {"rXYZ", "gXYZ", "bXYZ"};
        const std::string_view curves[] = {"rTRC", "gTRC", "bTRC"};
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const std::vector<double> curve = sample(read_curve(find(curves[channel])));
            if (curve.empty() || !read_colorant(find(colorants[channel]), profile.colorants[channel]))
                return std::nullopt;
            if (channel == 0)
                profile.curve = curve;
            else if (!is_same(curve, profile.curve))
                return std::nullopt;
        }
        return profile;
    }

private:
    bool has(std::size_t offset, std::size_t count) const {
        return offset <= bytes.size() && count <= bytes.size() - offset;
    }

    std::string_view get_text(std::size_t offset) const {
        return has(offset, 4) ? std::string_view(reinterpret_cast<const char*>(&bytes[offset]), 4) : "";
    }

    /// 0 past the end.
    std::uint32_t get_integer(std::size_t offset, std::size_t count) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; has(offset, count) && i < count; ++i)
            value = value << 8 | bytes[offset + i];
        return value;
    }

    /// s15Fixed16Number.
    double get_fixed(std::size_t offset) const {
        return static_cast<std::int32_t>(get_integer(offset, 4)) / 65536.0;
    }

    /// Where the data of a tag begins; 0 when the profile has no such tag.
    std::size_t find(std::string_view signature) const {
        const std::uint32_t count = std::min(get_integer(HEADER_BYTES, 4), MAX_TAGS);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t entry = HEADER_BYTES + 4 + i * TAG_BYTES;
            if (get_text(entry) == signature)
                return get_integer(entry + 4, 4);
        }
        return 0;
    }

    bool read_colorant(std::size_t offset, std::array<double, 3>& xyz) const {
        if (offset == 0 || get_text(offset) != "XYZ " || !has(offset, 20))
            return false;
        for (std::size_t i = 0; i < 3; ++i)
            xyz[i] = get_fixed(offset + 8 + 4 * i);
        return true;
    }

    /// Empty when the tag holds no curve.
    Curve read_curve(std::size_t offset) const {
        if (offset == 0)
            return {};
        if (get_text(offset) == "curv")
            return read_table(offset);
        return get_text(offset) == "para" ? read_parameters(offset) : Curve();
    }

    Curve read_table(std::size_t offset) const {
        const std::size_t count = get_integer(offset + 8, 4);
        if (!has(offset + 12, count) || !has(offset + 12, 2 * count))
            return {};
        if (count == 0)
            return [](double x) { return x; };
        if (count == 1)
            return [gamma = get_integer(offset + 12, 2) / 256.0](double x) { return std::pow(x, gamma); };
        return [this, offset, count](double x) {
            const double position = x * static_cast<double>(count - 1);
            const auto index = std::min(static_cast<std::size_t>(position), count - 2);
            const double low = get_integer(offset + 12 + 2 * index, 2);
            const double high = get_integer(offset + 14 + 2 * index, 2);
            return (low + (high - low) * (position - static_cast<double>(index))) / 65535.0;
        };
    }

    /// Types 0 to 4: (a x + b)^g + e where x >= d, else c x + f.
    Curve read_parameters(std::size_t offset) const {
        constexpr std::size_t COUNTS[] = {1, 3, 4, 5, 7};
        const std::uint32_t type = get_integer(offset + 8, 2);
        if (type >= std::size(COUNTS) || !has(offset + 12, 4 * COUNTS[type]))
            return {};
        double p[7] = {};
        for (std::size_t i = 0; i < COUNTS[type]; ++i)
            p[i] = get_fixed(offset + 12 + 4 * i);
        double g = p[0], a = 1, b = 0, c = 0, d = 0, e = 0, f = 0;
        if (type >= 1) {
            a = p[1];
            b = p[2];
            d = a != 0 ? -b / a : 0;
        }
        if (type == 2)
            e = f = p[3];
        if (type >= 3) {
            c = p[3];
            d = p[4];
        }
        if (type == 4) {
            e = p[5];
            f = p[6];
        }
        return [=](double x) { return x >= d ? std::pow(a * x + b, g) + e : c * x + f; };
    }

    static std::vector<double> sample(const Curve& curve) {
        std::vector<double> values;
        for (std::size_t i = 0; curve && i < CURVE_SAMPLES; ++i)
            values.push_back(curve(static_cast<double>(i) / (CURVE_SAMPLES - 1)));
        return values;
    }

    static bool is_same(const std::vector<double>& a, const std::vector<double>& b) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](double x, double y) { return std::fabs(x - y) <= SAME_CURVE; });
    }

    const std::vector<unsigned char>& bytes;
};

} // namespace

std::optional<IccProfile> parse_icc_profile(const std::vector<unsigned char>& bytes) {
    return ProfileReader(bytes).read();
}

} // namespace workflow
