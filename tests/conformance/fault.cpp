#include "tests/conformance/fault.h"

#include <cstdlib>

bool has_fault(std::string_view name) {
    static const char* const chosen = std::getenv("HOST_FAULT");
    return chosen && name == chosen;
}
