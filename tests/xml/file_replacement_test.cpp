#include <cerrno>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/file_size_limit.h"
#include "tests/support/other_user.h"
#include "tests/xml/xml_test.h"

namespace {

class FileReplacing : public XmlTest {
protected:
    static XmlError write(const std::string& path) { return small_tree().write_to_file(path.c_str()); }
    static XmlNode small_tree() { return XmlNode::parse_string("<a/>"); }
    static std::string small_text() {
        return "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a/>\n";
    }
    static unsigned mode_of(const std::string& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TempDir folder;
};

TEST_F(FileReplacing, MakesANewFileAndLeavesNothingElse) {
    EXPECT_EQ(write(folder.path("new.xml")), XmlError::NONE);
    EXPECT_EQ(read_bytes(folder.path("new.xml")), small_text());
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_F(FileReplacing, ANewFileHasTheModeOfTheProcess) {
    const mode_t previous = umask(027);
    EXPECT_EQ(write(folder.path("new.xml")), XmlError::NONE);
    umask(previous);
    EXPECT_EQ(mode_of(folder.path("new.xml")), 0640u);
}

TEST_F(FileReplacing, AnExistingFileIsReplacedAndKeepsItsPermissions) {
    const std::string path = folder.file("old.xml", std::string(100000, 'x'));
    ASSERT_EQ(chmod(path.c_str(), 0604), 0);
    EXPECT_EQ(write(path), XmlError::NONE);
    EXPECT_EQ(read_bytes(path), small_text());
    EXPECT_EQ(mode_of(path), 0604u);
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_F(FileReplacing, AFullDiskIsCode16AndLeavesTheOldFile) {
    const std::string path = folder.file("old.xml", "old");
    {
        const FileSizeLimit limit(16);
        EXPECT_EQ(write(path), XmlError::CANNOT_WRITE);
        EXPECT_EQ(write(folder.path("new.xml")), XmlError::CANNOT_WRITE);
    }
    EXPECT_EQ(read_bytes(path), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_F(FileReplacing, AFullDiskIsNoticedInTheMiddleOfALargeTree) {
    XmlNode top = XmlNode::create_top_node("a");
    for (int i = 0; i < 50000; ++i)
        top.add_child("b").add_text("text");
    const std::string path = folder.file("old.xml", "old");
    {
        const FileSizeLimit limit(200000);
        EXPECT_EQ(top.write_to_file(path.c_str()), XmlError::CANNOT_WRITE);
    }
    EXPECT_EQ(read_bytes(path), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
    EXPECT_EQ(top.write_to_file(path.c_str()), XmlError::NONE);
    EXPECT_EQ(XmlNode::parse_file(path.c_str()).get_child("a").count_children("b"), 50000);
}

TEST_F(FileReplacing, ATargetThatCannotBeOpenedIsCode15) {
    EXPECT_EQ(write(folder.path("none/out.xml")), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(write(folder.path("")), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(write("/"), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(write(""), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(small_tree().write_to_file(nullptr), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(write(folder.path(std::string(300, 'x'))), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(write(folder.file("plain", "x") + "/out.xml"), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_F(FileReplacing, ADirectoryIsCode15) {
    std::filesystem::create_directory(folder.path("sub"));
    EXPECT_EQ(write(folder.path("sub")), XmlError::CANNOT_OPEN_FOR_WRITING);
}

TEST_F(FileReplacing, AWriteProtectedFileIsCode15) {
    const std::string path = folder.file("old.xml", "old");
    ASSERT_EQ(chmod(folder.path("").c_str(), 0777), 0);
    if (geteuid() == 0) {
        ASSERT_EQ(chown(path.c_str(), OTHER_USER, OTHER_USER), 0);
    }
    const auto write_as_owner = [&](mode_t mode) {
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        const WithoutPrivileges unprivileged;
        return write(path);
    };
    EXPECT_EQ(write_as_owner(0444), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(read_bytes(path), "old");
    EXPECT_EQ(write_as_owner(0644), XmlError::NONE);
    EXPECT_EQ(read_bytes(path), small_text());
}

TEST_F(FileReplacing, TheLongestNamesAreReplacedToo) {
    const std::string path = folder.path(std::string(255, 'x'));
    EXPECT_EQ(write(path), XmlError::NONE);
    EXPECT_EQ(write(path), XmlError::NONE);
    EXPECT_EQ(read_bytes(path), small_text());
}

TEST_F(FileReplacing, ALinkStaysAndItsTargetIsReplaced) {
    std::filesystem::create_directory(folder.path("sub"));
    const std::string target = folder.file("sub/real.xml", "old");
    std::filesystem::create_symlink("sub/real.xml", folder.path("link.xml"));
    std::filesystem::create_symlink(folder.path("link.xml"), folder.path("link2.xml"));
    EXPECT_EQ(write(folder.path("link2.xml")), XmlError::NONE);
    EXPECT_EQ(read_bytes(target), small_text());
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link.xml")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link2.xml")));
}

TEST_F(FileReplacing, ALinkToNothingMakesItsTarget) {
    std::filesystem::create_symlink("later.xml", folder.path("link.xml"));
    EXPECT_EQ(write(folder.path("link.xml")), XmlError::NONE);
    EXPECT_EQ(read_bytes(folder.path("later.xml")), small_text());
}

TEST_F(FileReplacing, LinksInACircleAreCode15) {
    std::filesystem::create_symlink("b.xml", folder.path("a.xml"));
    std::filesystem::create_symlink("a.xml", folder.path("b.xml"));
    EXPECT_EQ(write(folder.path("a.xml")), XmlError::CANNOT_OPEN_FOR_WRITING);
}

TEST_F(FileReplacing, ADeviceIsWrittenToAndNotReplaced) {
    EXPECT_EQ(write("/dev/null"), XmlError::NONE);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_EQ(write("/dev/full"), XmlError::CANNOT_WRITE);
}

TEST_F(FileReplacing, APipeThatNobodyReadsIsCode15) {
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(write(folder.path("pipe")), XmlError::CANNOT_OPEN_FOR_WRITING);
}

TEST_F(FileReplacing, ARelativePathIsReplacedInItsFolder) {
    const std::filesystem::path previous = std::filesystem::current_path();
    std::filesystem::current_path(folder.path(""));
    EXPECT_EQ(write("here.xml"), XmlError::NONE);
    EXPECT_EQ(write("here.xml"), XmlError::NONE);
    std::filesystem::current_path(previous);
    EXPECT_EQ(read_bytes(folder.path("here.xml")), small_text());
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_F(FileReplacing, AFailureLeavesTheSystemsReasonInErrno) {
    EXPECT_EQ(write(folder.path("none/out.xml")), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(write(folder.path("")), XmlError::CANNOT_OPEN_FOR_WRITING);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(write("/dev/full"), XmlError::CANNOT_WRITE);
    EXPECT_EQ(errno, ENOSPC);
}

} // namespace
