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

/// The pixels of a picture, but no more than MIN_PIXELS, whose product with a number of threads is small.
long count_pixels(long width, long height) {
    return width >= (MIN_PIXELS + height - 1) / height ? MIN_PIXELS : width * height;
}

} // namespace

FastPath::FastPath(const library::ConstProcessorRcPtr& processor)
    : processor_(get_fast_path() ? processor : nullptr), pixels_left_(MIN_PIXELS) {}

long FastPath::get_least_pixels() {
    return MIN_PIXELS;
}

const pixel::Program* FastPath::program_for(long width, long height) const {
    if (!processor_)
        return nullptr;
    // The order of the threads' counting does not matter; call_once is what orders the making before the use.
    if (pixels_left_.load(std::memory_order_relaxed) > 0) {
        const long count = count_pixels(width, height);
        if (pixels_left_.fetch_sub(count, std::memory_order_relaxed) > count)
            return nullptr;
    }
    make_once();
    return program_.get();
}

void FastPath::make_once() const {
    std::call_once(made_, [this] { make_program(); });
}

const pixel::Program* FastPath::get_program(std::string& why_not) const {
    if (!processor_) {
        why_not = "the vector code is switched off";
        return nullptr;
    }
    make_once();
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
