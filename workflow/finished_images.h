#pragma once

#include <string>

#include "workflow/image_job.h"

namespace workflow {

/// Why the job has to be done, for messages: "no output", "the image is newer", "made in another way". Empty
/// when its output is complete, newer than the image, and records (image/conversion_record.h) that it was
/// made of it by the conversion of `settings.fingerprint`. Reads headers only. Thread-safe with different
/// readers.
std::string find_reason_to_convert(const ImageJob& job, const ImageSettings& settings,
                                   image::ReaderProcess& reader);

/// Why the output can never be left out, for a note: its format, by OpenImageIO's name, records nothing.
/// Empty for formats that do.
std::string explain_missing_record(const std::string& format);

} // namespace workflow
