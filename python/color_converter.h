#pragma once

#include <memory>
#include <utility>

#include <pybind11/pybind11.h>

#include "python/open_session.h"
#include "workflow/conversion.h"

namespace python {

/// A conversion and what it was made of.
class Converter {
public:
    Converter(const std::shared_ptr<OpenSession>& session, workflow::ConversionRequest request,
              workflow::Conversion conversion)
        : session(session), request(std::move(request)), conversion(std::move(conversion)) {}

    /// The session that made it, which it does not keep open. Throws diagnostics::Failure, USAGE_REFUSED,
    /// when it is closed and in another thread.
    std::shared_ptr<OpenSession> get_session() const;
    const workflow::ConversionRequest& get_request() const { return request; }
    const workflow::Conversion& get_conversion() const { return conversion; }

private:
    const std::weak_ptr<OpenSession> session;
    const workflow::ConversionRequest request;
    const workflow::Conversion conversion;
};

using ConverterType = pybind11::class_<Converter, std::shared_ptr<Converter>>;

} // namespace python
