#pragma once

#include <unistd.h>

/// A user that is neither the superuser nor, usually, the one who runs the tests.
constexpr unsigned int OTHER_USER = 65534;

/// Takes the superuser's rights away until the end of the scope, so that permissions mean something. Does
/// nothing for anybody else.
class WithoutPrivileges {
public:
    WithoutPrivileges() : old_user(geteuid()) {
        if (old_user == 0 && seteuid(OTHER_USER) != 0)
            old_user = OTHER_USER;
    }
    ~WithoutPrivileges() {
        if (old_user == 0 && seteuid(0) != 0)
            _exit(1);
    }
    WithoutPrivileges(const WithoutPrivileges&) = delete;
    WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

private:
    uid_t old_user;
};
