#include "colorio/ocio/source_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/colorio/ocio/test_configs.h"

namespace {

TEST(SourceFilesOfV2, AreFoundInInactiveSpacesViewTransformsAndNamedTransforms) {
    const TempDir folder;
    const auto config = test_configs::load(folder, R"(ocio_profile_version: 2
search_path: luts
roles: {default: lin}
file_rules:
  - !<Rule> {name: Default, colorspace: default}
displays:
  d:
    - !<View> {name: v, colorspace: lin}
inactive_colorspaces: [old]
view_transforms:
  - !<ViewTransform>
    name: film
    from_scene_reference: !<FileTransform> {src: film.clf}
display_colorspaces:
  - !<ColorSpace>
    name: monitor
    from_display_reference: !<FileTransform> {src: monitor.cube}
colorspaces:
  - !<ColorSpace>
    name: lin
  - !<ColorSpace>
    name: old
    to_scene_reference: !<FileTransform> {src: old.spi1d}
named_transforms:
  - !<NamedTransform>
    name: balance
    transform: !<FileTransform> {src: balance.cdl}
)");
    EXPECT_THAT(ocio::get_source_files(config),
                testing::ElementsAre(folder.file("luts/balance.cdl"), folder.file("luts/film.clf"),
                                     folder.file("luts/monitor.cube"), folder.file("luts/old.spi1d")));
}

} // namespace
