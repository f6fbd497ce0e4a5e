#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include "conformance/check.h"
#include "conformance/temporary_folder.h"
#include "host/sys/sys_env.h"
#include "host/sys/sys_file.h"
#include "host/sys/sys_filesystem.h"

namespace conformance {

namespace {

CoreString to_string(const std::string& text) {
    return CoreString(std::string_view(text));
}

void check_written(Findings& findings) {
    const TemporaryFolder folder;
    SysFile file(to_string(folder.get_path() + "/lut"), SysFile::MODE_WRITE, 0);
    findings.expect(file.is_opened(), "a new file is opened for writing");
    const std::string bytes("Version 1\n\0\xFF\r\n", 14);
    findings.expect(file.write(to_string(bytes)) == 14, "write returns the count of bytes");
    findings.expect(file.write(to_string("}\n")) == 2, "write returns the count of further bytes");
    findings.expect(file.close(), "close completes the file");
    findings.expect_text(folder.read("lut"), bytes + "}\n", "the content");
    findings.expect(!file.is_opened() && !file.close(), "a closed file is not open");
}

void check_replaced(Findings& findings) {
    const TemporaryFolder folder;
    folder.write("lut", "old");
    const std::string path = folder.get_path() + "/lut";
    const std::string large(300000, 'x');
    {
        SysFile file(to_string(path), SysFile::MODE_WRITE, 0);
        file.write(to_string(large));
        findings.expect_text(folder.read("lut"), "old", "the file at the path until close");
    }
    findings.expect_text(folder.read("lut"), "old", "the file at the path when it was never closed");
    SysFile file(to_string(path), SysFile::MODE_WRITE, 0);
    file.write(to_string(large));
    findings.expect(file.close() && folder.read("lut") == large, "close replaces the file by the new one");
}

void check_not_opened(Findings& findings) {
    const TemporaryFolder folder;
    SysFile file(to_string(folder.get_path() + "/missing/lut"), SysFile::MODE_WRITE, 0);
    findings.expect(!file.is_opened(), "a file in a missing folder is not opened");
    findings.expect(file.write(to_string("text")) == -1, "write returns -1");
    findings.expect(!file.close(), "close returns false");
    SysFile of_folder(to_string(folder.get_path()), SysFile::MODE_WRITE, 0);
    findings.expect(!of_folder.is_opened(), "a folder is not opened");
}

void check_full_disk(Findings& findings) {
    if (access("/dev/full", W_OK) != 0)
        return; // A device of Linux.
    SysFile file(to_string("/dev/full"), SysFile::MODE_WRITE, 0);
    const bool written = file.write(to_string("text")) == 4;
    const bool closed = file.close();
    findings.expect(!(written && closed), "write or close reports that the device is full");
}

void check_exists(Findings& findings) {
    const TemporaryFolder folder;
    const std::string path = folder.write("config.ocio", "");
    const std::string link = folder.get_path() + "/link", broken = folder.get_path() + "/broken";
    if (symlink(path.c_str(), link.c_str()) != 0 || symlink("missing", broken.c_str()) != 0)
        throw CannotRun("cannot create links in '" + folder.get_path() + "'");
    findings.expect(SysFilesystem::file_exists(to_string(path)), "an empty file exists");
    findings.expect(SysFilesystem::file_exists(to_string(link)), "a link to a file exists");
    findings.expect(!SysFilesystem::file_exists(to_string(broken)), "a broken link is not a file");
    findings.expect(!SysFilesystem::file_exists(to_string(folder.get_path())), "a folder is not a file");
    findings.expect(!SysFilesystem::file_exists(to_string(path + "x")), "a missing file does not exist");
    findings.expect(!SysFilesystem::file_exists(CoreString()), "the empty path is not a file");
}

void check_extension(Findings& findings) {
    const auto expect_extension = [&](const char* path, const char* expected) {
        findings.expect_text(SysFilesystem::get_file_extension(CoreString(path)).view(), expected,
                             std::string("the extension of '") + path + "'");
    };
    expect_extension("/show/grade.v2.ccc", "ccc");
    expect_extension("look.CDL", "CDL");
    expect_extension("/show.v1/grade", "");
    expect_extension("/show/.ccc", "");
    expect_extension("grade.", "");
    expect_extension("", "");
}

void check_environment(Findings& findings) {
    setenv("CONFORMANCE_VARIABLE", "/show/config.ocio", 1);
    findings.expect_text(sys_get_env(CoreString("CONFORMANCE_VARIABLE")).view(), "/show/config.ocio",
                         "its value");
    unsetenv("CONFORMANCE_VARIABLE");
    findings.expect_text(sys_get_env(CoreString("CONFORMANCE_VARIABLE")).view(), "",
                         "the value of a missing one");
}

} // namespace

Checks list_file_checks() {
    return {
        {"files.write", "a written file has every byte, and reports success",
         "the built-in LUT files cannot be read by OpenColorIO", check_written},
        {"files.replace", "a written file replaces the old one as a whole when it is closed",
         "a LUT file cut short by a crash is used by every later start", check_replaced},
        {"files.not-opened", "a file that cannot be opened says so, and is not written",
         "a start without LUT files is not reported", check_not_opened},
        {"files.full-disk", "a full disk is reported by write or close",
         "a LUT file that is not complete is used", check_full_disk},
        {"files.exists", "file_exists is true for files and links to them only",
         "configs and CDLs are not found, or folders are taken for them", check_exists},
        {"files.extension",
         "get_file_extension returns what follows the last '.' of the file's name, with its case",
         "collections of CDLs are read as single ones", check_extension},
        {"files.environment", "sys_get_env returns the value of an environment variable at that time",
         "the config named by OCIO is not used", check_environment},
    };
}

} // namespace conformance
