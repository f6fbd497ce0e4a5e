#include "colorio/facade/module_boundary.h"

#include <exception>
#include <new>

#include "colorio/color_io.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/ocio/types.h"

void log_current_exception() noexcept {
    try {
        throw;
    } catch (const ocio::Exception& error) {
        log_message(LOG_ERROR, "OCIO exception: ", error.what(), "\n");
        report_exception(LOG_ERROR, error);
    } catch (const std::bad_alloc&) {
        log_message(LOG_ERROR, "Color Management: out of memory.\n");
        report(LOG_ERROR, diagnostics::Code::OUT_OF_MEMORY, CoreString(), "out of memory");
    } catch (const std::exception& error) {
        log_message(LOG_ERROR, "Color Management: ", error.what(), "\n");
        report(LOG_ERROR, diagnostics::Code::LIBRARY_FAILURE, CoreString(), error.what());
    } catch (...) {
        log_message(LOG_ERROR, "Color Management: unknown error.\n");
        report(LOG_ERROR, diagnostics::Code::LIBRARY_FAILURE, CoreString(), "unknown error");
    }
}

void raise_module_event(const CoreString& event) {
    at_boundary([&] {
        if (ColorIO* facade = ColorIO::get_instance())
            facade->raise_event(event);
    });
}
