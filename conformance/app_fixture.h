#pragma once

#include "conformance/host_app.h"
#include "host/of/of_app.h"
#include "host/of/of_object_factory.h"

namespace conformance {

/// The host's application, made for one check.
class AppFixture {
public:
    /// Throws CannotRun when the host makes none.
    AppFixture();

    HostApp& get_host() { return *host; }
    OfApp& get() { return host->get_app(); }
    /// A new enumeration whose invalid value is 77.
    OfEnum& add_enum(const char* name) { return *get().get_object_factory().add_enum(CoreString(name), 77); }

private:
    std::unique_ptr<HostApp> host;
};

} // namespace conformance
