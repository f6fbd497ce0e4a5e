#include "colorio/ocio/v2/fast_path.h"

#include <exception>
#include <utility>

#include "colorio/ocio/classic_locale.h"
#include "colorio/ocio/processor.h"
#include "colorio/ocio/v2/pixel_bridge.h"

namespace ocio {

namespace {

/// Making a program takes as long as the library takes for about so many pixels.
constexpr long MIN_PIXELS = 4096;

} // namespace

FastPath::FastPath(const library::ConstProcessorRcPtr& processor)
    : processor_(get_fast_path() ? processor : nullptr) {}

long FastPath::get_least_pixels() {
    return MIN_PIXELS;
}

const pixel::Program* FastPath::program_for(long width, long height) const {
    if (!processor_ || width < (MIN_PIXELS + height - 1) / height)
        return nullptr;
    std::call_once(made_, [this] { make_program(); });
    return program_.get();
}

const pixel::Program* FastPath::get_program(std::string& why_not) const {
    if (!processor_) {
        why_not = "the vector code is switched off";
        return nullptr;
    }
    std::call_once(made_, [this] { make_program(); });
    why_not = why_not_;
    return program_.get();
}

void FastPath::make_program() const {
    const ClassicLocale locale;
    try {
        if (std::optional<pixel::OpChain> chain = translate(processor_, &why_not_))
            program_ = std::make_unique<const pixel::Program>(*std::move(chain));
    } catch (const std::exception& error) {
        // An operation that the program does not take is the library's, and so is a picture for whose tables
        // memory is short.
        why_not_ = error.what();
    }
}

} // namespace ocio
