#pragma once

#include <string>

namespace ocio {

enum class LibraryLogLevel { WARNING, INFO };

/// Takes one message of the library, without the library's own marks. Called by whichever thread the library
/// works on, so it must be safe for threads; it must not throw, nor call the library.
using LibraryLogFunction = void (*)(LibraryLogLevel level, const std::string& text);

/// From now on `function` takes what the library reports by itself; null lets the library write to standard
/// error again, as it does from the start. One function serves the process. A library that reports nothing
/// never calls it.
void set_library_log_function(LibraryLogFunction function);

} // namespace ocio
