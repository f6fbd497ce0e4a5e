#pragma once

#include <exception>
#include <new>
#include <string>
#include <utility>

#include "colorio/ocio/error.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Why OpenColorIO refuses to make a conversion, found by checking the parts of the conversion: a file that
/// is missing or cannot be read, a name that is not in the config, a matrix without an inverse. `words` is
/// OpenColorIO's message, used when nothing is found.
diagnostics::Diagnostic find_cause(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                                   const char* words);

/// Runs `make`, in which OpenColorIO makes `conversion`, and adds a diagnostic to its exceptions. Exceptions
/// that already have one, and std::bad_alloc, pass unchanged.
template <class Make>
decltype(auto) with_cause(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                          Make&& make) {
    try {
        return std::forward<Make>(make)();
    } catch (const Error&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& exception) {
        throw Error(find_cause(config, conversion, exception.what()), exception.what());
    }
}

/// One implementation per version of OpenColorIO: true when the config has a color space or a named transform
/// of that name.
bool knows_space(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
