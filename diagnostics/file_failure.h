#pragma once

#include <string>

#include "diagnostics/failure.h"

/// The words for files that cannot be used: "cannot read 'PATH': REASON" and "cannot write 'PATH': REASON".
/// files::to_diagnostic uses the same words.
namespace diagnostics {

/// Reasons.
inline constexpr char NO_SUCH_FILE[] = "no such file";
inline constexpr char NO_SUCH_FOLDER[] = "no such folder";
inline constexpr char IS_FOLDER[] = "it is a folder";
inline constexpr char NOT_A_REGULAR_FILE[] = "it exists and is not a regular file"; ///< A device, a pipe...

/// An error about the file at `path`, which cannot be read.
Diagnostic make_read_error(Code code, const std::string& path, const std::string& reason);

/// Throws an error about the file at `path`, which cannot be read.
[[noreturn]] void fail_to_read(Code code, const std::string& path, const std::string& reason);
/// Throws an error about the file at `path`, which cannot be written. `hint` may be empty.
[[noreturn]] void fail_to_write(Code code, const std::string& path, const std::string& reason,
                                std::string hint = {});

} // namespace diagnostics
