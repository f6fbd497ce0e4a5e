#include "workflow/sequence.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "tests/tool/images.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/image_conversion.h"

namespace {

using testing::ElementsAre;
using testing::Field;
using testing::UnorderedElementsAre;
using workflow::ImageJob;
using workflow::ImageOutcome;

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
    std::vector<std::string> outputs;
    workflow::SequenceEvents events;
    events.finished = [&](const ImageOutcome& outcome) {
        EXPECT_EQ(outcome.status, ImageOutcome::CONVERTED);
        EXPECT_EQ(outcome.image.width, 2);
        EXPECT_EQ(outcome.reason, "");
        outputs.push_back(outcome.job.output);
    };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_EQ(report.converted, 9u);
    EXPECT_EQ(report.failed, 0u);
    EXPECT_EQ(report.pixels, 36u);
    EXPECT_FALSE(report.is_cancelled);
    EXPECT_EQ(std::set<std::string>(outputs.begin(), outputs.end()).size(), 9u);
    EXPECT_EQ(outputs.size(), 9u);
    for (const ImageJob& job : jobs)
        EXPECT_EQ(read_image(job.output).get("G", 1, 1), 0.5f) << job.output;
}

TEST_F(Sequences, GoOnPastImagesThatFail) {
    std::vector<ImageJob> jobs = make_jobs(5);
    folder.write("in.1.exr", "no image");
    jobs[3].input = folder.file("none.exr");
    std::vector<std::string> failed;
    workflow::SequenceEvents events;
    events.finished = [&](const ImageOutcome& outcome) {
        EXPECT_EQ(outcome.status == ImageOutcome::FAILED, outcome.error.has_value());
        if (outcome.error)
            failed.push_back(outcome.error->file);
    };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events);
    EXPECT_EQ(report.converted, 3u);
    EXPECT_EQ(report.failed, 2u);
    EXPECT_THAT(failed, UnorderedElementsAre(jobs[1].input, jobs[3].input));
    EXPECT_THAT(report.failures, ElementsAre(Field(&diagnostics::Diagnostic::file, jobs[1].input),
                                             Field(&diagnostics::Diagnostic::file, jobs[3].input)))
        << "in the order of the frames";
    EXPECT_FALSE(folder.exists("out.1.exr"));
    EXPECT_TRUE(folder.exists("out.4.exr"));
}

TEST_F(Sequences, BeginNoFurtherImageOnceCancelled) {
    const std::vector<ImageJob> jobs = make_jobs(40);
    std::atomic<bool> cancel{false};
    workflow::SequenceEvents events;
    events.cancel = &cancel;
    events.finished = [&](const ImageOutcome&) { cancel = true; };
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

TEST_F(Sequences, OnlyPlan) {
    const std::vector<ImageJob> jobs = make_jobs(3);
    std::vector<std::string> outputs;
    workflow::SequenceEvents events;
    events.finished = [&](const ImageOutcome& outcome) {
        EXPECT_EQ(outcome.status, ImageOutcome::PLANNED);
        outputs.push_back(outcome.job.output);
    };
    workflow::SequenceOptions options;
    options.only_plans = true;
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events, options);
    EXPECT_EQ(report.planned, 3u);
    EXPECT_FALSE(report.is_cancelled);
    EXPECT_THAT(outputs, UnorderedElementsAre(jobs[0].output, jobs[1].output, jobs[2].output));
    for (const ImageJob& job : jobs)
        EXPECT_FALSE(std::filesystem::exists(job.output));
}

TEST_F(Sequences, DoNotPlanWhatNoFormatCanHold) {
    std::vector<ImageJob> jobs = make_jobs(2);
    jobs[1].output = folder.file("out.unknown");
    workflow::SequenceOptions options;
    options.only_plans = true;
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, {}, options);
    EXPECT_EQ(report.planned, 1u);
    ASSERT_EQ(report.failed, 1u);
    EXPECT_EQ(report.failures[0].file, jobs[1].output);
}

TEST_F(Sequences, ConvertEveryImageWhereThereIsMemoryForNone) {
    workflow::SequenceOptions options;
    options.memory = 1;
    settings.threads = 4;
    for (int count = 1; count < 20; ++count) { // lanes end in another order each time
        const std::vector<ImageJob> jobs = make_jobs(count);
        const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, {}, options);
        EXPECT_EQ(report.converted, jobs.size());
        EXPECT_EQ(read_image(jobs.back().output).get("G", 1, 1), 0.5f);
    }
}

} // namespace
