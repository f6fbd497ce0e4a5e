#include "workflow/finished_images.h"

#include <chrono>
#include <filesystem>

#include "tests/tool/images.h"
#include "tests/workflow/workflow_fixture.h"
#include "workflow/sequence.h"

namespace {

using namespace std::chrono_literals;

class FinishedImages : public WorkflowTest {
protected:
    FinishedImages() {
        settings.fingerprint = "a conversion";
        write_image(job.input, make_image(20, 20, 3, OIIO::TypeHalf, std::vector<float>(1200, 0.5f)));
    }

    void convert() {
        workflow::ImageBuffers buffers;
        workflow::convert_image(job, settings, buffers);
    }
    std::string find_reason() { return workflow::find_reason_to_convert(job, settings, reader); }

    /// The image or its output, changed at another time.
    static void move_time(const std::string& path, std::chrono::seconds distance) {
        std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + distance);
    }

    workflow::ImageJob job{folder.file("in.exr"), folder.file("out.exr")};
    workflow::ImageSettings settings; // colors stay as they are
    image::ReaderProcess reader;
};

TEST_F(FinishedImages, AreNotConvertedAgain) {
    EXPECT_EQ(find_reason(), "no output");
    for (const char* name : {"out.exr", "out.png", "out.tif", "out.jpg", "out.dpx"}) {
        job.output = folder.file(name);
        convert();
        EXPECT_EQ(find_reason(), "") << name;
    }
}

TEST_F(FinishedImages, AreConvertedAgainWhenTheImageChanged) {
    convert();
    move_time(job.output, 10s);
    EXPECT_EQ(find_reason(), "") << "only newer than before";
    move_time(job.input, 5s);
    EXPECT_EQ(find_reason(), "made by another conversion or from another input")
        << "an image of another time, older than the output";
    move_time(job.input, 10s);
    EXPECT_EQ(find_reason(), "the input is newer");
    std::filesystem::remove(job.input);
    EXPECT_EQ(find_reason(), "no input");
}

TEST_F(FinishedImages, AreConvertedAgainWhenTheOutputIsOlder) {
    convert();
    move_time(job.output, -100s);
    EXPECT_EQ(find_reason(), "the input is newer");
}

TEST_F(FinishedImages, AreConvertedAgainByAnotherConversion) {
    convert();
    settings.fingerprint = "another conversion";
    EXPECT_EQ(find_reason(), "made by another conversion or from another input");
}

TEST_F(FinishedImages, AreConvertedAgainWhenAnotherProgramMadeThem) {
    write_image(job.output, make_image(20, 20, 3, OIIO::TypeHalf, std::vector<float>(1200, 0.5f)));
    EXPECT_EQ(find_reason(), "made by another conversion or from another input");
}

TEST_F(FinishedImages, AreConvertedAgainWhenTheyAreDamaged) {
    convert();
    const auto size = std::filesystem::file_size(job.output);
    std::filesystem::resize_file(job.output, size - 1);
    EXPECT_EQ(find_reason(), "incomplete");
    std::filesystem::resize_file(job.output, 0);
    EXPECT_EQ(find_reason(), "unreadable");
}

TEST_F(FinishedImages, AreConvertedAgainInFormatsThatDoNotRecordIt) {
    job.output = folder.file("out.bmp");
    convert();
    constexpr char REASON[] = "bmp files do not record how they were made: they are always converted again";
    EXPECT_EQ(find_reason(), REASON);
    diagnostics::Diagnostics notes;
    workflow::SequenceEvents events;
    events.report = [&](const diagnostics::Diagnostic& note) { notes.push_back(note); };
    workflow::SequenceOptions options;
    options.resumes = true;
    EXPECT_EQ(workflow::convert_sequence({job, job}, settings, events, options).converted, 2u);
    EXPECT_THAT(notes, testing::ElementsAre(testing::Field(&diagnostics::Diagnostic::message, REASON)))
        << "once for the sequence";
}

TEST_F(FinishedImages, AreFoundInPlace) {
    job.output = job.input;
    EXPECT_EQ(find_reason(), "made by another conversion or from another input");
    convert();
    EXPECT_EQ(find_reason(), "");
}

TEST_F(FinishedImages, DoNotPassTheirRecordOn) {
    convert();
    const workflow::ImageJob next{job.output, folder.file("next.exr")};
    workflow::ImageBuffers buffers;
    workflow::convert_image(next, workflow::ImageSettings(), buffers);
    EXPECT_EQ(read_image(job.output).spec.get_string_attribute("colorio:fingerprint").size(), 32u);
    EXPECT_EQ(read_image(next.output).spec.get_string_attribute("colorio:fingerprint"), "");
}

TEST_F(FinishedImages, AreLeftOutOfASequenceThatIsResumed) {
    std::vector<workflow::ImageJob> jobs;
    for (int frame = 0; frame < 6; ++frame) {
        jobs.push_back({folder.file("in." + std::to_string(frame) + ".exr"),
                        folder.file("out." + std::to_string(frame) + ".exr"), frame});
        std::filesystem::copy_file(job.input, jobs.back().input);
    }
    workflow::SequenceOptions options;
    options.resumes = true;
    EXPECT_EQ(workflow::convert_sequence({jobs[1], jobs[4]}, settings, {}, options).converted, 2u);
    const auto time = std::filesystem::last_write_time(jobs[4].output);
    std::vector<int> converted;
    workflow::SequenceEvents events;
    events.finished = [&](const workflow::ImageOutcome& outcome) {
        if (outcome.status == workflow::ImageOutcome::CONVERTED) {
            EXPECT_EQ(outcome.reason, "no output");
            converted.push_back(*outcome.job.frame);
        } else {
            EXPECT_EQ(outcome.status, workflow::ImageOutcome::UP_TO_DATE);
        }
    };
    const workflow::SequenceReport report = workflow::convert_sequence(jobs, settings, events, options);
    EXPECT_THAT(converted, testing::UnorderedElementsAre(0, 2, 3, 5));
    EXPECT_EQ(report.converted, 4u);
    EXPECT_EQ(report.up_to_date, 2u);
    EXPECT_FALSE(report.is_cancelled);
    EXPECT_EQ(std::filesystem::last_write_time(jobs[4].output), time);
}

} // namespace
