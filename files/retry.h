#pragma once

#include <cerrno>

namespace files {

/// Repeats `call` while a signal interrupts it (-1 and EINTR); returns its last result.
template <class Call>
auto retry(const Call& call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace files
