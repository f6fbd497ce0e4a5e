#include "rounding_agreement.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <variant>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "every_target.h"
#include "exact_chain.h"

namespace pixel_test {

namespace {

void add(const Pixel& in, const Pixel& ours, const Pixel& theirs, RoundingDifference& found) {
    ++found.pixels;
    double difference = 0, channel = 0;
    for (std::size_t c = 0; c < 4; ++c) {
        if (std::isfinite(theirs[c])) {
            found.not_numbers += !std::isfinite(ours[c]);
            difference = std::max(difference, std::abs(static_cast<double>(ours[c]) - theirs[c]));
            channel = std::max(channel, std::abs(static_cast<double>(theirs[c])));
        }
    }
    const double tolerances = difference / (1e-6 + 1e-5 * channel);
    found.equal += difference == 0;
    found.largest = std::max(found.largest, tolerances);
    if (tolerances > 1) {
        ++found.beyond;
        char text[300];
        std::snprintf(text, sizeof text, "(%.9g, %.9g, %.9g) gave (%.9g, %.9g, %.9g) for (%.9g, %.9g, %.9g)",
                      in[0], in[1], in[2], ours[0], ours[1], ours[2], theirs[0], theirs[1], theirs[2]);
        found.words = text;
    }
}

pixel::Direction direction_of(const pixel::Op& op) {
    const auto* function = std::get_if<pixel::FixedFunction>(&op);
    return function ? function->direction : std::get<pixel::HueCurve>(op).direction;
}

} // namespace

void RoundingDifference::join(const RoundingDifference& other) {
    pixels += other.pixels;
    equal += other.equal;
    not_numbers += other.not_numbers;
    beyond += other.beyond;
    largest = std::max(largest, other.largest);
    words = other.words.empty() ? words : other.words;
}

bool has_rounded_steps(const pixel::OpChain& chain, const pixel::Direction* direction) {
    return std::any_of(chain.begin(), chain.end(), [&](const pixel::Op& op) {
        return !has_exact_value(op) && (!direction || direction_of(op) == *direction);
    });
}

RoundingDifference rounding_difference(const library::ConstProcessorRcPtr& processor,
                                       const std::vector<Pixel>& in) {
    RoundingDifference found;
    std::string why_not;
    const auto chain = ocio::translate(processor, &why_not);
    EXPECT_TRUE(chain.has_value()) << why_not;
    if (!chain) {
        return found;
    }
    std::vector<Pixel> theirs = in;
    library::PackedImageDesc image(theirs[0].data(), static_cast<long>(in.size()), 1, 4);
    lossless(processor)->apply(image);
    const pixel::Program program(*chain);
    for (const std::int64_t target : vector_targets()) {
        const TargetGuard guard(target);
        std::vector<Pixel> ours = in;
        program.apply_packed(ours[0].data(), in.size(), 1, 4);
        for (std::size_t i = 0; i < in.size(); ++i) {
            add(in[i], ours[i], theirs[i], found);
        }
    }
    return found;
}

} // namespace pixel_test
