#pragma once

#include <string>

namespace tool {

/// Path of the program with all commands, found from that of this program:
/// "/usr/libexec/qb_colorio/colorio-images". Throws diagnostics::Failure when the system does not say where
/// this program is.
std::string get_image_program();

/// Replaces this program by that one, with the same arguments. Throws diagnostics::Failure when it cannot be
/// run.
[[noreturn]] void become_image_program(char* arguments[]);

} // namespace tool
