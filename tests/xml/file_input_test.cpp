#include "xml/file_input.h"

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/other_user.h"
#include "tests/xml/xml_test.h"

namespace {

class FileInput : public XmlTest {
protected:
    static std::string code_of(const std::string& path) {
        XmlResults results;
        XmlNode::parse_file(path.c_str(), nullptr, &results);
        return outcome(results);
    }

    TempDir folder;
};

TEST_F(FileInput, AMissingFileIsCode10) {
    XmlResults results;
    EXPECT_TRUE(XmlNode::parse_file(folder.path("none.xml").c_str(), nullptr, &results).is_empty());
    EXPECT_EQ(outcome(results), "10 at 0:0");
    EXPECT_EQ(code_of(""), "10 at 0:0");
    EXPECT_TRUE(XmlNode::parse_file(nullptr, nullptr, &results).is_empty());
    EXPECT_EQ(outcome(results), "10 at 0:0");
    EXPECT_TRUE(XmlNode::parse_file(nullptr).is_empty());
}

TEST_F(FileInput, AFileOfZeroBytesIsCode3) {
    EXPECT_EQ(code_of(folder.file("empty.xml", "")), "3 at 0:0");
}

TEST_F(FileInput, AFileOfBlanksHasNoTag) {
    EXPECT_EQ(code_of(folder.file("blank.xml", " \n ")), "2 at 2:2");
}

TEST_F(FileInput, ADirectoryIsCode10) {
    EXPECT_EQ(code_of(folder.path("")), "10 at 0:0");
    EXPECT_EQ(code_of("/"), "10 at 0:0");
    EXPECT_EQ(code_of(folder.file("plain", "x") + "/below"), "10 at 0:0");
}

TEST_F(FileInput, AFilePast2GiBIsCode10) {
    const std::string path = folder.file("huge.xml", "<a/>");
    ASSERT_EQ(truncate(path.c_str(), off_t{1} << 40), 0);
    EXPECT_EQ(code_of(path), "10 at 0:0");
}

TEST_F(FileInput, AFileThatOnlyTheReadTellsTheSizeOfIsRead) {
    xml::OwnedText status;
    ASSERT_TRUE(xml::read_file("/proc/self/status", status));
    EXPECT_GT(status.length, 0u);
    EXPECT_EQ(status.length, std::strlen(status.buffer));
    std::free(status.buffer);
}

TEST_F(FileInput, ABufferEndsWithFourZeroBytes) {
    xml::OwnedText file;
    ASSERT_TRUE(xml::read_file(folder.file("a.xml", "<a/>").c_str(), file));
    EXPECT_EQ(file.length, 4u);
    EXPECT_EQ(std::memcmp(file.buffer, "<a/>\0\0\0\0", 8), 0);
    std::free(file.buffer);
}

TEST_F(FileInput, APipeAndADeviceAreCode10AndNothingWaits) {
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(code_of(path), "10 at 0:0");
    EXPECT_EQ(code_of("/dev/zero"), "10 at 0:0");
    EXPECT_EQ(code_of("/dev/null"), "10 at 0:0");
}

TEST_F(FileInput, AnUnreadableFileIsCode10) {
    const std::string path = folder.file("secret.xml", "<a/>");
    ASSERT_EQ(chmod(folder.path("").c_str(), 0755), 0);
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    const auto code_for_others = [&] {
        const WithoutPrivileges unprivileged;
        return code_of(path);
    };
    EXPECT_EQ(code_for_others(), code_of(path)) << "the folder can be entered";
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    EXPECT_EQ(code_for_others(), "10 at 0:0");
}

TEST_F(FileInput, AUtf8MarkIsSkippedAndNotCounted) {
    const std::string path = folder.file("mark.xml", "\xEF\xBB\xBF<a>&x;</a>");
    EXPECT_EQ(code_of(path), "12 at 1:4");
    EXPECT_EQ(describe(XmlNode::parse_file(folder.file("good.xml", "\xEF\xBB\xBF<a/>").c_str())), "a");
    XmlSettings settings;
    settings.guess_wide_characters = false;
    set_xml_settings(settings);
    EXPECT_EQ(describe(XmlNode::parse_file(folder.path("good.xml").c_str())), "a");
}

TEST_F(FileInput, OnlyOneMarkIsSkipped) {
    EXPECT_EQ(code_of(folder.file("two.xml", "\xEF\xBB\xBF\xEF\xBB\xBF<a/>")), "8 at 1:1");
}

TEST_F(FileInput, DosLineEndsAreRead) {
    const std::string text = "<?xml version='1.0'?>\r\n<a>\r\n\t<b>1.0\r\n2.0</b>\r\n</a>\r\n";
    EXPECT_EQ(describe(XmlNode::parse_file(folder.file("dos.xml", text).c_str())),
              "?xml[version=1.0](a(b(\"1.0\n2.0\")))");
}

TEST_F(FileInput, AFirstTagIsSoughtInAFileToo) {
    const std::string path = folder.file("a.xml", "<a><B/></a>");
    EXPECT_EQ(describe(XmlNode::parse_file(path.c_str(), "b")), "B");
    XmlResults results;
    EXPECT_TRUE(XmlNode::parse_file(path.c_str(), "c", &results).is_empty());
    EXPECT_EQ(outcome(results), "11 at 0:0");
}

} // namespace
