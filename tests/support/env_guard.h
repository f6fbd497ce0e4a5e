#pragma once

#include <stdlib.h>

#include <optional>
#include <string>

/// Sets or unsets an environment variable and gives it its old value back at the end of the scope.
class EnvGuard {
public:
    EnvGuard(std::string name, const std::string& value) : EnvGuard(std::move(name)) { set(value); }
    /// Unsets the variable until the end of the scope.
    explicit EnvGuard(std::string variable) : name(std::move(variable)) {
        if (const char* value = getenv(name.c_str()))
            old_value = value;
        unset();
    }
    ~EnvGuard() {
        if (old_value)
            set(*old_value);
        else
            unset();
    }
    EnvGuard(const EnvGuard&) = delete;
    EnvGuard& operator=(const EnvGuard&) = delete;

    void set(const std::string& value) { setenv(name.c_str(), value.c_str(), 1); }
    void unset() { unsetenv(name.c_str()); }

private:
    std::string name;
    std::optional<std::string> old_value;
};
