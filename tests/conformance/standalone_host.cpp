#include "tests/conformance/standalone_host.h"

std::unique_ptr<conformance::HostApp> conformance::make_host_app() {
    return std::make_unique<StandaloneHost>();
}
