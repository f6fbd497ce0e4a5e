#include "tests/image/crashing_format.h"

#include <csignal>
#include <cstring>
#include <fstream>

#include <OpenImageIO/imageio.h>

namespace {

constexpr char MAGIC[] = "an image that crashes its reader";

/// A reader that crashes, registered like a plugin of OpenImageIO. Files that crash OpenImageIO's own readers
/// differ from version to version.
class CrashingInput : public OIIO::ImageInput {
public:
    const char* format_name() const override { return "crashing"; }

    bool open(const std::string& path, OIIO::ImageSpec&) override {
        std::ifstream file(path, std::ios::binary);
        char start[sizeof(MAGIC)] = {};
        file.read(start, sizeof(MAGIC) - 1);
        if (std::strcmp(start, MAGIC) == 0)
            std::raise(SIGSEGV);
        return false;
    }

    bool close() override { return true; }
    bool read_native_scanline(int, int, int, int, void*) override { return false; }
};

OIIO::ImageInput* make_input() {
    return new CrashingInput;
}

/// Runs before variables are initialized, which starts the processes that read images.
[[gnu::constructor(1000)]] void register_format() {
    static const char* extensions[] = {"crashing", nullptr};
    OIIO::declare_imageio_format("crashing", make_input, extensions, nullptr, nullptr,
                                 "a reader with a defect");
}

} // namespace

std::string make_image_that_crashes_readers() {
    return MAGIC;
}
