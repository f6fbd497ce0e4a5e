#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "adversarial.h"
#include "colorio/ocio/sanity_check.h"
#include "colorio/ocio/v2/evaluator.h"
#include "colorio/ocio/v2/pixel_bridge.h"
#include "library_agreement.h"
#include "rounding_agreement.h"
#include "tests/support/test_configs.h"

using namespace pixel_test;

namespace {

constexpr library::TransformDirection DIRECTIONS[] = {library::TRANSFORM_DIR_FORWARD,
                                                      library::TRANSFORM_DIR_INVERSE};

/// Called with the words for a conversion and with what makes its processor.
using Visit =
    std::function<void(const std::string& words, const std::function<library::ConstProcessorRcPtr()>&)>;

std::string scene_linear_of(const library::ConstConfigRcPtr& config) {
    for (const char* role : {library::ROLE_SCENE_LINEAR, library::ROLE_REFERENCE, library::ROLE_DEFAULT}) {
        if (config->hasRole(role)) {
            return role;
        }
    }
    return config->getColorSpaceNameByIndex(0);
}

void visit_spaces(const library::ConstConfigRcPtr& config, const Visit& visit) {
    const std::string linear = scene_linear_of(config);
    constexpr auto ALL = library::SEARCH_REFERENCE_SPACE_ALL;
    for (int i = 0; i < config->getNumColorSpaces(ALL, library::COLORSPACE_ALL); ++i) {
        const std::string name = config->getColorSpaceNameByIndex(ALL, library::COLORSPACE_ALL, i);
        visit("to " + name, [=] { return config->getProcessor(linear.c_str(), name.c_str()); });
        visit("from " + name, [=] { return config->getProcessor(name.c_str(), linear.c_str()); });
    }
}

void visit_views(const library::ConstConfigRcPtr& config, const Visit& visit) {
    const std::string linear = scene_linear_of(config);
    for (const ocio::DisplayViews& display : ocio::every_display(config)) {
        for (const std::string& view : display.views) {
            for (const auto direction : DIRECTIONS) {
                visit("view " + view + " of " + display.name, [=, name = display.name] {
                    return config->getProcessor(linear.c_str(), name.c_str(), view.c_str(), direction);
                });
            }
        }
    }
}

void visit_looks(const library::ConstConfigRcPtr& config, const Visit& visit) {
    const std::string linear = scene_linear_of(config);
    for (int i = 0; i < config->getNumLooks(); ++i) {
        for (const auto direction : DIRECTIONS) {
            const library::LookTransformRcPtr look = library::LookTransform::Create();
            look->setSrc(linear.c_str());
            look->setDst(linear.c_str());
            look->setLooks(config->getLookNameByIndex(i));
            visit(std::string("look ") + look->getLooks(),
                  [=] { return config->getProcessor(look, direction); });
        }
    }
}

void visit_grades(const library::ConstConfigRcPtr& config, const Visit& visit) {
    const double slope[3] = {1.37, 0.9, 0.45}, offset[3] = {0.05, -0.022, 0.033}, power[3] = {1.7, 0.81, 1};
    for (const double saturation : {1.0, 0.7, 1.4}) {
        for (const auto style : {library::CDL_NO_CLAMP, library::CDL_ASC}) {
            for (const auto direction : DIRECTIONS) {
                const library::CDLTransformRcPtr cdl = library::CDLTransform::Create();
                cdl->setSlope(slope);
                cdl->setOffset(offset);
                cdl->setPower(power);
                cdl->setSat(saturation);
                cdl->setStyle(style);
                visit("CDL", [=] { return config->getProcessor(cdl, direction); });
            }
        }
    }
}

/// What is not known goes to the library unchanged.
void expect_library_bits(const std::string& words, const library::ConstProcessorRcPtr& processor) {
    constexpr std::size_t PIXELS = 200;
    const std::vector<Pixel> in = mixed_pixels(PIXELS, 5);
    std::vector<Pixel> ours = in, theirs = in;
    ocio::Evaluator(processor, LOSSLESS).apply(ocio::PackedImageDesc{ours[0].data(), PIXELS, 1, 4});
    library::PackedImageDesc image(theirs[0].data(), PIXELS, 1, 4);
    lossless(processor)->apply(image);
    EXPECT_EQ(std::memcmp(ours.data(), theirs.data(), PIXELS * sizeof(Pixel)), 0) << words;
}

/// What was found out about the conversions of one configuration.
class Report {
public:
    void add(const std::string& words, const std::function<library::ConstProcessorRcPtr()>& make) {
        library::ConstProcessorRcPtr processor;
        try {
            processor = make();
        } catch (const library::Exception&) { // a file is missing, or the library refuses for another reason
            not_made_.insert(words);
            return;
        }
        compare_with_library(words, processor);
    }

    std::size_t get_taken() const { return taken_; }
    const std::vector<std::string>& get_left() const { return left_; }
    const std::set<std::string>& get_not_made() const { return not_made_; }

    void print(const std::string& path) const {
        std::printf("%s: %zu conversions by programs, %zu by the library, %zu that cannot be made\n",
                    path.c_str(), taken_, left_.size(), not_made_.size());
        for (const std::string& conversion : left_) {
            std::printf("    by the library: %s\n", conversion.c_str());
        }
        std::printf(
            "    largest difference %.2f of the tolerance; %zu of %zu values beyond it, and nearer to double "
            "precision",
            found_.largest, found_.nearer, found_.values);
        if (found_.nearer > 0) {
            std::printf(": off by %.3g tolerances at most, the library by %.3g (%s)", found_.own_error,
                        found_.library_error, nearer_in_.c_str());
        }
        std::printf("\n");
        if (rounded_.pixels > 0) {
            std::printf(
                "    with ACES 2.0 functions or hue curves: %zu of %zu pixels equal, %zu beyond 1e-5, %.3g "
                "tolerances at most\n",
                rounded_.equal, rounded_.pixels, rounded_.beyond, rounded_.largest);
        }
        for (const std::string& words : magnified_in_) {
            std::printf("    roundings magnified by the chain: %s\n", words.c_str());
        }
    }

private:
    void compare_with_library(const std::string& words, const library::ConstProcessorRcPtr& processor) {
        std::string why_not;
        const auto chain = ocio::translate(processor, &why_not);
        if (!chain) {
            left_.push_back(words + ": " + why_not);
            expect_library_bits(words, processor);
            return;
        }
        ++taken_;
        if (has_rounded_steps(*chain)) {
            compare_roundings(words, processor, *chain);
            return;
        }
        const Agreement found = compare(processor, *chain, adversarial_pixels(*chain));
        EXPECT_EQ(found.failures, 0u) << words << ": " << found.first_failure << words_of(*chain);
        found_.join(found);
        if (found.nearer > 0) {
            nearer_in_ += (nearer_in_.empty() ? "" : ", ") + words;
        }
        if (found.magnified > 0) {
            char numbers[160];
            std::snprintf(
                numbers, sizeof numbers,
                ": %zu of %zu values, %zu nearer to double precision than the library's, difference "
                "%.3g tolerances at most",
                found.magnified, found.values, found.magnified_nearer, found.largest_magnified);
            magnified_in_.push_back(words + numbers);
        }
    }

    /// Inverse directions magnify roundings without bound at their poles, which some of the pixels are near.
    void compare_roundings(const std::string& words, const library::ConstProcessorRcPtr& processor,
                           const pixel::OpChain& chain) {
        const RoundingDifference found = rounding_difference(processor, adversarial_pixels(chain));
        EXPECT_EQ(found.not_numbers, 0u) << words;
        const pixel::Direction inverse = pixel::Direction::Inverse;
        EXPECT_LE(found.beyond, has_rounded_steps(chain, &inverse) ? found.pixels / 20 : 0)
            << words << ": " << found.words << words_of(chain);
        rounded_.join(found);
    }

    std::size_t taken_ = 0;
    RoundingDifference rounded_;
    std::set<std::string> not_made_;
    std::vector<std::string> left_; ///< conversions that take no program, and why
    std::vector<std::string> magnified_in_;
    Agreement found_;
    std::string nearer_in_; ///< the conversions with such values
};

/// Null where this version of the library cannot read the file.
library::ConstConfigRcPtr read_config(const std::string& path) {
    try {
        return library::Config::CreateFromFile(path.c_str());
    } catch (const library::Exception& error) {
        std::printf("%s: not read: %s\n", path.c_str(), error.what());
        return nullptr;
    }
}

TEST(LibraryConfigAgreement, EverySpaceViewLookAndCdl) {
    std::vector<std::string> paths = find_test_configs();
    paths.insert(paths.begin(), QB_PIXEL_TEST_CONFIG);
    for (const std::string& path : paths) {
        SCOPED_TRACE(path);
        const library::ConstConfigRcPtr config = read_config(path);
        const bool own = path.rfind(QB_TEST_CONFIG_FOLDER, 0) == 0 || path == QB_PIXEL_TEST_CONFIG;
        if (!config) {
            EXPECT_FALSE(own) << "a configuration of the project is to be readable";
            continue;
        }
        Report report;
        const auto add = [&](const auto& words, const auto& make) { report.add(words, make); };
        visit_spaces(config, add);
        visit_views(config, add);
        visit_looks(config, add);
        if (own) {
            EXPECT_GT(report.get_taken(), 0u) << "nothing was compared";
            EXPECT_THAT(report.get_not_made(), testing::Each("look missing file"));
            EXPECT_THAT(report.get_left(), testing::IsEmpty());
        }
        visit_grades(config, add);
        report.print(path);
    }
}

} // namespace
