#pragma once

#include <utility>

#include "colorio/color_io_converter.h"
#include "colorio/ocio/processor.h"

class ColorIOManager;

struct ColorIOConverter::State {
    bool configured = false; ///< The last configuration that got past the name checks has a processor.
    bool bypass = true;      ///< The last configuration asked for no conversion.
    ColorIOManager* manager = nullptr;
    ocio::ConstProcessorRcPtr processor;
    ocio::PixelFunction convert_pixel; ///< That of `processor`.

    void take(ocio::ConstProcessorRcPtr made) {
        processor = std::move(made);
        convert_pixel = processor->get_pixel_function();
    }

    /// The manager, unless it was destroyed meanwhile.
    const ColorIOManager* get_manager() const;

    // The converter's operations of the same names.

    bool configure(const CoreString& source, const CoreString& destination);
    bool configure_CDL(const CoreString& source, const CoreString& destination);
    bool configure_for_display(const CoreString& input, const CoreString& display, const CoreString& view);
    CoreString get_color_space(const CoreString& name) const;

private:
    /// Settles `bypass`. False when the configuration ends here: nothing was asked for, or there is no
    /// manager any more to ask.
    bool begin_configuration(bool nothing_asked);
};
