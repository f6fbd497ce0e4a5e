#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pixel_test {

/// The instruction sets that the kernels were built for and this processor has, as Highway's bits, the best
/// first; the last one is the scalar code.
std::vector<std::int64_t> vector_targets();

/// True for the instruction set that does without vectors.
bool is_scalar(std::int64_t target);

/// Restricts the kernels to one instruction set for its lifetime.
class TargetGuard {
public:
    explicit TargetGuard(std::int64_t target);
    ~TargetGuard();
    TargetGuard(const TargetGuard&) = delete;
    TargetGuard& operator=(const TargetGuard&) = delete;
};

/// Base of tests that run once on each instruction set.
class EveryTarget : public testing::TestWithParam<std::int64_t> {
private:
    TargetGuard guard_{GetParam()};
};

std::string target_name(std::int64_t target);

} // namespace pixel_test

/// Runs the tests of a fixture derived from EveryTarget.
#define RUN_ON_EVERY_TARGET(fixture)                                                                         \
    INSTANTIATE_TEST_SUITE_P(On, fixture, testing::ValuesIn(pixel_test::vector_targets()),                   \
                             [](const auto& info) { return pixel_test::target_name(info.param); })
