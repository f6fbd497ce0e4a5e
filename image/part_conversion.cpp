#include "image/part_conversion.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <mutex>
#include <vector>

#include <OpenImageIO/parallel.h>

#include "image/alpha_scaling.h"
#include "image/channel_runs.h"
#include "image/pixel_codec.h"
#include "image/quantization.h"

namespace image {

namespace {

/// Pixels of a band: 256 KiB of working pixels, which stay in the cache of a core.
constexpr std::int64_t BAND_PIXELS = 16384;

/// A data channel that is copied.
struct ChannelCopy {
    int source;
    int target;
};

/// Converts bands of rows of one part. `convert_rows` may be called by several threads at once.
class BandConverter {
public:
    BandConverter(const OIIO::ImageSpec& input_spec, const PixelBuffer& source, const PartPlan& plan,
                  const OIIO::ImageSpec& output_spec, const ConvertRows& convert, PixelBuffer& target,
                  const float* part_alpha);

    std::int64_t count_rows() const { return rows; }
    unsigned int get_width() const { return width; }
    /// Converts rows [begin, end) of the intersection of both data windows.
    void convert_rows(std::int64_t begin, std::int64_t end) const;
    /// Positions of layers whose own alpha was 0 in all rows so far.
    std::vector<std::size_t> find_transparent_layers() const;

private:
    void plan_layers();
    const std::byte* get_source_row(std::int64_t row) const;
    std::byte* get_target_row(std::int64_t row) const;
    void convert_layer(std::size_t layer, std::int64_t begin, std::int64_t end, float* working) const;
    void fill_missing(const ColorLayer& layer, float* working, std::size_t pixels) const;
    void fill_alpha(std::int64_t begin, std::int64_t end, float* working) const;
    void look_for_alpha(std::size_t layer, const float* working, std::size_t pixels) const;
    void copy_data(std::int64_t begin, std::int64_t end) const;

    const PartPlan& plan;
    const ConvertRows& convert;
    const PixelLayout input_layout;
    const PixelLayout output_layout;
    const std::byte* source;
    std::byte* target;
    const bool in_place;
    const float* part_alpha; ///< Null for none.
    std::size_t input_width;
    int left = 0; ///< Of the intersection.
    int top = 0;
    std::size_t input_row_bytes;
    std::size_t output_row_bytes;
    unsigned int width = 0;
    std::int64_t rows = 0;
    std::vector<std::vector<ChannelRun>> input_runs;
    std::vector<std::vector<ChannelRun>> output_runs;
    std::vector<ChannelCopy> copies;
    std::vector<std::size_t> order;                   ///< Of the layers.
    mutable std::vector<std::atomic<bool>> is_opaque; ///< By layer: alpha is not 0 somewhere.
};

BandConverter::BandConverter(const OIIO::ImageSpec& input_spec, const PixelBuffer& source_pixels,
                             const PartPlan& plan, const OIIO::ImageSpec& output_spec,
                             const ConvertRows& convert, PixelBuffer& target_pixels, const float* alpha)
    : plan(plan), convert(convert), input_layout(input_spec), output_layout(output_spec),
      source(source_pixels.data()), target(target_pixels.data()), in_place(source == target),
      part_alpha(alpha), input_width(static_cast<std::size_t>(input_spec.width)),
      input_row_bytes(static_cast<std::size_t>(input_spec.width) * input_layout.pixel_bytes),
      output_row_bytes(static_cast<std::size_t>(output_spec.width) * output_layout.pixel_bytes),
      is_opaque(plan.layers.size()) {
    left = std::max(input_spec.x, output_spec.x);
    const int right = std::min(input_spec.x + input_spec.width, output_spec.x + output_spec.width);
    top = std::max(input_spec.y, output_spec.y);
    const int bottom = std::min(input_spec.y + input_spec.height, output_spec.y + output_spec.height);
    if (right > left && bottom > top) {
        width = static_cast<unsigned int>(right - left);
        rows = std::int64_t(bottom - top) * input_spec.depth; // the slices of a volume are stored in a row
    }
    source += static_cast<std::size_t>(std::max(0, top - input_spec.y)) * input_row_bytes +
              static_cast<std::size_t>(std::max(0, left - input_spec.x)) * input_layout.pixel_bytes;
    if (part_alpha != nullptr)
        part_alpha += static_cast<std::size_t>(std::max(0, top - input_spec.y)) * input_width +
                      static_cast<std::size_t>(std::max(0, left - input_spec.x));
    target += static_cast<std::size_t>(std::max(0, top - output_spec.y)) * output_row_bytes +
              static_cast<std::size_t>(std::max(0, left - output_spec.x)) * output_layout.pixel_bytes;
    plan_layers();
}

/// Layers that read the alpha of another one come first: in place, converting that one may change it.
void BandConverter::plan_layers() {
    for (const bool owns_alpha : {false, true})
        for (std::size_t layer = 0; layer < plan.layers.size(); ++layer)
            if (plan.layers[layer].owns_alpha == owns_alpha)
                order.push_back(layer);
    struct Targets {
        int channels[4] = {ColorLayer::NONE, ColorLayer::NONE, ColorLayer::NONE, ColorLayer::NONE};
    };
    std::vector<Targets> targets(plan.layers.size());
    for (std::size_t i = 0; i < plan.channels.size(); ++i) {
        const PlannedChannel& channel = plan.channels[i];
        if (channel.layer == ColorLayer::NONE)
            copies.push_back({channel.source, static_cast<int>(i)});
        else
            targets[static_cast<std::size_t>(channel.layer)].channels[channel.component] =
                static_cast<int>(i);
    }
    for (std::size_t layer = 0; layer < plan.layers.size(); ++layer) {
        input_runs.push_back(find_runs(input_layout, plan.layers[layer].channels));
        output_runs.push_back(find_runs(output_layout, targets[layer].channels));
    }
}

const std::byte* BandConverter::get_source_row(std::int64_t row) const {
    return source + static_cast<std::size_t>(row) * input_row_bytes;
}

std::byte* BandConverter::get_target_row(std::int64_t row) const {
    return target + static_cast<std::size_t>(row) * output_row_bytes;
}

void BandConverter::convert_rows(std::int64_t begin, std::int64_t end) const {
    thread_local std::vector<float> working;
    working.resize(static_cast<std::size_t>(end - begin) * width * WORKING_CHANNELS);
    for (const std::size_t layer : order)
        convert_layer(layer, begin, end, working.data());
    if (!in_place)
        copy_data(begin, end);
}

void BandConverter::convert_layer(std::size_t layer, std::int64_t begin, std::int64_t end,
                                  float* working) const {
    const std::size_t row_floats = std::size_t(width) * WORKING_CHANNELS;
    const std::size_t pixels = static_cast<std::size_t>(end - begin) * width;
    const bool has_alpha = plan.layers[layer].has_alpha();
    fill_missing(plan.layers[layer], working, pixels);
    if (plan.layers[layer].alpha_part != ColorLayer::NONE && part_alpha != nullptr)
        fill_alpha(begin, end, working);

    float* row_start = working;
    for (std::int64_t row = begin; row < end; ++row, row_start += row_floats)
        for (const ChannelRun& run : input_runs[layer])
            decode_channels(run.type, get_source_row(row) + run.offset, input_layout.pixel_bytes, run.count,
                            width, row_start + run.component);

    if (has_alpha) {
        look_for_alpha(layer, working, pixels);
        undo_alpha(plan, working, pixels);
    }
    if (convert)
        convert(working, width, static_cast<unsigned int>(end - begin));
    if (has_alpha)
        redo_alpha(plan, working, pixels);
    if (plan.quantization.is_needed())
        quantize(plan.quantization, working, width, static_cast<unsigned int>(end - begin), left,
                 top + static_cast<int>(begin));

    row_start = working;
    for (std::int64_t row = begin; row < end; ++row, row_start += row_floats)
        for (const ChannelRun& run : output_runs[layer])
            encode_channels(run.type, row_start + run.component, run.count, width,
                            get_target_row(row) + run.offset, output_layout.pixel_bytes);
}

/// Components without a channel: colors are 0, alpha is 1.
void BandConverter::fill_missing(const ColorLayer& layer, float* working, std::size_t pixels) const {
    for (int component = 0; component < WORKING_CHANNELS; ++component)
        if (layer.channels[component] == ColorLayer::NONE)
            for (std::size_t i = 0; i < pixels; ++i)
                working[i * WORKING_CHANNELS + static_cast<std::size_t>(component)] =
                    component == 3 ? 1.0f : 0.0f;
}

/// With that of another part.
void BandConverter::fill_alpha(std::int64_t begin, std::int64_t end, float* working) const {
    for (std::int64_t row = begin; row < end; ++row)
        for (std::size_t x = 0; x < width; ++x, working += WORKING_CHANNELS)
            working[3] = part_alpha[static_cast<std::size_t>(row) * input_width + x];
}

void BandConverter::look_for_alpha(std::size_t layer, const float* working, std::size_t pixels) const {
    if (is_opaque[layer])
        return;
    for (std::size_t i = 0; i < pixels && !is_opaque[layer]; ++i)
        if (working[i * WORKING_CHANNELS + 3] != 0.0f)
            is_opaque[layer] = true;
}

std::vector<std::size_t> BandConverter::find_transparent_layers() const {
    std::vector<std::size_t> found;
    for (std::size_t layer = 0; layer < plan.layers.size(); ++layer)
        if (plan.layers[layer].has_alpha() && plan.layers[layer].owns_alpha && !is_opaque[layer])
            found.push_back(layer);
    return found;
}

void BandConverter::copy_data(std::int64_t begin, std::int64_t end) const {
    for (const ChannelCopy& copy : copies) {
        const auto from = static_cast<std::size_t>(copy.source);
        const auto to = static_cast<std::size_t>(copy.target);
        OIIO::convert_image(1, static_cast<int>(width), static_cast<int>(end - begin), 1,
                            get_source_row(begin) + input_layout.offsets[from], input_layout.types[from],
                            static_cast<OIIO::stride_t>(input_layout.pixel_bytes),
                            static_cast<OIIO::stride_t>(input_row_bytes), OIIO::AutoStride,
                            get_target_row(begin) + output_layout.offsets[to], output_layout.types[to],
                            static_cast<OIIO::stride_t>(output_layout.pixel_bytes),
                            static_cast<OIIO::stride_t>(output_row_bytes), OIIO::AutoStride);
    }
}

} // namespace

bool can_convert_in_place(const OIIO::ImageSpec& input_spec, const PartPlan& plan,
                          const OIIO::ImageSpec& output_spec) {
    if (PixelLayout(input_spec) != PixelLayout(output_spec))
        return false;
    if (input_spec.x != output_spec.x || input_spec.y != output_spec.y ||
        input_spec.width != output_spec.width || input_spec.height != output_spec.height)
        return false;
    for (std::size_t i = 0; i < plan.channels.size(); ++i)
        if (plan.channels[i].source != static_cast<int>(i))
            return false;
    return true;
}

std::vector<std::size_t> convert_part(const OIIO::ImageSpec& input_spec, const PixelBuffer& source,
                                      const PartPlan& plan, const OIIO::ImageSpec& output_spec,
                                      const ConvertRows& convert, int threads, PixelBuffer& target,
                                      const float* part_alpha) {
    const BandConverter bands(input_spec, source, plan, output_spec, convert, target, part_alpha);
    const bool covers_all = bands.get_width() == static_cast<unsigned int>(output_spec.width) &&
                            bands.count_rows() == std::int64_t(output_spec.height) * output_spec.depth;
    if (!covers_all)
        std::memset(target.data(), 0, target.size());
    if (bands.count_rows() == 0)
        return {};

    std::mutex mutex;
    std::exception_ptr failure;
    const std::int64_t rows_per_band = std::max<std::int64_t>(1, BAND_PIXELS / bands.get_width());
    const auto convert_band = [&](std::int64_t begin, std::int64_t end) {
        for (std::int64_t row = begin; row < end; row += rows_per_band)
            bands.convert_rows(row, std::min(end, row + rows_per_band));
    };
    if (threads == 1) { // also where no thread can be started
        convert_band(0, bands.count_rows());
        return bands.find_transparent_layers();
    }
    OIIO::parallel_for_chunked(
        0, bands.count_rows(), rows_per_band,
        [&](std::int64_t begin, std::int64_t end) {
            try {
                convert_band(begin, end);
            } catch (...) { // exceptions must not leave the threads of the pool; thrown again below
                std::lock_guard<std::mutex> lock(mutex);
                failure = std::current_exception();
            }
        },
        OIIO::paropt(threads, OIIO::paropt::SplitDir::Y, 1));
    if (failure)
        std::rethrow_exception(failure);
    return bands.find_transparent_layers();
}

} // namespace image
