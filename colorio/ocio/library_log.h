#pragma once

#include <string>

namespace ocio {

enum class LibraryLogLevel { WARNING, INFO };

/// Takes one message of OpenColorIO, without its prefix. May be called by any thread at any time;
/// it must not throw, nor call OpenColorIO.
using LibraryLogFunction = void (*)(LibraryLogLevel level, const std::string& text);

/// From now on `function` takes OpenColorIO's own messages; null restores the default, standard error. There
/// is one function per process. A version of OpenColorIO without this feature never calls it.
void set_library_log_function(LibraryLogFunction function);

} // namespace ocio
