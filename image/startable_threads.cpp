#include "image/startable_threads.h"

#include <stdlib.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <OpenImageIO/imageio.h>

namespace image {

namespace {

/// Threads and processes that are started besides: those that convert and read images.
constexpr int RESERVE = 8;
/// How long the system may take to forget threads that have ended.
constexpr std::chrono::milliseconds PATIENCE{200};

std::atomic<int> thread_limit{0};
std::atomic<bool> has_pool{false};

/// Threads of this process, as the system counts them.
std::ptrdiff_t count_threads() {
    std::error_code error;
    const std::filesystem::directory_iterator tasks("/proc/self/task", error);
    return error ? 0 : std::distance(tasks, std::filesystem::directory_iterator());
}

/// A thread that was joined still counts for a moment.
void wait_for_threads(std::ptrdiff_t count) {
    const auto end = std::chrono::steady_clock::now() + PATIENCE;
    while (count_threads() > count && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
}

/// OpenImageIO starts one thread less than it is given, as the caller works too, but at least one; OpenEXR
/// starts all.
int get_started_threads(int threads) {
    return threads + std::max(1, threads - 1);
}

/// OpenImageIO reads this variable when its thread pool is made, which then has a thread less for each core.
/// A pool that cannot start all its threads would end the process.
void limit_new_pool(int threads) {
    setenv("OPENIMAGEIO_THREADS", std::to_string(threads).c_str(), 1);
}

/// No more threads; a pool that OpenImageIO makes nevertheless tries to start one, and throws.
int start_none() {
    limit_new_pool(1);
    if (has_pool)
        OIIO::attribute("threads", 1);
    OIIO::attribute("exr_threads", -1);
    return 1;
}

int start_threads(int threads) {
    limit_new_pool(threads);
    try {
        OIIO::attribute("threads", threads);
        has_pool = true;
    } catch (const std::system_error&) { // another program took the room; OpenImageIO has no pool
        return start_none();
    }
    // For one thread OpenEXR starts none: the caller would only wait for it.
    OIIO::attribute("exr_threads", threads == 1 ? -1 : threads);
    return threads;
}

} // namespace

int count_startable_threads(int wanted) {
    const std::ptrdiff_t before = count_threads();
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
    } catch (const std::system_error&) { // those that started are all there is room for
    }
    {
        std::lock_guard<std::mutex> lock(mutex);
        ended = true;
    }
    end.notify_all();
    for (std::thread& thread : threads)
        thread.join();
    wait_for_threads(before);
    return static_cast<int>(threads.size());
}

int limit_threads(int wanted, int processes) {
    if (wanted <= 1)
        return thread_limit = start_none();
    const int room = count_startable_threads(processes * get_started_threads(wanted) + RESERVE) - RESERVE;
    int threads = wanted;
    while (threads > 1 && processes * get_started_threads(threads) > room)
        --threads;
    return use_threads(threads);
}

int use_threads(int threads) {
    return thread_limit = threads > 1 ? start_threads(threads) : start_none();
}

int get_thread_limit() {
    return thread_limit;
}

} // namespace image
