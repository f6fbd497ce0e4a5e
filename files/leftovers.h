#pragma once

#include <functional>
#include <string>

namespace files {

/// Removes the temporary files that killed programs of this user left in `folder`. Those that a program still
/// writes are locked and stay. Looks once per process into each folder.
void remove_leftovers(const std::string& folder);

/// Has `make` make the temporary file `path`, and remembers it when `make` answers true, so that a program
/// that a signal ends can remove it.
bool make_temporary_file(const std::string& path, const std::function<bool()>& make);
/// To be called once the file has another name or none.
void forget_temporary_file(const std::string& path);
/// Removes all temporary files of this process. From then on none can be made, its threads wait for ever: the
/// process is to end.
void remove_temporary_files();

} // namespace files
