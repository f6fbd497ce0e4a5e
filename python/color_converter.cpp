#include "python/color_converter.h"

#include "diagnostics/failure.h"

namespace python {

std::shared_ptr<OpenSession> Converter::get_session() const {
    std::shared_ptr<OpenSession> open = session.lock();
    if (open == nullptr)
        diagnostics::fail(diagnostics::Code::USAGE_REFUSED, "the session of the converter is closed");
    open->get();
    return open;
}

} // namespace python
