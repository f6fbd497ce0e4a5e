#include "image/startable_threads.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

int count_startable_threads(int wanted) {
    std::mutex mutex;
    std::condition_variable end;
    bool ended = false;
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(std::max(wanted, 0)));
    try {
        for (int i = 0; i < wanted; ++i)
            threads.emplace_back([&] {
                std::unique_lock<std::mutex> lock(mutex);
                end.wait(lock, [&] { return ended; });
            });
    } catch (const std::system_error&) { // no more threads can be started
    }
    {
        std::lock_guard<std::mutex> lock(mutex);
        ended = true;
    }
    end.notify_all();
    for (std::thread& thread : threads)
        thread.join();
    return static_cast<int>(threads.size());
}

int limit_threads(int wanted) {
    // OpenImageIO starts one thread fewer than requested, because the caller works too; OpenEXR starts all. For
    // one thread OpenEXR starts none: the caller would only wait for it.
    const int startable = count_startable_threads(2 * wanted - 1);
    const int threads = startable == 2 * wanted - 1 ? wanted : std::max(1, startable / 2);
    OIIO::attribute("threads", threads);
    OIIO::attribute("exr_threads", threads == 1 ? -1 : threads);
    return threads;
}

} // namespace image
