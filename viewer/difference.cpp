#include "viewer/difference.h"

#include <exception>
#include <mutex>

#include <OpenImageIO/parallel.h>
#include <fmt/format.h>

#include "workflow/conversion.h"

namespace viewer {

namespace {

Difference compare_pixels(const Image& image, const std::vector<float>& gpu, const std::vector<float>& cpu) {
    auto shown = std::make_shared<Image>();
    shown->path = image.path;
    shown->width = image.width;
    shown->height = image.height;
    Difference result;
    result.values = workflow::compare_colors(image.path, image.rgba, cpu, gpu, &shown->rgba);
    result.x = static_cast<int>(result.values.position % static_cast<std::size_t>(image.width));
    result.y = static_cast<int>(result.values.position / static_cast<std::size_t>(image.width));
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

} // namespace

std::string format_difference(const Difference& difference) {
    std::string text = fmt::format("largest {:.6g} at {}, {}; mean {:.3g}", difference.values.largest,
                                   difference.x, difference.y, difference.values.mean);
    if (const std::string incomparable = describe_incomparable(difference.values); !incomparable.empty())
        text += "; " + incomparable;
    return text;
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
