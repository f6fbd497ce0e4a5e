#pragma once

#include <string>

/// The content of a file that ends the process that reads it with OpenImageIO by a signal, with any
/// name. For this to hold, crashing_format.cpp is linked to the test.
std::string make_image_that_crashes_readers();
