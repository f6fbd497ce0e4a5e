#pragma once

#include <functional>
#include <string>

namespace files {

/// Removes the temporary files that killed programs of this user left in `folder`; files still being written
/// are locked and stay. Checks each folder once per process.
void remove_leftovers(const std::string& folder);

/// Calls `make`, which makes the temporary file `path`, and registers the file when `make` returns true, so
/// that a signal handler can remove it. Returns the result of `make`.
bool make_temporary_file(const std::string& path, const std::function<bool()>& make);
/// Removes the registration; to be called once the file was renamed or removed.
void forget_temporary_file(const std::string& path);
/// Removes all registered temporary files of this process, which must end afterwards: threads that make
/// another one block forever.
void remove_temporary_files();

} // namespace files
