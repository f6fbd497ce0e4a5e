#pragma once

#include <string_view>

/// Whether the fault of that name in faults.py is to be shown: the one in the environment variable
/// HOST_FAULT.
bool has_fault(std::string_view name);
