#include "image/startable_threads.h"

#include <OpenImageIO/imageio.h>
#include <gtest/gtest.h>

#include "tests/support/no_new_threads.h"

namespace {

TEST(StartableThreads, AreAsManyAsWantedWhereThereIsRoom) {
    EXPECT_EQ(image::count_startable_threads(5), 5);
    EXPECT_EQ(image::count_startable_threads(0), 0);
    EXPECT_EQ(image::limit_threads(3), 3);
    EXPECT_EQ(OIIO::get_int_attribute("threads"), 3);
    EXPECT_EQ(OIIO::get_int_attribute("exr_threads"), 3);
}

TEST(StartableThreads, ASingleThreadDecodesItself) {
    EXPECT_EQ(image::limit_threads(1), 1);
    EXPECT_EQ(OIIO::get_int_attribute("threads"), 1);
    EXPECT_EQ(OIIO::get_int_attribute("exr_threads"), -1);
}

TEST(StartableThreads, AreNoneWhereThereIsNone) {
    const NoNewThreads full;
    EXPECT_EQ(image::count_startable_threads(5), 0);
    EXPECT_EQ(image::limit_threads(3), 1);
    EXPECT_EQ(image::get_thread_limit(), 1);
    EXPECT_EQ(OIIO::get_int_attribute("exr_threads"), -1);
}

} // namespace
