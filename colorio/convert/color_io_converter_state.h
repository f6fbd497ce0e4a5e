#pragma once

#include "colorio/color_io_converter.h"
#include "colorio/ocio/processor.h"

class ColorIOManager;

struct ColorIOConverter::State {
    bool configured = false; ///< The last configuration that got past the name checks has a processor.
    bool bypass = true;      ///< The last configuration asked for no conversion.
    ColorIOManager* manager = nullptr;
    ocio::ConstProcessorRcPtr processor;

    /// The manager, unless it was destroyed meanwhile.
    const ColorIOManager* get_manager() const;
};
