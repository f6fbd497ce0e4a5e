#include "tool/gl_threads.h"

#include <stdlib.h>

#include <thread>

#include "image/startable_threads.h"

namespace tool {

void limit_gl_threads() {
    // The driver starts one for each core; other parts of Mesa start a few.
    constexpr int OTHERS = 8;
    const int wanted = static_cast<int>(std::thread::hardware_concurrency()) + OTHERS;
    if (image::count_startable_threads(wanted) < wanted)
        setenv("LP_NUM_THREADS", "0", 0);
}

} // namespace tool
