#include "colorio/ocio/v2/fast_path.h"

#include <stdexcept>
#include <utility>

#include "colorio/ocio/processor.h"
#include "colorio/ocio/v2/pixel_bridge.h"

namespace ocio {

namespace {

/// Making a program takes as long as the library takes for about so many pixels.
constexpr long MIN_PIXELS = 4096;

} // namespace

FastPath::FastPath(const library::ConstProcessorRcPtr& processor)
    : processor_(get_fast_path() ? processor : nullptr) {}

const pixel::Program* FastPath::program_for(long width, long height) const {
    if (!processor_ || width < (MIN_PIXELS + height - 1) / height)
        return nullptr;
    std::call_once(made_, [this] { make_program(); });
    return program_.get();
}

void FastPath::make_program() const {
    try {
        if (std::optional<pixel::OpChain> chain = translate(processor_, nullptr))
            program_ = std::make_unique<const pixel::Program>(*std::move(chain));
    } catch (const std::invalid_argument&) {
        // An operation that the program does not take is the library's.
    }
}

} // namespace ocio
