#include "workflow/sequence.h"

#include <algorithm>
#include <filesystem>

#include "tests/tool/images.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/image_conversion.h"

namespace {

using testing::Field;
using testing::UnorderedElementsAre;
using workflow::ImageJob;

/// Frames of gray 1 that go from "lin" to "half_light", which halves them.
class Sequences : public WorkflowTest {
protected:
    std::vector<ImageJob> make_jobs(int count) {
        std::vector<ImageJob> jobs;
        for (int i = 0; i < count; ++i) {
            jobs.push_back({folder.file("in." + std::to_string(i) + ".exr"),
                            folder.file("out." + std::to_string(i) + ".exr")});
            write_image(jobs.back().input, make_image(2, 2, 3, OIIO::TypeFloat, std::vector<float>(12, 1)));
        }
        return jobs;
    }

    static workflow::ConversionRequest request() {
        workflow::ConversionRequest request;
        request.from = "lin";
        request.to = "half_light";
        return request;
    }

    workflow::Session session{show_options()};
    workflow::Conversion conversion{session, request()};
    workflow::ImageSettings settings = workflow::make_image_settings(conversion);
};

TEST_F(Sequences, ConvertEveryImageAndCountThem) {
    const std::vector<ImageJob> jobs = make_jobs(9);
    std::vector<std::size_t> counts;
    workflow::SequenceEvents events;
    events.progress = [&](std::size_t done, std::size_t count) {
        EXPECT_EQ(count, 9u);
        counts.push_back(done);
    };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_EQ(report.converted, 9u);
    EXPECT_EQ(report.failed, 0u);
    EXPECT_EQ(report.pixels, 36u);
    EXPECT_FALSE(report.is_cancelled);
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
    ASSERT_FALSE(counts.empty());
    EXPECT_EQ(counts.back(), 9u);
    for (const ImageJob& job : jobs)
        EXPECT_EQ(read_image(job.output).get("G", 1, 1), 0.5f) << job.output;
}

TEST_F(Sequences, GoOnPastImagesThatFail) {
    std::vector<ImageJob> jobs = make_jobs(5);
    folder.write("in.1.exr", "no image");
    jobs[3].input = folder.file("none.exr");
    diagnostics::Diagnostics reports;
    workflow::SequenceEvents events;
    events.report = [&](const diagnostics::Diagnostic& diagnostic) { reports.push_back(diagnostic); };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_EQ(report.converted, 3u);
    EXPECT_EQ(report.failed, 2u);
    EXPECT_THAT(reports, UnorderedElementsAre(Field(&diagnostics::Diagnostic::file, jobs[1].input),
                                              Field(&diagnostics::Diagnostic::file, jobs[3].input)));
    EXPECT_FALSE(folder.exists("out.1.exr"));
    EXPECT_TRUE(folder.exists("out.4.exr"));
}

TEST_F(Sequences, BeginNoFurtherImageOnceCancelled) {
    const std::vector<ImageJob> jobs = make_jobs(40);
    std::atomic<bool> cancel{false};
    workflow::SequenceEvents events;
    events.cancel = &cancel;
    events.progress = [&](std::size_t done, std::size_t) { cancel = cancel || done >= 1; };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_TRUE(report.is_cancelled);
    EXPECT_GE(report.converted, 1u);
    EXPECT_LT(report.converted, 40u);
    unsigned int written = 0;
    for (const ImageJob& job : jobs) {
        if (std::filesystem::exists(job.output)) {
            ++written;
            EXPECT_EQ(read_image(job.output).get("R"), 0.5f) << "half an image: " << job.output;
        }
    }
    EXPECT_EQ(written, report.converted);
}

TEST_F(Sequences, CancelledBeforehandConvertNothing) {
    const std::vector<ImageJob> jobs = make_jobs(3);
    const std::atomic<bool> cancel{true};
    workflow::SequenceEvents events;
    events.cancel = &cancel;
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_TRUE(report.is_cancelled);
    EXPECT_EQ(report.converted, 0u);
    EXPECT_FALSE(folder.exists("out.0.exr"));
}

} // namespace
