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

/// Locked while OpenColorIO makes or checks something: several threads may use the module, and OpenColorIO
/// shares caches and other state that it does not lock. Not locked while pixels are converted. Recursive.
std::recursive_mutex& library_mutex();

/// Runs `call` under OpenColorIO's lock and the classic locale. Exceptions become ocio::Exception, also those
/// that OpenColorIO does not catch (of its YAML reader, a regular expression, a standard container), except
/// std::bad_alloc, which passes unchanged.
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
