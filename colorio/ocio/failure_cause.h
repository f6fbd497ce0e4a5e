#pragma once

#include <exception>
#include <new>
#include <string>
#include <utility>

#include "colorio/ocio/error.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Why OpenColorIO refuses to make a conversion, found by looking at what the conversion consists of: a file
/// that is missing or cannot be read, a name that the config does not know, a matrix without an inverse.
/// `words` are OpenColorIO's own, which stand in where nothing is found.
diagnostics::Diagnostic find_cause(const ConstConfigRcPtr& config, const ConstTransformRcPtr& conversion,
                                   const char* words);

/// Runs `make`, which has OpenColorIO make `conversion`, and gives what it throws a cause. Errors with a
/// cause of their own and shortage of memory pass.
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

/// Of the library in use: true for a matrix that has no inverse, and for a CDL that takes away all color.
bool is_singular_matrix(const library::Transform& transform);
/// Of the library in use: true when the config has a color space or a named transform of that name.
bool knows_space(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
