#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <string>

#include <gtest/gtest.h>

/// Counts how often a file is opened. Closing is watched too, because the kernel merges equal events in a
/// row.
class OpenCounter {
public:
    explicit OpenCounter(const std::string& path) {
        EXPECT_GE(inotify_add_watch(events, path.c_str(), IN_OPEN | IN_CLOSE), 0) << path;
    }
    ~OpenCounter() { close(events); }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;

    /// Since the last call.
    int take() {
        int count = 0;
        alignas(inotify_event) std::array<char, 4096> buffer;
        for (ssize_t length; (length = read(events, buffer.data(), buffer.size())) > 0;)
            for (ssize_t at = 0; at < length;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
                count += (event->mask & IN_OPEN) != 0 ? 1 : 0;
                at += static_cast<ssize_t>(sizeof(inotify_event)) + event->len;
            }
        return count;
    }

private:
    const int events = inotify_init1(IN_NONBLOCK);
};
