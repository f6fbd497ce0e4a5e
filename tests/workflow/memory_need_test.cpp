// What an image takes of a memory budget.

#include "tests/tool/images.h"
#include "tests/workflow/layer_fixture.h"
#include "workflow/image_conversion.h"
#include "workflow/image_job.h"

namespace {

/// Besides pixels.
constexpr std::uint64_t LANE = std::uint64_t{16} << 20;

class MemoryNeeds : public LayerFileTest {
protected:
    /// Whether "in.exr" is converted where one byte of a budget of `bytes` is taken.
    bool fits(std::uint64_t bytes) {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = "squared";
        const workflow::Conversion conversion(session, request);
        const workflow::ImageSettings settings = make_image_settings(conversion);
        workflow::MemoryBudget budget(bytes);
        EXPECT_TRUE(budget.try_to_take(1));
        workflow::ImageBuffers buffers(&budget);
        return workflow::try_to_convert_image({folder.file("in.exr"), folder.file("out.exr")}, settings,
                                              buffers, workflow::WhenFull::GIVE_UP)
            .has_value();
    }

    /// Checks that the image needs from `least` to `most` bytes besides those of a lane.
    void expect_need(std::uint64_t least, std::uint64_t most) {
        EXPECT_FALSE(fits(1 + LANE + least - 1));
        EXPECT_TRUE(fits(1 + LANE + most));
    }
};

TEST_F(MemoryNeeds, OfDeepImagesGrowWithTheirSamples) {
    for (const unsigned int samples : {1u, 500u}) {
        const DeepImage image = make_deep_image(
            100, 10,
            {{"R", OIIO::TypeHalf}, {"G", OIIO::TypeHalf}, {"B", OIIO::TypeHalf}, {"Z", OIIO::TypeFloat}},
            std::vector<unsigned int>(1000, samples));
        write_deep(folder.file("in.exr"), {image});
        const std::uint64_t bytes = std::uint64_t{1000} * samples * (3 * 2 + 4);
        expect_need(4 * bytes, 4 * bytes + 1000 * 100);
    }
}

TEST_F(MemoryNeeds, OfImagesWithTheAlphaOfAnotherPart) {
    const auto make_large = [](const std::string& name, const std::vector<std::string>& channels) {
        ChannelTypes types;
        for (const std::string& channel : channels)
            types.emplace_back(channel, OIIO::TypeFloat);
        NativeImage part = make_native_image(200, 100, types);
        part.spec.attribute("oiio:subimagename", name);
        return part;
    };
    constexpr std::uint64_t CHANNEL = 200 * 100 * sizeof(float);
    const NativeImage glow = make_large("glow", {"R", "G", "B"});
    const NativeImage beauty = make_large("beauty", {"R", "G", "B", "A"});
    write_native(folder.file("in.exr"), {glow});
    expect_need(3 * CHANNEL, 3 * CHANNEL);
    write_native(folder.file("in.exr"), {glow, beauty});
    // glow, which is converted in place, all of beauty while its alpha is decoded, and that alpha.
    expect_need((3 + 4 + 1) * CHANNEL, (3 + 4 + 1) * CHANNEL);
}

} // namespace
