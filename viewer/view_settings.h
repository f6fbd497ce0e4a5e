#pragma once

#include <string>

namespace viewer {

/// The color settings, by the names that the module publishes.
struct ColorSettings {
    std::string input_space;  ///< Label of "color_space" that the image is in.
    std::string cdl;          ///< Name of "color_decision_list".
    std::string view;         ///< Label of "view_transform"; empty: unconverted values.
    float exposure = 0;       ///< Stops.
    std::string inverse_view; ///< Label of the view that the image is the result of, instead of the input
                              ///< color space; empty for none.

    bool operator==(const ColorSettings& other) const {
        return input_space == other.input_space && cdl == other.cdl && view == other.view &&
               exposure == other.exposure && inverse_view == other.inverse_view;
    }
    bool operator!=(const ColorSettings& other) const { return !(*this == other); }

    /// What the image is in, for display.
    std::string describe_source() const {
        return inverse_view.empty() ? input_space : "inverse of " + inverse_view;
    }
};

/// How the window is divided.
enum class Layout {
    SINGLE,       ///< One image.
    WIPE,         ///< One image, the second view to the right of a line.
    SIDE_BY_SIDE, ///< The second view beside the first.
    DIFFERENCE    ///< Difference between GPU and CPU.
};

/// True when the layout shows the second view beside the first.
inline bool shows_both_views(Layout layout) {
    return layout == Layout::WIPE || layout == Layout::SIDE_BY_SIDE;
}

} // namespace viewer
