#pragma once

#include <string>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

/// Declarations shared by the files of the bridge to `pixel/`.
namespace ocio {

/// Thrown for an operation that `pixel/` does not support, with the reason.
struct NotKnown {
    std::string words;
};

template <class T>
pixel::Direction direction_of(const T& transform) {
    return transform.getDirection() == library::TRANSFORM_DIR_INVERSE ? pixel::Direction::Inverse
                                                                      : pixel::Direction::Forward;
}

} // namespace ocio
