#pragma once

#include <gtest/gtest.h>

#include <string>

/// Where a test depends on the version of OpenColorIO, because of a difference in the library. Everything
/// else has to hold on every version.
namespace library_differences {

/// The value that the table names `subject` for the library in use. Throws std::out_of_range for a name that
/// is not in the table.
const char* expected(const std::string& subject);

/// Why the running test cannot apply to the library in use; empty when it can. Throws std::out_of_range when
/// the test is not in the table.
std::string reason_to_skip();

} // namespace library_differences

/// Ends the running test where the library in use lacks what it is about.
#define SKIP_WHERE_LISTED()                                                                                  \
    if (const std::string reason = library_differences::reason_to_skip(); !reason.empty())                   \
    GTEST_SKIP() << reason
