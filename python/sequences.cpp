#include "python/sequences.h"

#include <cstdint>
#include <optional>
#include <string>

#include <fmt/format.h>
#include <pybind11/stl.h>

#include "diagnostics/failure.h"
#include "python/diagnostics.h"
#include "python/image_options.h"
#include "python/image_readers.h"
#include "python/sequence_run.h"
#include "python/text.h"
#include "workflow/fingerprint.h"
#include "workflow/frame_jobs.h"
#include "workflow/sequence_text.h"

namespace py = pybind11;

namespace python {

namespace {

/// The result of a sequence.
struct SequenceResult : workflow::SequenceReport {
    diagnostics::Diagnostics notes; ///< About missing frames and the images.
};

struct SequenceArguments {
    std::string frames;
    py::object progress; ///< None or a callable.
    bool resumes = false;
    bool only_plans = false;
    std::uint64_t memory = 0;
};

/// Warns about frames that are missing between others. Throws diagnostics::Failure for those asked for.
void note_missing(const workflow::FrameJobs& found, const std::string& input,
                  diagnostics::Diagnostics& notes) {
    const std::optional<diagnostics::Diagnostic> missing = workflow::describe_missing(found, input);
    if (!missing)
        return;
    if (missing->severity == diagnostics::Severity::ERROR)
        throw diagnostics::Failure(*missing);
    notes.push_back(*missing);
}

SequenceResult convert(const Converter& self, const py::object& input_path, const py::object& output_path,
                       const SequenceArguments& arguments, const ImageArguments& image_arguments) {
    const std::shared_ptr<OpenSession> session = self.get_session();
    const std::string input = get_path(input_path, "input"), output = get_path(output_path, "output");
    if (!arguments.progress.is_none() && PyCallable_Check(arguments.progress.ptr()) == 0)
        throw py::type_error("progress: expected a callable");
    const workflow::FrameJobs found = workflow::find_frame_jobs(input, output, arguments.frames);
    SequenceResult result;
    note_missing(found, input, result.notes);

    SequenceWork work{
        found.jobs,
        workflow::make_image_settings(self.get_conversion(), image_arguments.make_image_options()),
        {arguments.resumes, arguments.only_plans, arguments.memory}};
    workflow::check_output(work.settings, work.jobs.front().output);
    work.settings.fingerprint = workflow::make_conversion_fingerprint(session->get(), self.get_request(),
                                                                      self.get_conversion(), work.settings);
    start_image_readers();
    SequenceRun run(work);
    static_cast<workflow::SequenceReport&>(result) = run.wait([&](const Frame& frame) {
        if (!arguments.progress.is_none())
            arguments.progress(frame);
    });
    add_new(result.notes, run.get_notes());
    return result;
}

void add_frame(py::module_& module) {
    py::class_<Frame>(module, "Frame", "The result of one image of a sequence.")
        .def_property_readonly(
            "number", [](const Frame& self) { return self.job.frame; },
            "int | None: of the frame; None for a single image.")
        .def_property_readonly(
            "input", [](const Frame& self) { return make_text(self.job.input); }, "str: path.")
        .def_property_readonly(
            "output", [](const Frame& self) { return make_text(self.job.output); }, "str: path.")
        .def_property_readonly(
            "status", [](const Frame& self) { return workflow::get_name(self.status); },
            "str: 'converted', 'up-to-date', 'planned' or 'failed'.")
        .def_property_readonly("reason", text_getter<Frame>(&Frame::reason),
                               "str: why it is not up to date; empty if that was not checked.")
        .def_readonly("seconds", &Frame::seconds, "float: elapsed time.")
        .def_readonly("image", &Frame::image, "ImageReport: of a converted image.")
        .def_readonly("error", &Frame::error, "Diagnostic | None: of an image that failed.")
        .def("__repr__", [](const Frame& self) {
            return make_text(
                fmt::format("<Frame '{}', {}>", self.job.output, workflow::get_name(self.status)));
        });
}

void add_report(py::module_& module) {
    py::class_<SequenceResult>(module, "SequenceReport", "The result of converting a sequence.")
        .def_readonly("converted", &SequenceResult::converted, "int: images that were converted.")
        .def_readonly("up_to_date", &SequenceResult::up_to_date, "int: images converted earlier.")
        .def_readonly("planned", &SequenceResult::planned, "int: images that would be converted.")
        .def_readonly("failed", &SequenceResult::failed, "int: images that failed.")
        .def_property_readonly(
            "failures", [](const SequenceResult& self) { return make_diagnostics(self.failures); },
            "tuple[Diagnostic, ...]: one for each image that failed, in the order of the frames.")
        .def_readonly("pixels", &SequenceResult::pixels, "int: pixels of the converted images.")
        .def_readonly("seconds", &SequenceResult::seconds, "float: elapsed time.")
        .def_property_readonly(
            "notes", [](const SequenceResult& self) { return make_diagnostics(self.notes); },
            "tuple[Diagnostic, ...]: about missing frames and the images; equal ones once.");
}

} // namespace

void add_sequence_conversion(py::module_& module, ConverterType& converter) {
    add_frame(module);
    add_report(module);
    static const std::string documentation =
        std::string(
            "Convert an image sequence, several images at a time.\n\n"
            "input, output: paths with the same kind of pattern: 'shot.%04d.exr', 'shot.####.exr'.\n"
            "frames: '1-100x2,120'; without it those that exist.\n"
            "progress: called with a Frame after each image, in the calling thread and the order in which\n"
            "    images are finished. An exception in it, and KeyboardInterrupt, start no further image,\n"
            "    and are raised when those in work are finished.\n"
            "resume: leave images whose output is up to date.\n"
            "dry_run: convert nothing; report what would be converted, and refused.\n"
            "memory: bytes to use at most; 0 for no limit.\n") +
        OUTPUT_ARGUMENTS + LAYER_ARGUMENTS +
        "\nReturn a SequenceReport; an image that fails does not stop the others. Raises Error for invalid\n"
        "patterns and frames, when no frame exists, and when the session is closed.";
    converter.def(
        "convert_sequence",
        [](const Converter& self, const py::object& input, const py::object& output,
           const std::string& frames, const py::object& progress, bool resume, bool dry_run,
           std::uint64_t memory, const std::string& depth, bool dither, const std::string& compression,
           const py::object& quality, const py::object& divide_by_alpha, const py::object& layers,
           const py::object& parts, const py::object& skip, int threads) {
            return convert(
                self, input, output, {frames, progress, resume, dry_run, memory},
                {{depth, dither, compression, quality}, divide_by_alpha, layers, parts, skip, threads});
        },
        py::arg("input"), py::arg("output"), py::arg("frames") = "", py::kw_only(),
        py::arg("progress") = py::none(), py::arg("resume") = false, py::arg("dry_run") = false,
        py::arg("memory") = 0, py::arg("depth") = "", py::arg("dither") = false, py::arg("compression") = "",
        py::arg("quality") = py::none(), py::arg("divide_by_alpha") = py::none(),
        py::arg("layers") = py::none(), py::arg("parts") = py::none(), py::arg("skip") = py::none(),
        py::arg("threads") = 0, documentation.c_str());
}

} // namespace python
