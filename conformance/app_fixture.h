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
    /// Value of unknown labels in the enumerations below.
    static constexpr unsigned int INVALID_VALUE = 77;
    /// Position of unknown labels.
    static constexpr unsigned int NOT_FOUND = 0xFFFFFFFF;
    OfEnum& add_enum(const char* name) {
        return *get().get_object_factory().add_enum(CoreString(name), INVALID_VALUE);
    }

private:
    std::unique_ptr<HostApp> host;
};

} // namespace conformance
