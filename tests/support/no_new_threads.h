#pragma once

#include <pthread.h>

#include <cstddef>

/// Lets no thread of the process start until the end of the scope, as where the system has no room for more:
/// a thread would have a stack larger than the address space.
class NoNewThreads {
public:
    NoNewThreads() {
        pthread_getattr_default_np(&old_attributes);
        pthread_attr_t attributes;
        pthread_getattr_default_np(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t(1) << 46);
        pthread_setattr_default_np(&attributes);
        pthread_attr_destroy(&attributes);
    }
    ~NoNewThreads() {
        pthread_setattr_default_np(&old_attributes);
        pthread_attr_destroy(&old_attributes);
    }
    NoNewThreads(const NoNewThreads&) = delete;
    NoNewThreads& operator=(const NoNewThreads&) = delete;

private:
    pthread_attr_t old_attributes;
};
