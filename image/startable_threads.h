#pragma once

namespace image {

/// How many of `wanted` additional threads can be started now. Beyond the limits of the system thread pools
/// would end the process or stay incomplete.
int count_startable_threads(int wanted);

/// Sets the number of threads of OpenImageIO and OpenEXR to `wanted`, or to fewer if the system cannot start
/// that many. Returns the number, which is at least 1.
int limit_threads(int wanted);

} // namespace image
