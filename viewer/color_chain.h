#pragma once

#include <memory>
#include <string>
#include <vector>

#include "viewer/view_settings.h"

class ColorIOConverter;

namespace tool {

class ColorHost;

/// The conversions between a picture and the screen, configured: from the input space to the view in one; or,
/// with an exposure or a CDL, to scene-linear light, which is corrected and exposed there, and from there to
/// the view. It keeps its conversions whatever happens to the configuration.
class ColorChain {
public:
    /// What decides which conversions are made.
    struct Key {
        unsigned int revision;
        std::string input_space;
        std::string cdl;
        std::string view;
        bool exposes;

        bool operator==(const Key& other) const;
    };
    static Key make_key(const ColorHost& host, const ColorSettings& settings);

    /// Throws CommandError with the module's reasons when one of the conversions cannot be made.
    ColorChain(ColorHost& host, const ColorSettings& settings);
    ~ColorChain();

    /// Conversions in their order.
    const std::vector<std::unique_ptr<ColorIOConverter>>& get_stages() const { return stages; }
    /// Position of the stage in front of which the exposure is applied; the count of stages behind all.
    std::size_t get_gain_position() const { return gain_position; }

    /// Converts RGBA pixels in place on the CPU; several threads may.
    void convert(float* rgba, unsigned int width, unsigned int height, float exposure) const;

private:
    void add_conversion(ColorHost& host, const std::string& from, const std::string& to);
    void add_cdl(ColorHost& host, const std::string& cdl);
    void add_view(ColorHost& host, const std::string& from, const std::string& view);

    std::vector<std::unique_ptr<ColorIOConverter>> stages;
    std::size_t gain_position = 0;
};

/// Factor of so many stops.
float get_gain(float exposure);

} // namespace tool
