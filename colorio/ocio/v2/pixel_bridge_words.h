#pragma once

#include <string>

#include "colorio/ocio/types.h"
#include "pixel/ops.h"

/// What the files of the bridge to `pixel/` share.
namespace ocio {

/// Thrown, with the words for the caller, where an operation cannot be taken.
struct NotKnown {
    std::string words;
};

template <class T>
pixel::Direction direction_of(const T& transform) {
    return transform.getDirection() == library::TRANSFORM_DIR_INVERSE ? pixel::Direction::Inverse
                                                                      : pixel::Direction::Forward;
}

} // namespace ocio
