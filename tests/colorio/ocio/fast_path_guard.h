#pragma once

#include "colorio/ocio/processor.h"

/// Gives the switch of the fast path its old position back.
class FastPathGuard {
public:
    explicit FastPathGuard(bool enabled) : before_(ocio::get_fast_path()) { ocio::set_fast_path(enabled); }
    ~FastPathGuard() { ocio::set_fast_path(before_); }
    FastPathGuard(const FastPathGuard&) = delete;
    FastPathGuard& operator=(const FastPathGuard&) = delete;

private:
    bool before_;
};
