#pragma once

namespace image {

/// How many of `wanted` additional threads can be started now. Beyond the limits of the system thread pools
/// would end the process or stay incomplete.
int count_startable_threads(int wanted);

/// Sets the number of threads of OpenImageIO and OpenEXR to `wanted`, or to fewer if the system cannot start
/// that many. Returns the number, which is at least 1.
int limit_threads(int wanted);

/// What limit_threads returned last in this process; 0 before. If it is 1, there may be no room for
/// OpenImageIO to start even one.
int get_thread_limit();

/// To be called before processes are forked that limit their threads, too: one at a time counts and starts
/// them, as the threads that another one counts would be missing.
void share_thread_counting();

} // namespace image
