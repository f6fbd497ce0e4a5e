#include "colorio/ocio/guarded.h"

#include "colorio/ocio/error.h"

namespace ocio {

std::recursive_mutex& library_mutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

void rethrow_as_ocio_exception() {
    try {
        throw;
    } catch (const Error&) {
        throw;
    } catch (const std::exception& error) {
        const char* text = error.what();
        throw Exception(text && *text ? text : "OpenColorIO failed without giving a reason");
    }
}

} // namespace ocio
