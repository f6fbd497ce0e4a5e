#include <algorithm>
#include <memory>

#include "every_target.h"
#include "samples.h"

using namespace pixel;
using namespace pixel_test;

namespace {

class Layouts : public EveryTarget {
protected:
    /// Mixes red, green and blue, adds alpha to red, then bends them by a table.
    const Program program{{Matrix{{0.5, 0.25, 0, 0.125, 0, 1, 0.5, 0, 0.25, 0, 0.75, 0, 0, 0, 0, 1}, {}},
                           Lut1D{InputDomain::Unit, 5, 1,
                                 std::make_shared<const std::vector<float>>(
                                     std::vector<float>{0.0f, 0.5f, 0.625f, 0.75f, 1.0f}),
                                 Direction::Forward}}};

    Pixel expected(Pixel in) const {
        program.apply_pixel(in.data());
        return in;
    }

    /// Distinct values for every float of a buffer.
    static std::vector<float> numbered(std::size_t count) {
        std::vector<float> values(count);
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = static_cast<float>(i % 1021) / 1021.0f;
        }
        return values;
    }

    void expect_packed(const PackedLayout& layout) const {
        const std::size_t stride =
            layout.pixel_stride ? static_cast<std::size_t>(layout.pixel_stride) : layout.channels;
        const std::size_t row =
            layout.row_stride ? static_cast<std::size_t>(layout.row_stride) : stride * layout.width;
        const std::vector<float> before = numbered(row * layout.height + 5);
        std::vector<float> wanted = before, actual = before;
        for (std::size_t y = 0; y < layout.height; ++y) {
            for (std::size_t x = 0; x < layout.width; ++x) {
                float* p = wanted.data() + y * row + x * stride;
                const Pixel out = expected({p[0], p[1], p[2], layout.channels > 3 ? p[3] : 0.0f});
                std::copy_n(out.begin(), std::min<std::size_t>(layout.channels, 4), p);
            }
        }
        program.apply_packed(actual.data(), layout);
        EXPECT_EQ(actual, wanted) << layout.width << " x " << layout.height << " x " << layout.channels
                                  << ", strides " << layout.pixel_stride << ", " << layout.row_stride;
    }
};
RUN_ON_EVERY_TARGET(Layouts);

TEST_P(Layouts, PackedImagesOfEveryShapeAndChannelCount) {
    for (const std::size_t channels : {3, 4, 5, 7}) {
        for (const std::size_t width : {1, 2, 3, 5, 15, 16, 17, 31, 511, 512, 513, 1030}) {
            for (const std::size_t height : {1, 3}) {
                expect_packed({width, height, channels, 0, 0});
            }
        }
    }
}

TEST_P(Layouts, GapsBetweenPixelsAndRowsStayAsTheyAre) {
    for (const std::size_t channels : {3, 4, 5}) {
        const auto wide = static_cast<std::ptrdiff_t>(channels) + 2;
        expect_packed({7, 5, channels, wide, 0});
        expect_packed({7, 5, channels, wide, 7 * wide + 3});
        expect_packed({7, 5, channels, 0, 7 * static_cast<std::ptrdiff_t>(channels) + 1});
        expect_packed({600, 3, channels, 0, 600 * static_cast<std::ptrdiff_t>(channels) + 9});
        expect_packed({1, 700, channels, 0, 11});
    }
}

TEST_P(Layouts, OneLongRowIsTheSameAsAnImage) {
    const std::vector<float> before = numbered(4 * 64 * 33);
    std::vector<float> image = before, row = before;
    program.apply_packed(image.data(), 64, 33, 4);
    program.apply_packed(row.data(), 64 * 33, 1, 4);
    EXPECT_EQ(image, row);
}

TEST_P(Layouts, BottomUpRowsAreFollowed) {
    std::vector<float> upright = numbered(4 * 3 * 2), flipped = upright;
    program.apply_packed(upright.data(), 3, 2, 4);
    PackedLayout layout{3, 2, 4, 0, -12};
    program.apply_packed(flipped.data() + 12, layout);
    EXPECT_EQ(flipped, upright);
}

TEST_P(Layouts, PlanarImagesWithAndWithoutAlpha) {
    for (const bool with_alpha : {true, false}) {
        for (const std::size_t width : {1, 3, 16, 17, 511, 512, 700, 1025}) {
            for (const std::size_t gap : {0, 3}) {
                const std::size_t row = width + gap, height = 3, size = row * height;
                const std::vector<float> before = numbered(4 * size);
                std::vector<float> wanted = before, actual = before;
                for (std::size_t i = 0; i < size; ++i) {
                    if (i % row >= width) {
                        continue;
                    }
                    const float alpha = with_alpha ? wanted[3 * size + i] : 0.0f;
                    const Pixel out = expected({wanted[i], wanted[size + i], wanted[2 * size + i], alpha});
                    for (std::size_t c = 0; c < (with_alpha ? 4 : 3); ++c) {
                        wanted[c * size + i] = out[c];
                    }
                }
                float* p = actual.data();
                program.apply_planar(p, p + size, p + 2 * size, with_alpha ? p + 3 * size : nullptr, width,
                                     height, gap ? static_cast<std::ptrdiff_t>(row) : 0);
                EXPECT_EQ(actual, wanted) << width << ", gap " << gap << ", alpha " << with_alpha;
            }
        }
    }
}

/// Planes of alpha are passed by where no operation looks at them.
TEST_P(Layouts, PlanarImagesGiveWhatPackedOnesGiveWhateverTheOperationDoesWithAlpha) {
    const auto entries = std::make_shared<const std::vector<float>>(std::vector<float>{1.0f, 0.0f});
    const std::vector<Op> ops{
        Matrix{{0.5, 0.25, 0, 0, 0, 1, 0.5, 0, 0.25, 0, 0.75, 0, 0, 0, 0, 1}, {}}, // 0 * infinity is NaN
        Matrix{{0.5, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, {}},
        Matrix{{0.5, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0.5}, {0, 0, 0, 0.25}},
        Exponent{{2, 2, 2, 1}, Negatives::PassThrough, Direction::Forward},
        Exponent{{2, 2, 2, 1}, Negatives::Clamp, Direction::Forward},
        Exponent{{1, 1, 1, 2}, Negatives::Mirror, Direction::Forward},
        LinearToeCurve{
            {2.4, 2.4, 2.4, 1.5}, {0.055, 0.055, 0.055, 0.1}, Negatives::Linear, Direction::Forward},
        Lut1D{InputDomain::Unit, 2, 1, entries, Direction::Forward},
    };
    constexpr std::size_t COUNT = 700;
    for (const Op& op : ops) {
        std::vector<Pixel> packed = mixed_pixels(COUNT, 3);
        std::vector<float> planes(4 * COUNT);
        for (std::size_t i = 0; i < planes.size(); ++i) {
            planes[i] = packed[i % COUNT][i / COUNT];
        }
        const Program one({op});
        one.apply_packed(packed[0].data(), COUNT, 1, 4);
        float* p = planes.data();
        one.apply_planar(p, p + COUNT, p + 2 * COUNT, p + 3 * COUNT, COUNT, 1);
        for (std::size_t i = 0; i < planes.size(); ++i) {
            ASSERT_TRUE(within_units(planes[i], packed[i % COUNT][i / COUNT], 0))
                << one.describe().given[0] << ", pixel " << i % COUNT << ", channel " << i / COUNT;
        }
    }
}

/// Such planes are converted where they lie, but for the pixels around the lines.
TEST_P(Layouts, PlanarImagesWhosePlanesReachCacheLinesTogether) {
    constexpr std::size_t HEIGHT = 2, DISTANCE = 4096; // between planes
    for (const std::size_t width : {255, 256, 272, 300, 512, 1100, 1999}) {
        for (const std::size_t gap : {0, 5, 16}) {
            for (std::size_t start = 0; start < 16; start += 3) {
                const std::vector<float> before = numbered(4 * DISTANCE);
                std::vector<float> wanted = before, actual = before;
                for (std::size_t i = 0; i < width * HEIGHT; ++i) {
                    float* at = wanted.data() + start + i / width * (width + gap) + i % width;
                    const Pixel out = expected({at[0], at[DISTANCE], at[2 * DISTANCE], at[3 * DISTANCE]});
                    for (std::size_t c = 0; c < 4; ++c) {
                        at[c * DISTANCE] = out[c];
                    }
                }
                float* p = actual.data() + start;
                program.apply_planar(p, p + DISTANCE, p + 2 * DISTANCE, p + 3 * DISTANCE, width, HEIGHT,
                                     static_cast<std::ptrdiff_t>(width + gap));
                ASSERT_EQ(actual, wanted) << width << ", gap " << gap << ", start " << start;
            }
        }
    }
}

/// As gray images have them: the last channel's result stays, at every width.
TEST_P(Layouts, PlanesThatShareMemoryAreConvertedOnce) {
    for (const std::size_t width : {200, 256, 1024, 1030}) {
        const std::vector<float> before = numbered(width);
        std::vector<float> gray = before;
        program.apply_planar(gray.data(), gray.data(), gray.data(), nullptr, width, 1);
        for (std::size_t i = 0; i < width; ++i) {
            ASSERT_EQ(gray[i], expected({before[i], before[i], before[i], 0.0f})[2]) << width << ", " << i;
        }
    }
}

/// Rows of the planes in turn, as some image files hold them.
TEST_P(Layouts, PlanesWhoseRowsLieBetweenEachOther) {
    constexpr std::size_t WIDTH = 512, HEIGHT = 3, STRIDE = 3 * WIDTH;
    for (const bool upwards : {false, true}) {
        const std::vector<float> before = numbered(STRIDE * HEIGHT);
        std::vector<float> after = before;
        float* const first = after.data() + (upwards ? STRIDE * (HEIGHT - 1) : 0);
        program.apply_planar(first, first + WIDTH, first + 2 * WIDTH, nullptr, WIDTH, HEIGHT,
                             upwards ? -static_cast<std::ptrdiff_t>(STRIDE) : STRIDE);
        for (std::size_t row = 0; row < HEIGHT; ++row) {
            for (std::size_t i = row * STRIDE; i < row * STRIDE + WIDTH; ++i) {
                const Pixel out = expected({before[i], before[i + WIDTH], before[i + 2 * WIDTH], 0.0f});
                for (std::size_t c = 0; c < 3; ++c) {
                    ASSERT_EQ(after[i + c * WIDTH], out[c]) << upwards << ", " << i;
                }
            }
        }
    }
}

TEST_P(Layouts, ImagesMayStartAnywhereInMemory) {
    constexpr std::size_t WIDTH = 1100;
    for (std::size_t start = 0; start < 32; ++start) {
        for (const std::size_t channels : {3, 4}) {
            const std::vector<float> before = numbered(start + 4 * WIDTH);
            std::vector<float> wanted = before, actual = before;
            for (std::size_t i = 0; i < WIDTH; ++i) {
                float* p = wanted.data() + start + channels * i;
                const Pixel out = expected({p[0], p[1], p[2], channels == 4 ? p[3] : 0.0f});
                std::copy_n(out.begin(), channels, p);
            }
            program.apply_packed(actual.data() + start, WIDTH, 1, channels);
            ASSERT_EQ(actual, wanted) << start << ", " << channels << " channels";

            std::vector<float> planes(start + 4 * WIDTH);
            float* p = planes.data() + start;
            for (std::size_t i = 0; i < channels * WIDTH; ++i) {
                p[i % channels * WIDTH + i / channels] = before[start + i];
            }
            program.apply_planar(p, p + WIDTH, p + 2 * WIDTH, channels == 4 ? p + 3 * WIDTH : nullptr, WIDTH,
                                 1);
            for (std::size_t i = 0; i < channels * WIDTH; ++i) {
                ASSERT_EQ(p[i % channels * WIDTH + i / channels], wanted[start + i]) << start;
            }
        }
    }
}

TEST_P(Layouts, EmptyImagesAreLeftAlone) {
    program.apply_packed(nullptr, 0, 10, 4);
    program.apply_packed(nullptr, 10, 0, 3);
    program.apply_planar(nullptr, nullptr, nullptr, nullptr, 0, 0);

    const std::vector<float> before = numbered(64);
    std::vector<float> values = before;
    program.apply_packed(values.data(), 0, 10, 4);
    program.apply_packed(values.data(), 10, 0, 3);
    EXPECT_EQ(values, before);
    float* const p = values.data();
    program.apply_planar(p, p + 16, p + 32, p + 48, 0, 10);
    program.apply_planar(p, p + 16, p + 32, nullptr, 10, 0);
    EXPECT_EQ(values, before);
    program.apply_packed(p, 1, 1, 4);
    EXPECT_NE(values, before) << "an image of one pixel is not empty";
}

TEST_P(Layouts, AlphaKeepsItsBitsWhereNoOperationUsesIt) {
    const Program table{{Lut1D{InputDomain::Unit, 2, 1,
                               std::make_shared<const std::vector<float>>(std::vector<float>{1.0f, 0.0f}),
                               Direction::Forward}}};
    for (const float alpha : awkward_values()) {
        float rgba[4] = {0.25f, 0.5f, 0.75f, alpha};
        table.apply_pixel(rgba);
        EXPECT_TRUE(within_units(rgba[3], alpha, 0));
        EXPECT_EQ(rgba[0], 0.75f);
    }
}

TEST(LayoutErrors, FewerThanThreeChannelsAreRefused) {
    const Program program{{Range{0.0, 1.0, 0.0, 1.0}}};
    float pixels[8] = {};
    EXPECT_THROW(program.apply_packed(pixels, 1, 1, 2), std::invalid_argument);
    EXPECT_THROW(program.apply_packed(pixels, PackedLayout{1, 1, 4, 3, 0}), std::invalid_argument);
}

} // namespace
