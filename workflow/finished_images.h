#pragma once

#include <string>

#include "workflow/image_job.h"

namespace workflow {

/// Why the job has to be done, for messages: "no output", "the input is newer", "incomplete". Empty when its
/// output is complete, not older than the input, and records (image/conversion_record.h) that it was made of
/// it by the conversion of `settings.fingerprint`. Reads headers only. Thread-safe with different
/// readers.
std::string find_reason_to_convert(const ImageJob& job, const ImageSettings& settings,
                                   image::ReaderProcess& reader);

/// Why the output is never up to date, for a note: its format, by OpenImageIO's name, records nothing.
/// Empty for formats that do.
std::string explain_missing_record(const std::string& format);

} // namespace workflow
