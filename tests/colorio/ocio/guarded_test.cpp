#include "colorio/ocio/guarded.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "tests/colorio/ocio/test_configs.h"

namespace {

using test_configs::refusal_of;

TEST(Guarded, HandsBackWhatTheCallReturns) {
    EXPECT_EQ(ocio::guarded([] { return 7; }), 7);
}

TEST(Guarded, ForeignExceptionsArriveAsTheDoorsOwn) {
    EXPECT_EQ(refusal_of([] { ocio::guarded([] { throw std::out_of_range("too far"); }); }), "too far");
}

TEST(Guarded, ShortageOfMemoryPasses) {
    EXPECT_THROW(ocio::guarded([] { throw std::bad_alloc(); }), std::bad_alloc);
}

TEST(Guarded, AMessageIsNeverEmpty) {
    EXPECT_EQ(refusal_of([] { ocio::guarded([] { throw ocio::Exception(""); }); }),
              "OpenColorIO failed without giving a reason");
}

} // namespace
