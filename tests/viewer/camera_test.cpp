#include "viewer/camera.h"

#include <gtest/gtest.h>

namespace {

using viewer::Camera;
using viewer::Placement;

TEST(CameraOfAViewer, FitsTheImageIntoTheMiddle) {
    viewer::Camera camera;
    camera.look_at(200, 100, 50, 50);
    const viewer::Placement wide = camera.get_placement();
    EXPECT_EQ(wide.zoom, 2);
    EXPECT_EQ(wide.origin_x, 50);
    EXPECT_EQ(wide.origin_y, 0);
    camera.look_at(100, 200, 400, 200);
    const viewer::Placement high = camera.get_placement();
    EXPECT_EQ(high.zoom, 0.25);
    EXPECT_EQ(high.origin_x, 0);
    EXPECT_EQ(high.origin_y, 75);
}

TEST(CameraOfAViewer, PutsPixelsOnPixelsAtZoomOne) {
    viewer::Camera camera;
    for (int size : {100, 101, 133}) {
        camera.look_at(size, size, 50, 51);
        camera.set_zoom(1);
        const viewer::Placement placement = camera.get_placement();
        EXPECT_EQ(placement.origin_x, static_cast<int>(placement.origin_x)) << size;
        EXPECT_EQ(placement.origin_y, static_cast<int>(placement.origin_y)) << size;
        EXPECT_NEAR(placement.origin_x, (size - 50) / 2.0, 0.5);
    }
}

TEST(CameraOfAViewer, KeepsWhatIsBelowThePointerWhenItZooms) {
    viewer::Camera camera;
    camera.look_at(640, 480, 1000, 800);
    const double x = camera.get_placement().to_image_x(100), y = camera.get_placement().to_image_y(50);
    camera.zoom_at(8, 100, 50);
    const viewer::Placement zoomed = camera.get_placement();
    EXPECT_NEAR(zoomed.to_image_x(100), x, 0.5 / zoomed.zoom);
    EXPECT_NEAR(zoomed.to_image_y(50), y, 0.5 / zoomed.zoom);
}

TEST(CameraOfAViewer, MovesTheImageWithThePointer) {
    viewer::Camera camera;
    camera.look_at(100, 100, 100, 100);
    camera.set_zoom(4);
    const viewer::Placement before = camera.get_placement();
    camera.pan(30, -20);
    EXPECT_EQ(camera.get_placement().origin_x, before.origin_x + 30);
    EXPECT_EQ(camera.get_placement().origin_y, before.origin_y - 20);
}

TEST(CameraOfAViewer, KeepsItsZoomForImagesOfOneSizeAndFitsOthers) {
    viewer::Camera camera;
    camera.look_at(100, 100, 50, 50);
    camera.set_zoom(8);
    camera.look_at(120, 90, 50, 50);
    EXPECT_EQ(camera.get_placement().zoom, 8);
    camera.look_at(120, 90, 60, 30);
    EXPECT_TRUE(camera.is_fitting());
    EXPECT_EQ(camera.get_placement().zoom, 2);
}

TEST(CameraOfAViewer, StaysWithinItsLimits) {
    viewer::Camera camera;
    camera.look_at(100, 100, 100, 100);
    camera.set_zoom(1e9);
    EXPECT_EQ(camera.get_placement().zoom, viewer::Camera::MAX_ZOOM);
    camera.zoom_at(1e-9, 0, 0);
    EXPECT_EQ(camera.get_placement().zoom, viewer::Camera::MIN_ZOOM);
}

} // namespace
