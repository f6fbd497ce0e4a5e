// A conversion in C++ on memory of Python, so that overhead.py compares both on the same pages.
#include <memory>

#include "workflow/conversion.h"
#include "workflow/session.h"

namespace {

std::unique_ptr<const workflow::Conversion> conversion;

} // namespace

/// Makes the conversion from "lin" to "curved" of the config, which it keeps, and ends the session. An
/// exception ends the process.
extern "C" __attribute__((visibility("default"))) void reference_prepare(const char* config) noexcept {
    workflow::SessionOptions options;
    options.config_path = config;
    options.no_preferences = true;
    const workflow::Session session(options);
    conversion.reset(new workflow::Conversion(session, {"lin", "", "curved", "", "", {}, false}));
}

/// Converts the pixels so many times.
extern "C" __attribute__((visibility("default"))) void
reference_apply(float* data, unsigned int pixels, unsigned int channels, unsigned int calls) noexcept {
    for (unsigned int i = 0; i < calls; ++i)
        conversion->apply(data, pixels, 1, 0, channels);
}
