#pragma once

#include <exception>
#include <new>

#include "colorio/ocio/classic_locale.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Throws the exception being handled as ocio::Exception, with a text that is never empty. To be called
/// inside a catch block.
[[noreturn]] void rethrow_as_ocio_exception();

/// Runs `call` under the classic locale. What it throws arrives as ocio::Exception, also when the library let
/// a foreign exception through (its YAML reader, a regular expression, a standard container). That memory ran
/// short says nothing about the configuration and passes as it is.
template <typename Call>
decltype(auto) guarded(Call&& call) {
    const ClassicLocale locale;
    try {
        return call();
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        rethrow_as_ocio_exception();
    }
}

} // namespace ocio
