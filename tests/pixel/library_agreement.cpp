#include "library_agreement.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <sstream>

#include "colorio/ocio/v2/pixel_bridge.h"
#include "every_target.h"
#include "exact_chain.h"

namespace pixel_test {

namespace {

constexpr std::size_t PIXELS = 3000;

/// Distance of a value from `from`, in tolerances of that: 0 for equal values, NaN and infinity included.
double tolerances(float value, double from) {
    const auto v = static_cast<double>(value);
    if (v == from || (std::isnan(v) && std::isnan(from))) {
        return 0;
    }
    if (!std::isfinite(v) || !std::isfinite(from)) {
        return std::numeric_limits<double>::infinity();
    }
    return std::fabs(v - from) / std::max(1e-7, 1e-6 * std::fabs(from));
}

/// A float for what the value in double precision is when it is kept as one.
double as_float_range(double v) {
    return static_cast<double>(static_cast<float>(v));
}

bool is_within(float ours, float theirs, double exact, double own_limit) {
    if (tolerances(ours, static_cast<double>(theirs)) <= 1) {
        return true;
    }
    const double limit = std::isfinite(as_float_range(exact)) ? exact : as_float_range(exact);
    const double own_error = tolerances(ours, limit);
    return own_error < tolerances(theirs, limit) && own_error <= own_limit;
}

/// The operations of a chain one by one, each on the value that ours before it gave.
class Steps {
public:
    Steps(const library::ConstProcessorRcPtr& processor, const pixel::OpChain& chain, double own_limit)
        : chain_(chain), own_limit_(own_limit) {
        const auto group =
            processor->getOptimizedProcessor(library::BIT_DEPTH_F32, library::BIT_DEPTH_F32, LOSSLESS)
                ->createGroupTransform();
        for (int i = 0; i < group->getNumTransforms(); ++i) {
            theirs_.push_back(lossless(processor_of(group->getTransform(i))));
        }
    }

    bool all_agree(Pixel pixel) const {
        if (theirs_.size() != chain_.size()) {
            return false;
        }
        for (std::size_t i = 0; i < chain_.size(); ++i) {
            Pixel theirs = pixel, ours = pixel;
            theirs_[i]->applyRGBA(theirs.data());
            pixel::Program({chain_[i]}).apply_pixel(ours.data());
            const ExactPixel exact = evaluate_exactly({chain_[i]}, pixel);
            for (std::size_t c = 0; c < 4; ++c) {
                if (!is_within(ours[c], theirs[c], exact[c], own_limit_)) {
                    return false;
                }
            }
            pixel = ours;
        }
        return true;
    }

private:
    const pixel::OpChain& chain_;
    double own_limit_;
    std::vector<library::ConstCPUProcessorRcPtr> theirs_;
};

struct Comparison {
    const library::ConstProcessorRcPtr& processor;
    const pixel::OpChain& chain;
    const std::vector<Pixel>&in, &theirs;
    double own_limit;
    Agreement result;
    std::unique_ptr<const Steps> lazy_steps = nullptr;
    std::vector<std::optional<ExactPixel>> lazy_exact = std::vector<std::optional<ExactPixel>>(in.size());

    const Steps& steps() {
        if (!lazy_steps) {
            lazy_steps = std::make_unique<const Steps>(processor, chain, own_limit);
        }
        return *lazy_steps;
    }

    /// The same for all instruction sets and channels, and by far the longest part of a comparison.
    const ExactPixel& exact(std::size_t i) {
        if (!lazy_exact[i]) {
            lazy_exact[i] = evaluate_exactly(chain, in[i]);
        }
        return *lazy_exact[i];
    }

    void add(const std::vector<Pixel>& ours, std::int64_t target) {
        for (std::size_t i = 0; i < in.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                add(ours[i][c], i, c, target);
            }
        }
    }

    void add(float ours, std::size_t i, std::size_t c, std::int64_t target) {
        ++result.values;
        const double difference = tolerances(ours, static_cast<double>(theirs[i][c]));
        if (difference <= 1) {
            result.largest = std::max(result.largest, difference);
        } else {
            judge(ours, i, c, target);
        }
    }

    void judge(float ours, std::size_t i, std::size_t c, std::int64_t target) {
        const double value = exact(i)[c];
        const double limit = std::isfinite(as_float_range(value)) ? value : as_float_range(value);
        const double own_error = tolerances(ours, limit), library_error = tolerances(theirs[i][c], limit);
        if (own_error < library_error && own_error <= own_limit) {
            ++result.nearer;
            result.own_error = std::max(result.own_error, own_error);
            result.library_error = std::max(result.library_error, library_error);
        } else if (chain.size() > 1 && steps().all_agree(in[i])) {
            ++result.magnified;
            result.magnified_nearer += own_error < library_error;
            result.largest_magnified =
                std::max(result.largest_magnified, tolerances(ours, static_cast<double>(theirs[i][c])));
        } else {
            std::ostringstream words;
            words.precision(9);
            words << ours << " for the library's " << theirs[i][c] << ", in double precision " << limit;
            fail(i, c, target, words.str());
        }
    }

    /// `others` are the same pixels, converted in another shape.
    void add_shape(const std::vector<Pixel>& ours, const std::vector<Pixel>& others, const char* shape,
                   std::int64_t target) {
        for (std::size_t i = 0; i < ours.size(); ++i) {
            for (std::size_t c = 0; c < 4; ++c) {
                // Which of two NaN an addition keeps is left to the compiler.
                const bool is_nan = std::isnan(ours[i][c]) && std::isnan(others[i][c]);
                if (!is_nan && std::memcmp(&ours[i][c], &others[i][c], sizeof(float)) != 0) {
                    fail(i, c, target, std::string("other bits ") + shape + " than in a row");
                }
            }
        }
    }

    void fail(std::size_t i, std::size_t c, std::int64_t target, const std::string& what) {
        if (++result.failures == 1) {
            std::ostringstream words;
            words.precision(9);
            words << target_name(target) << ", channel " << c << " of (" << in[i][0] << ", " << in[i][1]
                  << ", " << in[i][2] << ", " << in[i][3] << "): " << what;
            result.first_failure = words.str();
        }
    }
};

std::vector<Pixel> converted_alone(const pixel::Program& program, std::vector<Pixel> pixels) {
    for (Pixel& one : pixels) {
        program.apply_pixel(one.data());
    }
    return pixels;
}

std::vector<Pixel> converted_in_planes(const pixel::Program& program, std::vector<Pixel> pixels) {
    const std::size_t count = pixels.size();
    std::vector<float> planes(4 * count);
    for (std::size_t i = 0; i < 4 * count; ++i) {
        planes[i % 4 * count + i / 4] = pixels[i / 4][i % 4];
    }
    float* const p = planes.data();
    program.apply_planar(p, p + count, p + 2 * count, p + 3 * count, count, 1);
    for (std::size_t i = 0; i < 4 * count; ++i) {
        pixels[i / 4][i % 4] = planes[i % 4 * count + i / 4];
    }
    return pixels;
}

} // namespace

void Agreement::join(const Agreement& other) {
    if (failures == 0) {
        first_failure = other.first_failure;
    }
    values += other.values;
    nearer += other.nearer;
    magnified += other.magnified;
    magnified_nearer += other.magnified_nearer;
    largest_magnified = std::max(largest_magnified, other.largest_magnified);
    failures += other.failures;
    largest = std::max(largest, other.largest);
    own_error = std::max(own_error, other.own_error);
    library_error = std::max(library_error, other.library_error);
}

std::string words_of(const pixel::OpChain& chain) {
    std::string out;
    for (const std::string& words : pixel::Program(chain).describe().simplified) {
        out += "\n" + words;
    }
    return out;
}

library::ConstProcessorRcPtr processor_of(const library::ConstTransformRcPtr& transform, int version) {
    const library::ConfigRcPtr config = library::Config::CreateRaw()->createEditableCopy();
    config->setMajorVersion(static_cast<unsigned int>(version));
    return config->getProcessor(transform);
}

library::ConstCPUProcessorRcPtr lossless(const library::ConstProcessorRcPtr& processor) {
    return processor->getOptimizedCPUProcessor(LOSSLESS);
}

Agreement compare(const library::ConstProcessorRcPtr& processor, const pixel::OpChain& chain,
                  const std::vector<Pixel>& in, double own_limit) {
    std::vector<Pixel> theirs = in;
    library::PackedImageDesc image(theirs[0].data(), static_cast<long>(in.size()), 1, 4);
    const auto cpu = lossless(processor);
    if (!cpu->isNoOp()) {
        cpu->apply(image);
    }
    const pixel::Program program(chain);
    Comparison comparison{processor, chain, in, theirs, own_limit, {}};
    for (const std::int64_t target : vector_targets()) {
        const TargetGuard guard(target);
        std::vector<Pixel> ours = in;
        program.apply_packed(ours[0].data(), in.size(), 1, 4);
        comparison.add(ours, target);
        comparison.add_shape(ours, converted_alone(program, in), "alone", target);
        comparison.add_shape(ours, converted_in_planes(program, in), "in planes", target);
    }
    return comparison.result;
}

testing::AssertionResult agrees(const library::ConstProcessorRcPtr& processor, double own_limit) {
    std::string why_not;
    const auto chain = ocio::translate(processor, &why_not);
    if (!chain) {
        return testing::AssertionFailure() << "not taken: " << why_not;
    }
    const Agreement found = compare(processor, *chain, mixed_pixels(PIXELS, 97), own_limit);
    if (found.failures > 0) {
        return testing::AssertionFailure() << found.failures << " of " << found.values << " values, such as "
                                           << found.first_failure << words_of(*chain);
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult agrees(const library::ConstTransformRcPtr& transform, int version,
                                double own_limit) {
    return agrees(processor_of(transform, version), own_limit);
}

} // namespace pixel_test
