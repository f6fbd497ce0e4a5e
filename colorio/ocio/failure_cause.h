#pragma once

#include <exception>
#include <new>
#include <optional>
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

/// Error about the first file transform of the config whose path contains a context variable without a value;
/// empty if there is none.
std::optional<diagnostics::Diagnostic> find_unset_variable(const ConstConfigRcPtr& config);

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

/// True when the 3 x 3 part of a row-major 4 x 4 matrix, which converts red, green and blue, has no inverse.
template <class Number>
bool is_singular(const Number (&m)[16]) {
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
               m[2] * (m[4] * m[9] - m[5] * m[8]) ==
           0;
}

/// `is_singular` of the transform's coefficients; one implementation per version of OpenColorIO.
bool is_singular(const library::MatrixTransform& matrix);
/// One implementation per version of OpenColorIO: true when the config has a color space or a named transform
/// of that name.
bool knows_space(const ConstConfigRcPtr& config, const std::string& name);

} // namespace ocio
