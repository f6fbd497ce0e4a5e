#pragma once

namespace image {

/// How many of `wanted` threads besides this one can be started now. Where the system has no room for more,
/// starting them would end the process or leave a thread pool half made.
int count_startable_threads(int wanted);

/// Sets the threads of OpenImageIO and OpenEXR to `wanted` for one image, or to fewer where not so many can
/// be started; answers their count, which is at least 1.
int limit_threads(int wanted);

} // namespace image
