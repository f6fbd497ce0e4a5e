#include "viewer/difference.h"

#include <cmath>
#include <exception>
#include <mutex>

#include <OpenImageIO/parallel.h>
#include <fmt/format.h>

#include "workflow/conversion.h"

namespace viewer {

namespace {

/// Absolute difference; equal non-finite values do not differ.
float get_difference(float a, float b, bool& comparable) {
    if (std::isfinite(a) && std::isfinite(b))
        return std::abs(a - b);
    comparable = comparable && (a == b || (std::isnan(a) && std::isnan(b)));
    return 0;
}

} // namespace

std::string format_difference(const Difference& difference) {
    std::string text = fmt::format("largest {:.6g} at {}, {}; mean {:.3g}", difference.largest, difference.x,
                                   difference.y, difference.mean);
    if (difference.incomparable > 0)
        text += fmt::format("; {} pixels finite in only one of the two", difference.incomparable);
    return text;
}

Difference compare_pixels(const Image& image, const std::vector<float>& gpu, const std::vector<float>& cpu) {
    auto shown = std::make_shared<Image>();
    shown->path = image.path;
    shown->width = image.width;
    shown->height = image.height;
    shown->rgba.resize(gpu.size());
    Difference result;
    double sum = 0;
    std::size_t largest_at = 0;
    for (std::size_t i = 0; i < gpu.size(); i += 4) {
        bool comparable = true;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const float difference = get_difference(gpu[i + channel], cpu[i + channel], comparable);
            shown->rgba[i + channel] = difference;
            sum += difference;
            if (difference > result.largest) {
                result.largest = difference;
                largest_at = i / 4;
            }
        }
        shown->rgba[i + 3] = 1;
        result.incomparable += !comparable;
    }
    result.mean = gpu.empty() ? 0 : sum / (static_cast<double>(gpu.size()) * 3 / 4);
    result.x = static_cast<int>(largest_at % static_cast<std::size_t>(image.width));
    result.y = static_cast<int>(largest_at / static_cast<std::size_t>(image.width));
    result.image = std::move(shown);
    return result;
}

std::vector<float> convert_on_cpu(const Image& image, const workflow::Conversion& conversion,
                                  float exposure) {
    std::vector<float> rgba = image.rgba;
    const auto row = static_cast<std::size_t>(image.width) * 4;
    std::exception_ptr failure;
    std::mutex mutex;
    OIIO::parallel_for_chunked(0, image.height, 0, [&](int64_t begin, int64_t end) {
        try {
            conversion.apply(&rgba[static_cast<std::size_t>(begin) * row],
                             static_cast<unsigned int>(image.width), static_cast<unsigned int>(end - begin),
                             exposure);
        } catch (...) { // The pool's threads let nothing pass; it is thrown again below.
            const std::lock_guard lock(mutex);
            failure = std::current_exception();
        }
    });
    if (failure)
        std::rethrow_exception(failure);
    return rgba;
}

std::future<Difference> start_comparison(std::shared_ptr<const Image> image,
                                         std::shared_ptr<const workflow::Conversion> conversion,
                                         float exposure, std::vector<float> gpu) {
    return std::async(std::launch::async, [image = std::move(image), conversion = std::move(conversion),
                                           exposure, gpu = std::move(gpu)] {
        return compare_pixels(*image, gpu, convert_on_cpu(*image, *conversion, exposure));
    });
}

} // namespace viewer
