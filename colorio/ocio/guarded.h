#pragma once

#include <exception>
#include <mutex>
#include <new>

#include "colorio/ocio/classic_locale.h"
#include "colorio/ocio/types.h"

namespace ocio {

/// Throws the exception being handled as ocio::Exception, with a text that is never empty. To be called
/// inside a catch block.
[[noreturn]] void rethrow_as_ocio_exception();

/// Held while the library makes or judges something: several threads may use the module, and the library
/// shares caches and other state that it does not lock. Not held while pixels are converted. One thread may
/// lock it again.
std::recursive_mutex& library_mutex();

/// Runs `call` alone with the library and under the classic locale. What it throws arrives as
/// ocio::Exception, also when the library let a foreign exception through (its YAML reader, a regular
/// expression, a standard container). That memory ran short says nothing about the configuration and passes
/// as it is.
template <typename Call>
decltype(auto) guarded(Call&& call) {
    const std::lock_guard lock(library_mutex());
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
