#include "image/startable_threads.h"

#include <pthread.h>
#include <stdlib.h>
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
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

/// Threads and processes that others may start between counting and starting: those that convert and read
/// images.
constexpr int RESERVE = 8;
/// How long the system may take to forget threads that have ended.
constexpr std::chrono::milliseconds PATIENCE{200};

std::atomic<int> thread_limit{0};
std::atomic<bool> has_pool{false};

/// Lets one process of the program and its image readers count and start threads at a time.
class StartLock {
public:
    StartLock() : is_held(lock(get_mutex())) {}
    ~StartLock() {
        if (is_held)
            pthread_mutex_unlock(get_mutex());
    }
    StartLock(const StartLock&) = delete;
    StartLock& operator=(const StartLock&) = delete;

    /// Null where there is no memory. Processes forked after the first call share it.
    static pthread_mutex_t* get_mutex() {
        static pthread_mutex_t* const shared = make_mutex();
        return shared;
    }

private:
    static pthread_mutex_t* make_mutex() {
        void* const memory =
            mmap(nullptr, sizeof(pthread_mutex_t), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED)
            return nullptr;
        auto* const mutex = static_cast<pthread_mutex_t*>(memory);
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
        pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
        pthread_mutex_init(mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
        return mutex;
    }

    /// A process that was killed leaves the mutex to the next one.
    static bool lock(pthread_mutex_t* mutex) {
        const int outcome = mutex ? pthread_mutex_lock(mutex) : EINVAL;
        if (outcome == EOWNERDEAD)
            pthread_mutex_consistent(mutex);
        return outcome == 0 || outcome == EOWNERDEAD;
    }

    const bool is_held;
};

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
    } catch (const std::system_error&) { // another program was faster, and there is no pool
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

int limit_threads(int wanted) {
    const StartLock lock;
    const int needed = get_started_threads(wanted);
    const int room = count_startable_threads(needed + RESERVE) - RESERVE;
    const int threads = room >= needed ? wanted : std::max(1, room / 2);
    thread_limit = room >= get_started_threads(threads) ? start_threads(threads) : start_none();
    return thread_limit;
}

int get_thread_limit() {
    return thread_limit;
}

void share_thread_counting() {
    StartLock::get_mutex();
}

} // namespace image
