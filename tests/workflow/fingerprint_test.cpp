#include "workflow/fingerprint.h"

#include <filesystem>
#include <functional>
#include <set>

#include "tests/tool/configs.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/image_conversion.h"

namespace {

constexpr char LUT[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.5\n}\n";
constexpr char OTHER_LUT[] = "Version 1\nFrom 0.0 1.0\nLength 2\nComponents 1\n{\n0.0\n0.6\n}\n";
constexpr char LUT_SPACE[] = R"(  - !<ColorSpace>
    name: film
    bitdepth: 32f
    to_reference: !<FileTransform> {src: film.spi1d, interpolation: linear}
)";

std::string make_cdl(const std::string& slope) {
    return "<ColorCorrection id=\"warm\"><SOPNode><Slope>" + slope +
           " 1 1</Slope><Offset>0 0 0</Offset><Power>1 1 1</Power></SOPNode></ColorCorrection>";
}

class Fingerprints : public WorkflowTest {
protected:
    Fingerprints() {
        std::filesystem::create_directory(folder.file("luts"));
        folder.write("luts/film.spi1d", LUT);
        folder.write("own.spi1d", LUT);
        folder.write("warm.cc", make_cdl("2"));
    }

    using Change = std::function<void(workflow::ConversionRequest&, workflow::ImageOptions&)>;

    /// In a new session, after a change of the request.
    std::string make(const Change& change = {}, const std::string& config = config_text()) {
        workflow::ConversionRequest request;
        request.from = "film";
        request.to = "half_light";
        request.steps = {{workflow::ColorStep::CDL, folder.file("warm.cc")},
                         {workflow::ColorStep::LUT, folder.file("own.spi1d")}};
        workflow::ImageOptions options;
        if (change)
            change(request, options);
        const workflow::Session session(options_for(config));
        const workflow::Conversion conversion(session, request);
        return workflow::make_conversion_fingerprint(session, request, conversion,
                                                     workflow::make_image_settings(conversion, options));
    }

    static std::string config_text() { return std::string(SHOW_CONFIG) + LUT_SPACE; }
};

TEST_F(Fingerprints, AreTheSameInEverySession) {
    const std::string first = make();
    EXPECT_EQ(first.size(), 32u);
    EXPECT_EQ(first.find_first_not_of("0123456789abcdef"), std::string::npos) << first;
    EXPECT_EQ(make(), first);
    EXPECT_EQ(make([](auto&, auto& options) { options.threads = 3; }), first);
    EXPECT_EQ(make([](auto&, auto& options) { options.source_tags = {"a tag"}; }), first);
    EXPECT_EQ(make([](auto& request, auto&) { request.from = "FILM"; }), first) << "the same color space";
}

TEST_F(Fingerprints, DependOnTheRequestAndTheOutput) {
    std::set<std::string> all = {make()};
    const Change changes[] = {
        [](auto& request, auto&) { request.from = "lin"; },
        [](auto& request, auto&) { request.to = "lin"; },
        [](auto& request, auto&) {
            request.to.clear();
            request.view = "Monitor.Warm";
        },
        [](auto& request, auto&) { request.steps.pop_back(); },
        [](auto& request, auto&) { request.steps.erase(request.steps.begin()); },
        [](auto& request, auto&) { request.steps.back().is_inverse = true; },
        [](auto&, auto& options) { options.depth = "float"; },
        [](auto&, auto& options) { options.alpha_rule = image::AlphaRule::DIVIDE; },
    };
    for (const Change& change : changes)
        EXPECT_TRUE(all.insert(make(change)).second) << all.size();
}

TEST_F(Fingerprints, DependOnTheContentsOfTheConfigAndOfEveryFileThatIsRead) {
    std::set<std::string> all = {make()};
    EXPECT_TRUE(all.insert(make({}, config_text() + "# a comment\n")).second);
    folder.write("luts/film.spi1d", OTHER_LUT);
    EXPECT_TRUE(all.insert(make()).second) << "a LUT of the config";
    folder.write("own.spi1d", OTHER_LUT);
    EXPECT_TRUE(all.insert(make()).second) << "a LUT of the request";
    folder.write("warm.cc", make_cdl("3"));
    EXPECT_TRUE(all.insert(make()).second) << "a CDL";
}

TEST_F(Fingerprints, DoNotDependOnOtherFilesNorOnTimes) {
    const std::string first = make();
    folder.write("luts/unused.spi1d", OTHER_LUT);
    for (const char* name : {"luts/film.spi1d", "own.spi1d", "warm.cc"})
        std::filesystem::last_write_time(folder.file(name), std::filesystem::file_time_type::clock::now() +
                                                                std::chrono::hours(1));
    EXPECT_EQ(make(), first);
}

TEST_F(Fingerprints, OfAnImageDependOnItsPathSizeAndTime) {
    const workflow::ImageJob job{folder.write("a.exr", "1234"), folder.file("out.exr")};
    const std::string first = workflow::make_image_fingerprint(job, "c");
    EXPECT_EQ(first.size(), 32u);
    EXPECT_EQ(workflow::make_image_fingerprint(job, "c"), first);
    EXPECT_EQ(workflow::make_image_fingerprint({folder.file("./luts/../a.exr"), "x.exr"}, "c"), first);
    EXPECT_NE(workflow::make_image_fingerprint(job, "d"), first);
    EXPECT_EQ(workflow::make_image_fingerprint(job, ""), "");

    const auto time = std::filesystem::last_write_time(job.input);
    folder.write("b.exr", "1234");
    std::filesystem::last_write_time(folder.file("b.exr"), time);
    EXPECT_NE(workflow::make_image_fingerprint({folder.file("b.exr"), job.output}, "c"), first);
    folder.write("a.exr", "12345");
    std::filesystem::last_write_time(job.input, time);
    EXPECT_NE(workflow::make_image_fingerprint(job, "c"), first) << "longer";
    folder.write("a.exr", "4321");
    std::filesystem::last_write_time(job.input, time - std::chrono::seconds(1));
    EXPECT_NE(workflow::make_image_fingerprint(job, "c"), first) << "an older image";
}

TEST_F(Fingerprints, OfAnImageConvertedInItsPlaceDependOnTheConversionAlone) {
    const workflow::ImageJob job{folder.write("a.exr", "1234"), folder.file("a.exr")};
    const std::string before = workflow::make_image_fingerprint(job, "c");
    folder.write("a.exr", "converted");
    EXPECT_EQ(workflow::make_image_fingerprint(job, "c"), before);
    EXPECT_NE(workflow::make_image_fingerprint(job, "d"), before);
}

} // namespace
