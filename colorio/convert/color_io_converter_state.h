#pragma once

#include <functional>
#include <utility>

#include "colorio/color_io_converter.h"
#include "colorio/ocio/processor.h"

class ColorIOManager;

struct ColorIOConverter::State {
    bool configured = false; ///< The last configuration that was not a bypass succeeded.
    bool bypass = true;      ///< The last configuration needed no conversion.
    ColorIOManager* manager = nullptr;
    ocio::ConstProcessorRcPtr processor;
    ocio::PixelFunction convert_pixel; ///< That of `processor`.

    void take(ocio::ConstProcessorRcPtr made) {
        processor = std::move(made);
        convert_pixel = processor->get_pixel_function();
    }

    /// The manager; null once it is destroyed.
    const ColorIOManager* get_manager() const;

    // The converter's operations with the same names.

    bool configure(const CoreString& source, const CoreString& destination);
    bool configure_CDL(const CoreString& source, const CoreString& destination);
    bool configure_for_display(const CoreString& input, const CoreString& display, const CoreString& view);
    CoreString get_color_space(const CoreString& name) const;

    using MakeProcessor = std::function<ocio::ConstProcessorRcPtr(const ocio::ConstConfigRcPtr& config)>;
    /// Takes the processor that `make` makes in the active config. What OpenColorIO throws is logged at
    /// level 1.
    bool configure_with(const MakeProcessor& make);

private:
    /// Sets `bypass`. False when there is nothing more to do: a bypass, or the manager is gone.
    bool begin_configuration(bool nothing_asked);
};
