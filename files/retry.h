#pragma once

#include <cerrno>

namespace files {

/// Calls `call` again as long as a signal interrupts it; its last result. `call` returns -1 and sets errno as
/// the system's own calls do.
template <class Call>
auto retry(const Call& call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

} // namespace files
