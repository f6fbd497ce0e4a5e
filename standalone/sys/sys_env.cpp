#include "host/sys/sys_env.h"

#include <cstdlib>

CoreString sys_get_env(const CoreBasicString& name) {
    return CoreString(std::getenv(name.get_data()));
}
