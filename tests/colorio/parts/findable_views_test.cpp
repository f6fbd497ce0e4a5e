#include "colorio/names/findable_views.h"

#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

TEST(FindableViews, ArePublishedAndShownByTheConfig) {
    TempDir folder;
    CoreVector<CoreString> published;
    published.append("d.v");
    published.append("d.gone");
    const ocio::ConstConfigRcPtr config = test_configs::load(folder, test_configs::ConfigText().str());
    FindableViews views(published, config);
    EXPECT_TRUE(views.contain("d.v"));
    EXPECT_FALSE(views.contain("d.gone"));
    views.note_shown("d.gone");
    EXPECT_TRUE(views.contain("d.gone"));
    views.note_shown("d.unpublished");
    EXPECT_FALSE(views.contain("d.unpublished"));
}

TEST(FindableViews, AreNoneWithoutAConfig) {
    CoreVector<CoreString> published;
    published.append("d.v");
    EXPECT_FALSE(FindableViews(published, ocio::ConstConfigRcPtr()).contain("d.v"));
}

} // namespace
