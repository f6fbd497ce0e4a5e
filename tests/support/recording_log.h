#pragma once

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "host/core/core_log.h"

/// Takes the place of the main log handler until the end of its scope and keeps every message.
class RecordingLog : public CoreLogHandler {
public:
    struct Line {
        unsigned int level;
        std::string text;

        friend bool operator==(const Line& a, const Line& b) {
            return a.level == b.level && a.text == b.text;
        }
        friend std::ostream& operator<<(std::ostream& out, const Line& line) {
            return out << "{" << line.level << ", \"" << line.text << "\"}";
        }
    };

    /// Listens up to `level`: by default to everything.
    explicit RecordingLog(unsigned int level = LOG_INFO) {
        set_level(level);
        replaced = set_main_log_handler(this);
    }
    ~RecordingLog() override { set_main_log_handler(replaced); }
    RecordingLog(const RecordingLog&) = delete;
    RecordingLog& operator=(const RecordingLog&) = delete;

    void log(unsigned int level, const CoreLogStream& stream) override {
        lines.push_back({level, std::string(stream.get_text().view())});
    }

    /// The messages in the order of their arrival, line ends included.
    const std::vector<Line>& get_lines() const { return lines; }
    size_t count(unsigned int level) const {
        return static_cast<size_t>(
            std::count_if(lines.begin(), lines.end(), [&](const Line& line) { return line.level == level; }));
    }
    /// Whether a message holds `part`.
    bool contains(const std::string& part) const {
        return std::any_of(lines.begin(), lines.end(),
                           [&](const Line& line) { return line.text.find(part) != std::string::npos; });
    }
    void clear() { lines.clear(); }

private:
    std::vector<Line> lines;
    CoreLogHandler* replaced;
};
