#include "viewer/image_list.h"

#include <filesystem>

#include "diagnostics/failure.h"
#include "tests/viewer/viewer_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using viewer::ImageList;

/// Files "0.exr", "1.exr" and so on, as wide as their numbers plus one.
class ImagesOfAList : public ViewerTest {
protected:
    std::string make(int number) {
        const std::string path = folder.file(std::to_string(number) + ".exr");
        write_image(path, number + 1, 1, [](int, int) { return Rgb{1, 1, 1}; });
        return path;
    }
    int get_width() const { return list.get_image()->width; }

    viewer::ImageList list;
};

TEST_F(ImagesOfAList, AreReadWhenTheyAreWanted) {
    const std::string second = folder.file("1.exr");
    list.add(make(0));
    list.add(second); // The file does not exist yet.
    EXPECT_FALSE(list.get_image());
    list.open(folder.file("0.exr"));
    EXPECT_EQ(list.get_error(), std::nullopt);
    make(1);
    list.step(1);
    EXPECT_EQ(get_width(), 2);
    EXPECT_EQ(list.get_error(), std::nullopt);
}

TEST_F(ImagesOfAList, StayInMemoryWhileTheyAreAmongTheLast) {
    for (int i = 0; i < 5; ++i)
        list.open(make(i));
    std::filesystem::remove(folder.file("3.exr"));
    std::filesystem::remove(folder.file("0.exr"));
    list.step(-1);
    EXPECT_EQ(get_width(), 4) << "though the file is gone";
    list.step(-3);
    EXPECT_EQ(list.get_error().value().file, folder.file("0.exr")) << "it was read long ago";
    EXPECT_EQ(get_width(), 4);
}

TEST_F(ImagesOfAList, AreReadAgainAfterAChange) {
    const std::string first = make(0), second = make(1);
    list.open(first);
    list.open(second);
    write_image(first, 7, 1, [](int, int) { return Rgb{1, 1, 1}; });
    list.refresh(first);
    EXPECT_EQ(get_width(), 2) << "the current one is another";
    list.step(-1);
    EXPECT_EQ(get_width(), 7);
    write_image(first, 9, 1, [](int, int) { return Rgb{1, 1, 1}; });
    list.refresh(first);
    EXPECT_EQ(get_width(), 9);
}

TEST_F(ImagesOfAList, StayWhatTheyAreWhenAnotherCannotBeOpened) {
    list.open(make(0));
    EXPECT_THROW(list.open(folder.file("none.exr")), diagnostics::Failure);
    EXPECT_EQ(get_width(), 1);
    EXPECT_EQ(list.get_current_path(), folder.file("0.exr"));
    EXPECT_THAT(list.get_paths(), ElementsAre(folder.file("0.exr")));
    EXPECT_EQ(list.get_error(), std::nullopt);
}

TEST_F(ImagesOfAList, AreOfNoAvailWhenThereAreNone) {
    list.step(1);
    EXPECT_FALSE(list.get_image());
    EXPECT_EQ(list.get_current_path(), "");
}

} // namespace
