#include "workflow/finished_images.h"

#include <tuple>

#include <fmt/format.h>
#include <sys/stat.h>

#include "diagnostics/failure.h"
#include "image/conversion_record.h"
#include "image/image_reader.h"
#include "image/truncation.h"
#include "workflow/fingerprint.h"

namespace workflow {

namespace {

bool is_older(const struct stat& a, const struct stat& b) {
    return std::tie(a.st_mtim.tv_sec, a.st_mtim.tv_nsec) < std::tie(b.st_mtim.tv_sec, b.st_mtim.tv_nsec);
}

} // namespace

std::string find_reason_to_convert(const ImageJob& job, const ImageSettings& settings,
                                   image::ReaderProcess& reader) {
    struct stat input = {}, output = {};
    if (stat(job.output.c_str(), &output) != 0)
        return "no output";
    if (stat(job.input.c_str(), &input) != 0)
        return "no input";
    if (is_older(output, input))
        return "the input is newer";
    try {
        const image::ImageReader file(job.output, reader);
        if (const std::string obstacle = explain_missing_record(file.get_format()); !obstacle.empty())
            return obstacle;
        const std::string recorded =
            image::get_recorded_conversion(file.get_parts().front().spec, file.get_format());
        if (recorded.empty() || recorded != make_image_fingerprint(job, settings.fingerprint))
            return "made by another conversion or from another input";
        return image::is_truncated(job.output, file.get_format()) ? "incomplete" : "";
    } catch (const diagnostics::Failure&) {
        return "unreadable";
    }
}

std::string explain_missing_record(const std::string& format) {
    return image::can_record_conversion(format)
               ? ""
               : fmt::format("{} files do not record how they were made: they are always converted again",
                             format);
}

} // namespace workflow
