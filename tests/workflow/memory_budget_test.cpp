#include "workflow/memory_budget.h"

#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "diagnostics/failure.h"

namespace {

using workflow::MemoryBudget;
using workflow::MemoryShare;
using workflow::parse_memory_size;

TEST(MemoryBudgets, GiveWhatIsFree) {
    MemoryBudget budget(100);
    MemoryShare first(&budget), second(&budget);
    EXPECT_TRUE(first.try_to_hold(60));
    EXPECT_FALSE(second.try_to_hold(41));
    EXPECT_TRUE(second.try_to_hold(40));
    EXPECT_FALSE(first.try_to_hold(61));
    second.release();
    EXPECT_TRUE(first.try_to_hold(61));
}

TEST(MemoryBudgets, KeepWhatAShareHoldsWhenItNeedsLess) {
    MemoryBudget budget(100);
    MemoryShare first(&budget), second(&budget);
    EXPECT_TRUE(first.try_to_hold(60));
    EXPECT_TRUE(first.try_to_hold(10));
    EXPECT_FALSE(second.try_to_hold(41)) << "the buffers are kept for the next image";
}

TEST(MemoryBudgets, GiveTooMuchToASingleShare) {
    MemoryBudget budget(100);
    MemoryShare first(&budget), second(&budget);
    EXPECT_TRUE(first.try_to_hold(500));
    EXPECT_FALSE(second.try_to_hold(1));
    first.release();
    EXPECT_TRUE(second.try_to_hold(1));
    EXPECT_FALSE(first.try_to_hold(500));
}

TEST(MemoryBudgets, TakeBackWhatAShareHeldAtItsEnd) {
    MemoryBudget budget(100);
    { EXPECT_TRUE(MemoryShare(&budget).try_to_hold(100)); }
    EXPECT_TRUE(MemoryShare(&budget).try_to_hold(100));
}

TEST(MemoryBudgets, LetAShareWaitForOthers) {
    MemoryBudget budget(100);
    MemoryShare first(&budget);
    EXPECT_TRUE(first.try_to_hold(60));
    std::thread waiting([&] {
        MemoryShare second(&budget);
        second.hold(50); // returns only after the release
    });
    first.release();
    waiting.join();
    EXPECT_TRUE(first.try_to_hold(100));
}

TEST(MemoryBudgets, AreOptional) {
    MemoryShare share;
    EXPECT_TRUE(share.try_to_hold(~std::uint64_t{0}));
    share.hold(~std::uint64_t{0});
}

TEST(MemorySizes, HaveUnitsOf1024) {
    EXPECT_EQ(parse_memory_size("1073741824"), 1073741824u);
    EXPECT_EQ(parse_memory_size("500M"), 524288000u);
    EXPECT_EQ(parse_memory_size("1.5G"), 1610612736u);
    EXPECT_EQ(parse_memory_size("2g"), 2147483648u);
    EXPECT_EQ(parse_memory_size("2GB"), 2147483648u);
    EXPECT_EQ(parse_memory_size("2GiB"), 2147483648u);
    EXPECT_EQ(parse_memory_size("1T"), 1099511627776u);
    EXPECT_EQ(parse_memory_size("64k"), 65536u);
}

TEST(MemorySizes, ArePositiveNumbers) {
    for (const char* text :
         {"", "G", "-1G", "0", "0.0001", "1X", "1GG", "1 G", "nan", "inf", "1e300", "1,5G"})
        EXPECT_THROW(parse_memory_size(text), diagnostics::Failure) << text;
}

} // namespace
