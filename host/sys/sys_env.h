#pragma once

#include "host/core/core_string.h"
#include "host/host_export.h"

/// Value of the environment variable `name`; empty when it is not set.
HOST_API CoreString sys_get_env(const CoreBasicString& name);
