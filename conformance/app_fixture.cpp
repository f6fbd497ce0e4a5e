#include "conformance/app_fixture.h"

#include "conformance/check.h"

namespace conformance {

AppFixture::AppFixture() : host(make_host_app()) {
    if (!host)
        throw CannotRun("make_host_app returned no application");
}

} // namespace conformance
