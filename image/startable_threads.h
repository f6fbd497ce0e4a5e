#pragma once

namespace image {

/// How many of `wanted` additional threads can be started now. Beyond the limits of the system thread pools
/// would end the process or stay incomplete.
int count_startable_threads(int wanted);

/// Sets the number of threads of OpenImageIO and OpenEXR to `wanted`, or to fewer if the system cannot start
/// that many in each of `processes`, this one and others that will read images for it. Returns the number,
/// which is at least 1. Counting occupies all available threads for a moment, so no other process of
/// the program should be starting threads.
int limit_threads(int wanted, int processes = 1);

/// Sets it without counting, in a process that limit_threads counted for.
int use_threads(int threads);

/// The number set last in this process; 0 before. If it is 1, there may be no room for OpenImageIO to start
/// even one.
int get_thread_limit();

} // namespace image
