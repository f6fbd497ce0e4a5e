#include "files/input_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/support/temp_dir.h"

namespace {

using files::InputFile;
using files::read_whole;

TEST(Reading, TakesTheWholeFile) {
    const TempDir folder;
    const std::string bytes = std::string(200000, 'x') + '\0' + "end";
    auto text = read_whole(folder.write("a", bytes), 1 << 20);
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, bytes);
}

TEST(Reading, StopsAtTheLimit) {
    const TempDir folder;
    const std::string path = folder.write("a", "12345");
    EXPECT_TRUE(read_whole(path, 5));
    auto text = read_whole(path, 4);
    ASSERT_FALSE(text);
    EXPECT_EQ(text.get_failure().error_number, EFBIG);
    EXPECT_EQ(text.get_failure().describe(), "cannot read '" + path + "': longer than 4 bytes");
}

TEST(Reading, GoesOnWhereItStopped) {
    const TempDir folder;
    InputFile file(folder.write("a", "abcdef"));
    std::string bytes;
    EXPECT_TRUE(file.read(4, bytes));
    EXPECT_EQ(bytes, "abcd");
    EXPECT_TRUE(file.read(4, bytes));
    EXPECT_EQ(bytes, "abcdef");
    EXPECT_TRUE(file.read(4, bytes));
    EXPECT_EQ(bytes, "abcdef");
}

TEST(Reading, TakesFilesWhoseSizeTheSystemDoesNotTell) {
    auto text = read_whole("/proc/self/status", 1 << 20);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->substr(0, 5), "Name:");
}

TEST(Reading, NeverWaitsForPipesAndDevices) {
    const TempDir folder;
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    for (const std::string& path : {folder.file("pipe"), std::string("/dev/zero"), std::string("/dev/tty")}) {
        if (!std::filesystem::exists(path))
            continue;
        const InputFile file(path);
        EXPECT_FALSE(file.is_open());
        EXPECT_EQ(file.get_failure()->reason, "it exists and is not a regular file");
    }
}

TEST(Reading, SaysWhyAFileCannotBeOpened) {
    const TempDir folder;
    EXPECT_EQ(InputFile(folder.get_path()).get_failure()->error_number, EISDIR);
    EXPECT_EQ(InputFile(folder.file("none")).get_failure()->error_number, ENOENT);
    EXPECT_EQ(InputFile("").get_failure()->error_number, ENOENT);
    EXPECT_EQ(InputFile(folder.file("none")).get_failure()->describe(),
              "cannot read '" + folder.file("none") + "': No such file or directory");
}

} // namespace
