#pragma once

#include <csignal>

#include <sys/resource.h>

/// Lets no file of the process grow beyond `bytes` until the end of the scope, as on a disk with that much
/// room.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : old_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_limit);
        const rlimit limit = {bytes, old_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_limit);
        std::signal(SIGXFSZ, old_handler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*old_handler)(int);
    rlimit old_limit = {};
};
