#pragma once

#include <locale>

namespace ocio {

/// Adds to the calling thread's count of requests for the classic locale; returns the sum.
int want_classic_numbers(int change);

/// A nameless copy of `locale` whose streams read and write numbers in the classic way on threads that want
/// it, and as those of `locale` on all others.
std::locale with_classic_numbers_where_wanted(const std::locale& locale);

} // namespace ocio
