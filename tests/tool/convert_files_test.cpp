#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tests/colorio/color_formulas.h"
#include "tests/support/file_size_limit.h"
#include "tests/tool/images.h"
#include "tests/tool/tool_fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;

class ConvertFiles : public ToolTest {
protected:
    ConvertFiles() { write_image(path("in.exr"), make_noise(64)); }

    /// Hard to compress, so that its size on disk is about that in memory.
    static Image make_noise(int side) {
        Image image = make_image(side, side, 3, OIIO::TypeFloat, {});
        unsigned int state = 1;
        for (float& value : image.values) {
            state = state * 1664525u + 1013904223u;
            value = static_cast<float>(state >> 8) / static_cast<float>(1u << 24);
        }
        return image;
    }

    ToolRun convert(const std::string& input, const std::string& output) {
        return run({"convert", input, output, "--from", "sRGB", "--to", "linear"});
    }
};

TEST_F(ConvertFiles, MayWriteOverTheirInput) {
    const Image before = read_image(path("in.exr"));
    EXPECT_THAT(convert(path("in.exr"), path("in.exr")), Succeeds());
    const Image after = read_image(path("in.exr"));
    EXPECT_NEAR(after.get("R", 7, 9), formula::srgb_to_linear(before.get("R", 7, 9)), 5e-6);
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(ConvertFiles, FollowLinksAndKeepPermissions) {
    folder.write("old.exr", "something else");
    ASSERT_EQ(chmod(path("old.exr").c_str(), 0640), 0);
    std::filesystem::create_symlink("old.exr", path("link.exr"));
    EXPECT_THAT(convert(path("in.exr"), path("link.exr")), Succeeds());
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.exr")));
    EXPECT_EQ(read_image(path("old.exr")).spec.width, 64);
    struct stat status;
    ASSERT_EQ(stat(path("old.exr").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640u);
}

TEST_F(ConvertFiles, StayAsTheyWereWhenTheInputIsDamaged) {
    const std::string whole = folder.read("in.exr");
    folder.write("cut.exr", whole.substr(0, whole.size() / 2));
    folder.write("old.exr", "something else");
    EXPECT_THAT(convert(path("cut.exr"), path("old.exr")),
                FailsWith(1, AllOf(HasSubstr("cannot read"), HasSubstr("cut.exr"))));
    EXPECT_EQ(folder.read("old.exr"), "something else");
    EXPECT_EQ(count_files(), 3u);
}

/// A disk that has room for a part of what is written.
class ConvertFilesOnAFullDisk : public ConvertFiles, public testing::WithParamInterface<const char*> {
protected:
    /// Converts with room for all, then with room for less and less missing.
    void expect_whole_or_as_it_was(const std::string& input, const std::string& extension) {
        const std::string whole = path("whole." + extension);
        ASSERT_THAT(convert(path(input), whole), Succeeds());
        const rlim_t size = std::filesystem::file_size(whole);
        ASSERT_GT(size, 1000u);
        for (const rlim_t bytes : {rlim_t(1000), size / 2, size - 200, size - 1})
            expect_as_it_was(input, "old." + extension, bytes);
    }

private:
    void expect_as_it_was(const std::string& input, const std::string& name, rlim_t bytes) {
        folder.write(name, "something else");
        const size_t files = count_files();
        ToolRun result;
        {
            const FileSizeLimit limit(bytes);
            result = convert(path(input), path(name));
        }
        EXPECT_THAT(result,
                    FailsWith(1, "colorio: error: cannot write '" + path(name) + "': File too large\n"))
            << bytes;
        EXPECT_TRUE(folder.read(name) == "something else") << bytes;
        EXPECT_EQ(count_files(), files) << bytes;
    }
};

TEST_P(ConvertFilesOnAFullDisk, StayAsTheyWere) {
    expect_whole_or_as_it_was("in.exr", GetParam());
}

TEST_F(ConvertFilesOnAFullDisk, OfTilesAndSeveralPartsStayAsTheyWere) {
    Image part = make_noise(40);
    part.spec.tile_width = part.spec.tile_height = 16;
    write_image(path("tiled.exr"), part);
    write_image(path("parts.exr"), std::vector<Image>{part, part});
    expect_whole_or_as_it_was("tiled.exr", "exr");
    expect_whole_or_as_it_was("parts.exr", "tif");
    expect_whole_or_as_it_was("parts.exr", "exr");
}

INSTANTIATE_TEST_SUITE_P(Formats, ConvertFilesOnAFullDisk,
                         testing::Values("exr", "tif", "png", "jpg", "tga", "hdr", "dpx", "bmp", "sgi",
                                         "webp", "jp2", "pnm", "gif", "ico", "iff", "rla", "fits"),
                         [](const auto& format) { return std::string(format.param); });

TEST_F(ConvertFiles, SayWhatIsMissing) {
    EXPECT_THAT(convert(path("missing.exr"), path("out.exr")),
                FailsWith(1, "colorio: error: cannot read '" + path("missing.exr") + "': no such file\n"));
    EXPECT_THAT(
        convert(path("in.exr"), path("nowhere/out.exr")),
        FailsWith(1, "colorio: error: cannot write '" + path("nowhere/out.exr") + "': no such folder\n"));
    EXPECT_THAT(convert(folder.get_path(), path("out.exr")), FailsWith(1, HasSubstr("it is a folder")));
    EXPECT_EQ(count_files(), 1u);
}

TEST_F(ConvertFiles, SayThatAFormatIsUnknown) {
    EXPECT_THAT(convert(path("in.exr"), path("out.xyz")),
                FailsWith(1, "colorio: error: cannot write '" + path("out.xyz") +
                                 "': unknown image format '.xyz'\n"));
    EXPECT_THAT(convert(path("in.exr"), path("out")),
                FailsWith(1, "colorio: error: cannot write '" + path("out") +
                                 "': the file name has no extension, which selects the image format\n"));
    EXPECT_THAT(convert(path("in.exr"), path("out.psd")),
                FailsWith(1, "colorio: error: cannot write '" + path("out.psd") +
                                 "': OpenImageIO cannot write psd images\n"));
    folder.write("text.exr", "this is no image\n");
    EXPECT_THAT(convert(path("text.exr"), path("out.exr")),
                FailsWith(1, AllOf(HasSubstr("cannot read"), HasSubstr("text.exr"))));
    EXPECT_EQ(count_files(), 2u);
}

TEST_F(ConvertFiles, DoNotReplaceFolders) {
    std::filesystem::create_directory(path("out.exr"));
    EXPECT_THAT(convert(path("in.exr"), path("out.exr")), FailsWith(1, HasSubstr("Is a directory")));
    EXPECT_TRUE(std::filesystem::is_directory(path("out.exr")));
}

} // namespace
