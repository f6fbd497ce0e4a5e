#include "host/sys/sys_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/file_size_limit.h"
#include "tests/support/other_user.h"
#include "tests/support/temp_dir.h"

namespace {

// The permissions, in octal as people write them.
int mode_of(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? static_cast<int>(status.st_mode & 0777) : -1;
}

bool write_file(const std::string& path, const std::string& content) {
    SysFile file(path.c_str(), SysFile::MODE_WRITE, 0);
    return file.is_opened() && file.write(CoreString(std::string_view(content))) >= 0 && file.close();
}

TEST(SysFileWriting, TheFileAppearsWholeWhenItIsClosed) {
    const TempDir folder;
    const std::string path = folder.file("lut.spi1d");
    SysFile file(path.c_str(), SysFile::MODE_WRITE, 0);
    ASSERT_TRUE(file.is_opened());
    EXPECT_EQ(file.write("Version 1\n"), 10);
    EXPECT_EQ(file.write(""), 0);
    EXPECT_EQ(file.write("{ }\n"), 4);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(file.close());
    EXPECT_EQ(folder.read("lut.spi1d"), "Version 1\n{ }\n");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, BytesOfAnyKindAndSizeArriveAsTheyAre) {
    const TempDir folder;
    std::string content;
    for (int i = 0; i < 300'000; ++i)
        content += static_cast<char>(i * 7 + i / 256);
    EXPECT_TRUE(write_file(folder.file("bytes"), content));
    EXPECT_EQ(folder.read("bytes"), content);
}

TEST(SysFileWriting, AFileNeverClosedLeavesTheOldOneAndNothingElse) {
    const TempDir folder;
    folder.write("kept", "old");
    {
        SysFile file(folder.file("kept").c_str(), SysFile::MODE_WRITE, 0);
        file.write("new");
        SysFile absent(folder.file("absent").c_str(), SysFile::MODE_WRITE, 0);
        absent.write("new");
    }
    EXPECT_EQ(folder.read("kept"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, AKilledProcessLeavesTheOldFileAndNothingElse) {
    const TempDir folder;
    folder.write("kept", "old");
    const int nameless = open(folder.get_path().c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
    if (nameless < 0)
        GTEST_SKIP() << "this file system has no files without a name";
    close(nameless);
    const pid_t process = fork();
    if (process == 0) {
        SysFile file(folder.file("kept").c_str(), SysFile::MODE_WRITE, 0);
        file.write(CoreString(std::string_view(std::string(200'000, 'x'))));
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(folder.read("kept"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, TheOldFilesPermissionsStay) {
    const TempDir folder;
    for (const int mode : {0600, 0640, 0666, 0755}) {
        folder.write("file", "old");
        chmod(folder.file("file").c_str(), static_cast<mode_t>(mode));
        EXPECT_TRUE(write_file(folder.file("file"), "new"));
        EXPECT_EQ(mode_of(folder.file("file")), mode);
    }
}

TEST(SysFileWriting, ANewFilesPermissionsFollowTheUmask) {
    const TempDir folder;
    const mode_t old_mask = umask(027);
    EXPECT_TRUE(write_file(folder.file("file"), "new"));
    umask(old_mask);
    EXPECT_EQ(mode_of(folder.file("file")), 0640);
}

TEST(SysFileWriting, LinksAreFollowedAndStay) {
    const TempDir folder;
    folder.write("target", "old");
    std::filesystem::create_symlink("target", folder.file("link"));
    EXPECT_TRUE(write_file(folder.file("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(folder.read("target"), "new");
}

TEST(SysFileWriting, NamesAsLongAsTheFileSystemAllowsWork) {
    const TempDir folder;
    const std::string name(255, 'n');
    EXPECT_TRUE(write_file(folder.file(name), "new"));
    EXPECT_EQ(folder.read(name), "new");
}

TEST(SysFileWriting, APathWithoutAFolderMeansTheCurrentOne) {
    const TempDir folder;
    const std::filesystem::path old_folder = std::filesystem::current_path();
    std::filesystem::current_path(folder.get_path());
    EXPECT_TRUE(write_file("plain", "new"));
    std::filesystem::current_path(old_folder);
    EXPECT_EQ(folder.read("plain"), "new");
}

TEST(SysFileWriting, FoldersAndMissingFoldersDoNotOpen) {
    const TempDir folder;
    SysFile in_folder(folder.get_path().c_str(), SysFile::MODE_WRITE, 0);
    EXPECT_FALSE(in_folder.is_opened());
    EXPECT_EQ(in_folder.write("x"), -1);
    EXPECT_FALSE(in_folder.close());
    EXPECT_FALSE(SysFile(folder.file("no/file").c_str(), SysFile::MODE_WRITE, 0).is_opened());
    EXPECT_FALSE(SysFile("", SysFile::MODE_WRITE, 0).is_opened());
    EXPECT_EQ(folder.count_entries(), 0u);
}

TEST(SysFileWriting, AWriteProtectedFileDoesNotOpen) {
    const TempDir folder;
    folder.write("file", "old");
    chmod(folder.file("file").c_str(), 0444);
    chmod(folder.get_path().c_str(), 0777);
    const WithoutPrivileges unprivileged;
    EXPECT_FALSE(SysFile(folder.file("file").c_str(), SysFile::MODE_WRITE, 0).is_opened());
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, AFullDiskIsReportedAndLeavesTheOldFile) {
    const TempDir folder;
    folder.write("file", "old");
    const std::string large(200'000, 'x');
    {
        const FileSizeLimit limit(100'000);
        SysFile file(folder.file("file").c_str(), SysFile::MODE_WRITE, 0);
        ASSERT_TRUE(file.is_opened());
        EXPECT_EQ(file.write(CoreString(std::string_view(large))), -1);
        EXPECT_FALSE(file.is_opened());
        EXPECT_EQ(file.write("more"), -1);
        EXPECT_FALSE(file.close());
    }
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, ADiskFullAtTheLastBytesIsReportedByClose) {
    const TempDir folder;
    folder.write("file", "old");
    {
        const FileSizeLimit limit(1000);
        SysFile file(folder.file("file").c_str(), SysFile::MODE_WRITE, 0);
        const std::string text(1001, 'x');
        const long long written = file.write(CoreString(std::string_view(text)));
        EXPECT_TRUE(written == 1001 || written == -1);
        EXPECT_FALSE(file.close());
    }
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST(SysFileWriting, ADeviceIsWrittenInPlace) {
    if (!std::filesystem::is_character_file("/dev/full"))
        GTEST_SKIP() << "no /dev/full";
    EXPECT_FALSE(write_file("/dev/full", "x"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_TRUE(write_file("/dev/null", "x"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST(SysFileReading, ReadsOnFromWhereItStopped) {
    const TempDir folder;
    SysFile file(folder.write("file", "abcdef").c_str(), SysFile::MODE_READ, 0);
    ASSERT_TRUE(file.is_opened());
    EXPECT_EQ(file.read(4), "abcd");
    EXPECT_EQ(file.read(0), "");
    EXPECT_EQ(file.read(4), "ef");
    EXPECT_EQ(file.read(4), "");
    EXPECT_EQ(file.write("x"), -1);
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.is_opened());
    EXPECT_FALSE(file.close());
    EXPECT_EQ(file.read(4), "");
    EXPECT_EQ(folder.read("file"), "abcdef");
}

TEST(SysFileReading, AFileOpenForWritingIsNotRead) {
    const TempDir folder;
    SysFile file(folder.write("file", "abcdef").c_str(), SysFile::MODE_WRITE, 0);
    EXPECT_EQ(file.read(4), "");
    EXPECT_TRUE(file.close());
    EXPECT_FALSE(file.is_opened());
}

TEST(SysFileReading, AskingForMoreThanThereIsTakesWhatThereIs) {
    const TempDir folder;
    const std::string content(200'001, '\xFF');
    SysFile file(folder.write("file", content).c_str(), SysFile::MODE_READ, 0);
    EXPECT_EQ(file.read(0xFFFFFFFFu).view(), content);
}

TEST(SysFileReading, AbsentFilesAndFoldersDoNotOpen) {
    const TempDir folder;
    EXPECT_FALSE(SysFile(folder.file("absent").c_str(), SysFile::MODE_READ, 0).is_opened());
    SysFile file(folder.get_path().c_str(), SysFile::MODE_READ, 0);
    EXPECT_FALSE(file.is_opened());
    EXPECT_EQ(file.read(1), "");
    EXPECT_FALSE(file.close());
}

} // namespace
