#pragma once

#include <string>

#include <strings.h>

namespace workflow {

/// ASCII letters count as equal in either case, as OpenColorIO compares names.
inline bool equal_ignoring_case(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

} // namespace workflow
