#include "image/reader_process.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "image/image_file.h"
#include "image/image_reader.h"
#include "image/reader_server.h"
#include "tests/image/crashing_format.h"
#include "tests/image/hostile_images.h"
#include "tests/image/reader_fixture.h"
#include "tests/support/image_readers.h"

namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

using ImageReaderProcess = ImageTest;

/// The value behind `word` in a process's status.
std::string get_status(pid_t process, const std::string& word) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind(word + ":", 0) == 0)
            return line.substr(line.find_first_not_of(" \t", word.size() + 1));
    return "";
}

bool is_gone(pid_t process) {
    const std::string state = get_status(process, "State");
    return state.empty() || state[0] == 'Z' || state[0] == 'X';
}

/// True when the process goes within ten seconds.
bool goes_away(pid_t process) {
    for (int i = 0; i < 1000 && !is_gone(process); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return is_gone(process);
}

TEST_F(ImageReaderProcess, ReadsTheHeadersAndPixelsThatThisProcessWould) {
    const std::string path = write_image("floats.exr", 37, 11, 4);
    image::ImageFile file(path);
    std::vector<std::byte> expected(file.get_parts()[0].spec.image_bytes(true));
    file.read_part(0, expected.data());

    image::ReaderProcess process;
    const auto image = process.open(path);
    EXPECT_EQ(image.format, "openexr");
    ASSERT_EQ(image.parts.size(), 1u);
    EXPECT_EQ(
        image.parts[0].spec.serialize(OIIO::ImageSpec::SerialXML, OIIO::ImageSpec::SerialDetailed),
        file.get_parts()[0].spec.serialize(OIIO::ImageSpec::SerialXML, OIIO::ImageSpec::SerialDetailed));
    image::PixelBuffer pixels;
    process.read_part(0, image.parts[0].spec, pixels);
    ASSERT_EQ(pixels.size(), expected.size());
    EXPECT_EQ(std::memcmp(pixels.data(), expected.data(), expected.size()), 0);
}

TEST_F(ImageReaderProcess, DecodesWithTheThreadsThatItIsGiven) {
    const std::string path = write_image("floats.exr", 320, 200, 4);
    image::ReaderProcess process;
    process.set_threads(1);
    image::PixelBuffer pixels;
    process.read_part(0, process.open(path).parts[0].spec, pixels);
    image::ReaderProcess other;
    other.set_threads(4);
    other.read_part(0, other.open(path).parts[0].spec, pixels);
    const auto count_threads = [](const image::ReaderProcess& reader) {
        return std::stoi(get_status(reader.get_process_id(), "Threads"));
    };
    EXPECT_LE(count_threads(process), 2) << "newer versions of OpenImageIO keep one that waits";
    EXPECT_GE(count_threads(other), 2);
}

TEST_F(ImageReaderProcess, ServesSmallerAndLargerImagesOneAfterTheOther) {
    image::ReaderProcess process;
    image::PixelBuffer pixels;
    pid_t first = 0;
    for (const int width : {16, 64, 8, 300}) {
        const auto image = process.open(write_image(std::to_string(width) + ".exr", width, 5));
        process.read_part(0, image.parts[0].spec, pixels);
        ASSERT_EQ(pixels.size(), static_cast<std::size_t>(width) * 5 * 3 * 4);
        float last;
        std::memcpy(&last, pixels.data() + pixels.size() - 4, 4);
        EXPECT_EQ(last, static_cast<float>(width * 15 - 1) * 0.25f);
        first = first == 0 ? process.get_process_id() : first;
    }
    EXPECT_EQ(process.get_process_id(), first);
}

TEST_F(ImageReaderProcess, ReadsIntoSeveralBuffersInTurn) {
    const std::string small = write_image("small.exr", 4, 4);
    const std::string large = write_image("large.exr", 64, 64);
    image::ReaderProcess process;
    image::PixelBuffer first, second;
    process.read_part(0, process.open(small).parts[0].spec, first);
    process.read_part(0, process.open(large).parts[0].spec, second);
    process.read_part(0, process.open(large).parts[0].spec, first);
    ASSERT_EQ(first.size(), second.size());
    EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size()), 0);
}

TEST_F(ImageReaderProcess, SaysWhyAFileCannotBeRead) {
    image::ReaderProcess process;
    EXPECT_EQ(failure_of([&] { process.open(folder.file("none.exr")); }),
              "cannot read '" + folder.file("none.exr") + "': no such file");
    EXPECT_THAT(failure_of([&] { process.open(folder.write("text.exr", "text")); }),
                StartsWith("cannot read '" + folder.file("text.exr") + "': "));
    write_image("cut.tif", 64, 64);
    folder.write("cut.tif", folder.read("cut.tif").substr(0, 500));
    EXPECT_THAT(failure_of([&] { process.open(folder.file("cut.tif")); }),
                StartsWith("cannot read '" + folder.file("cut.tif") + "': "));
    write_image("cut.dpx", 64, 64);
    folder.write("cut.dpx", folder.read("cut.dpx").substr(0, 3000));
    EXPECT_EQ(failure_of([&] { process.open(folder.file("cut.dpx")); }),
              "cannot read '" + folder.file("cut.dpx") + "': truncated file");
    EXPECT_EQ(process.open(write_image("good.exr", 4, 4)).parts.size(), 1u);
}

TEST_F(ImageReaderProcess, MakesACrashAnErrorAndGoesOn) {
    const std::string bad = folder.write("bad.tif", make_image_that_crashes_readers());
    const std::string good = write_image("good.exr", 4, 4);
    image::ReaderProcess process;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(failure_of([&] { process.open(bad); }),
                  "cannot read '" + bad + "': OpenImageIO crashed on it (Segmentation fault)");
        EXPECT_EQ(process.get_process_id(), 0);
        const auto image = process.open(good);
        image::PixelBuffer pixels;
        process.read_part(0, image.parts[0].spec, pixels);
        EXPECT_EQ(pixels.size(), 4u * 4 * 3 * 4);
    }
}

TEST_F(ImageReaderProcess, SurvivesMetadataNestedTooDeep) {
    const std::string bad = folder.write("bad.tif", make_tiff_of_nested_metadata());
    image::ReaderProcess process;
    EXPECT_THAT(
        failure_of([&] { process.open(bad); }),
        AnyOf("cannot read '" + bad + "': OpenImageIO crashed on it (Segmentation fault)", "no failure"))
        << "newer versions read it";
    EXPECT_EQ(process.open(write_image("good.exr", 4, 4)).parts.size(), 1u);
}

TEST_F(ImageReaderProcess, EndsAReaderThatWaitsForEver) {
    image::ReaderLimits limits;
    limits.header_time = std::chrono::milliseconds(200);
    image::ReaderProcess process(limits);
    const std::string good = write_image("good.exr", 4, 4);
    process.open(good);
    const pid_t stopped = process.get_process_id();
    ASSERT_EQ(kill(stopped, SIGSTOP), 0);
    EXPECT_THAT(failure_of([&] { process.open(good); }),
                AllOf(HasSubstr("cannot read '" + good + "': "), HasSubstr("takes more than")));
    EXPECT_TRUE(is_gone(stopped));
    EXPECT_EQ(process.open(good).parts.size(), 1u);
}

TEST_F(ImageReaderProcess, EndsAReaderThatUsesTooMuchProcessorTime) {
    image::ReaderLimits limits;
    limits.part_processor_time = std::chrono::milliseconds(1);
    limits.processor_time_per_megabyte = {};
    image::ReaderProcess process(limits);
    const std::string path = write_image("large.exr", 3000, 2000);
    const auto image = process.open(path);
    image::PixelBuffer pixels;
    EXPECT_THAT(failure_of([&] { process.read_part(0, image.parts[0].spec, pixels); }),
                StartsWith("cannot read '" + path + "': reading it takes more than"));
}

TEST_F(ImageReaderProcess, RefusesMorePixelsThanTheFileCanHold) {
    const std::string path = folder.write("large.dpx", make_dpx_that_announces_too_much());
    image::ReaderProcess process;
    EXPECT_THAT(failure_of([&] { process.open(path); }),
                AnyOf("cannot read '" + path +
                          "': its header requires 21.6 GB of pixels, too many for a file of 21048 bytes",
                      AllOf(StartsWith("cannot read '" + path + "': "), HasSubstr("21048 byte file"))))
        << "newer versions of OpenImageIO refuse it themselves";
}

TEST_F(ImageReaderProcess, ReadsLargeBlackImagesOfTheBestCompression) {
    const std::string path = folder.file("black.exr");
    OIIO::ImageSpec spec(4096, 2304, 4, OIIO::TypeHalf);
    spec.attribute("compression", "dwab");
    const std::vector<char> zeros(spec.image_bytes(), 0);
    const auto output = OIIO::ImageOutput::create(path);
    ASSERT_TRUE(output->open(path, spec) && output->write_image(OIIO::TypeHalf, zeros.data()) &&
                output->close());
    ASSERT_LT(std::filesystem::file_size(path), zeros.size() / 8192);
    image::ReaderProcess process;
    image::PixelBuffer pixels;
    process.read_part(0, process.open(path).parts[0].spec, pixels);
    ASSERT_EQ(pixels.size(), zeros.size());
    EXPECT_EQ(std::memcmp(pixels.data(), zeros.data(), zeros.size()), 0);
}

TEST_F(ImageReaderProcess, LimitsTheMemoryOfItsReader) {
    image::ReaderProcess process;
    process.open(write_image("good.exr", 4, 4));
    const pid_t reader = process.get_process_id();
    std::ifstream limits("/proc/" + std::to_string(reader) + "/limits");
    long long soft = 0;
    for (std::string line; std::getline(limits, line);)
        if (line.rfind("Max data size", 0) == 0)
            soft = std::atoll(line.substr(13).c_str());
    const long long used = std::atoll(get_status(reader, "VmData").c_str()) << 10;
    EXPECT_GT(soft, used / 2);
    EXPECT_LT(soft, used + (3ll << 30) + (std::thread::hardware_concurrency() * 2ll * (8 << 20)));
}

TEST_F(ImageReaderProcess, InheritsNoFiles) {
    const int secret = open(folder.write("secret", "").c_str(), O_RDONLY); // not closed on exec
    image::ReaderProcess process;
    process.open(write_image("good.exr", 4, 4));
    const std::filesystem::path descriptors = "/proc/" + std::to_string(process.get_process_id()) + "/fd";
    std::vector<std::string> opened;
    for (const auto& entry : std::filesystem::directory_iterator(descriptors)) {
        const std::string name = std::filesystem::read_symlink(entry.path()).string();
        opened.push_back(name.rfind("socket:", 0) == 0 ? "socket" : name);
    }
    close(secret);
    std::sort(opened.begin(), opened.end());
    EXPECT_THAT(opened,
                ElementsAre("/dev/null", "/dev/null", "/dev/null", folder.file("good.exr"), "socket"));
}

TEST_F(ImageReaderProcess, EndsWithItsObject) {
    pid_t reader = 0;
    {
        image::ReaderProcess process;
        process.open(write_image("good.exr", 4, 4));
        reader = process.get_process_id();
        EXPECT_FALSE(is_gone(reader));
    }
    EXPECT_TRUE(is_gone(reader));
}

TEST_F(ImageReaderProcess, IsNotUsedWhenTheUserWantsNone) {
    const EnvGuard in_process("COLORIO_READ_IN_PROCESS", "1");
    image::ReaderProcess process;
    image::ImageReader reader(write_image("good.exr", 4, 4), process);
    image::PixelBuffer pixels;
    reader.read_part(0, pixels);
    EXPECT_EQ(pixels.size(), 4u * 4 * 3 * 4);
    EXPECT_EQ(process.get_process_id(), 0);
}

TEST_F(ImageReaderProcess, EndsWhenTheProgramIsKilled) {
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    const std::string path = write_image("good.exr", 4, 4);
    const pid_t program = fork();
    if (program == 0) {
        image::ReaderProcess process;
        process.open(path);
        const pid_t reader = process.get_process_id();
        (void)!write(report[1], &reader, sizeof(reader));
        for (;;)
            pause();
    }
    pid_t reader = 0;
    ASSERT_EQ(read(report[0], &reader, sizeof(reader)), static_cast<ssize_t>(sizeof(reader)));
    kill(program, SIGKILL);
    waitpid(program, nullptr, 0);
    close(report[0]);
    close(report[1]);
    EXPECT_TRUE(goes_away(reader));
}

} // namespace
