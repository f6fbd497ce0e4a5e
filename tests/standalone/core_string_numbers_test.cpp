#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "host/core/core_string.h"
#include "tests/support/comma_locale.h"

namespace {

double parse(const char* text) {
    return CoreString(text).to_double();
}

TEST(CoreStringNumbers, ReadsTheNumberAtTheStart) {
    EXPECT_EQ(parse("1.5"), 1.5);
    EXPECT_EQ(parse("  \t\n-0.25 0.5"), -0.25);
    EXPECT_EQ(parse("+2.5"), 2.5);
    EXPECT_EQ(parse("1e-3x"), 0.001);
    EXPECT_EQ(parse(".5"), 0.5);
    EXPECT_EQ(parse("5."), 5.0);
    EXPECT_EQ(parse("1,5"), 1.0);
}

TEST(CoreStringNumbers, ReadsZeroWhereThereIsNoNumber) {
    for (const char* text : {"", " ", "x1", "+", "-", ".", "+-1", "e5", "--1"})
        EXPECT_EQ(parse(text), 0.0) << text;
    EXPECT_EQ(parse("0x10"), 0.0);
}

TEST(CoreStringNumbers, ValuesOutOfRangeSaturate) {
    EXPECT_EQ(parse("1e400"), HUGE_VAL);
    EXPECT_EQ(parse("-1e400"), -HUGE_VAL);
    EXPECT_EQ(parse("1e-400"), 0.0);
    EXPECT_TRUE(std::signbit(parse("-1e-400")));
    EXPECT_EQ(parse("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(parse("1e99999999999999999999"), HUGE_VAL);
}

TEST(CoreStringNumbers, ReadsTheWordsForInfinityAndNotANumber) {
    EXPECT_EQ(parse("inf"), HUGE_VAL);
    EXPECT_EQ(parse("-Infinity"), -HUGE_VAL);
    EXPECT_TRUE(std::isnan(parse("NaN")));
}

TEST(CoreStringNumbers, WritesTheShortestFormThatReadsBack) {
    EXPECT_EQ(CoreString::from_float(0.1f), "0.1");
    EXPECT_EQ(CoreString::from_float(1.0f), "1");
    EXPECT_EQ(CoreString::from_float(16777216.0f), "16777216");
    EXPECT_EQ(CoreString::from_float(0.333333343f), "0.33333334");
    EXPECT_EQ(CoreString::from_double(0.1), "0.1");
    EXPECT_EQ(CoreString::from_double(1.0 / 3.0), "0.3333333333333333");
    EXPECT_EQ(CoreString::from_unsigned(4294967295u), "4294967295");
    EXPECT_EQ(CoreString::from_int(-2147483647 - 1), "-2147483648");
}

TEST(CoreStringNumbers, EveryFloatReadsBackToItsBits) {
    std::mt19937 random(709);
    for (int i = 0; i < 100'000; ++i) {
        const uint32_t bits = random();
        float value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isnan(value))
            continue;
        const float read = static_cast<float>(CoreString::from_float(value).to_double());
        ASSERT_EQ(std::memcmp(&read, &value, sizeof value), 0) << std::hex << bits;
    }
}

TEST(CoreStringNumbers, TheProcessLocaleChangesNothing) {
    const CommaLocale locale;
    if (!locale.is_set)
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    ASSERT_EQ(std::string(std::localeconv()->decimal_point), ",");
    EXPECT_EQ(CoreString::from_float(0.5f), "0.5");
    EXPECT_EQ(CoreString::from_double(1.25), "1.25");
    EXPECT_EQ(parse("0.5"), 0.5);
    EXPECT_EQ(parse("0,5"), 0.0);
    EXPECT_EQ(parse("1.5e400"), HUGE_VAL);
    EXPECT_EQ(CoreString("\xC4I").get_lower_case(), "\xC4i");
}

} // namespace
