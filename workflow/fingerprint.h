#pragma once

#include <string>

#include "workflow/image_settings.h"

namespace workflow {

class Conversion;
class Session;
struct ConversionRequest;

/// A digest of everything that decides what `settings` make of an image: the conversion with its numbers, the
/// contents of the config and of every LUT and CDL file that it reads, and the settings of the output. The
/// same in every run and for every number of threads. 32 hexadecimal digits.
std::string make_conversion_fingerprint(const Session& session, const ConversionRequest& request,
                                        const Conversion& conversion, const ImageSettings& settings);

/// A digest of that fingerprint and of the image to read: its path, its size and the time of its last change.
/// An image that is converted in its place is left out. Empty without a fingerprint.
std::string make_image_fingerprint(const ImageJob& job, const std::string& conversion_fingerprint);

/// True when the output of the job takes the place of its input.
bool is_in_place(const ImageJob& job);

} // namespace workflow
