#include "colorio/facade/library_messages.h"

#include <mutex>
#include <string>
#include <unordered_set>

#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/library_log.h"

namespace {

/// The messages of one load. OpenColorIO reports them from any thread.
class ReportedTexts {
public:
    bool add(const std::string& text) {
        const std::lock_guard<std::mutex> lock(mutex);
        return texts.insert(text).second;
    }
    void clear() {
        const std::lock_guard<std::mutex> lock(mutex);
        texts.clear();
    }

private:
    std::mutex mutex;
    std::unordered_set<std::string> texts;
};

ReportedTexts& get_reported_texts() {
    static ReportedTexts reported;
    return reported;
}

void take_message(ocio::LibraryLogLevel level, const std::string& text) {
    at_boundary([&] {
        if (!get_reported_texts().add(text))
            return;
        const CoreLogLevel host_level = level == ocio::LibraryLogLevel::WARNING ? LOG_WARNING : LOG_INFO;
        log_message(host_level, "OpenColorIO: ", text.c_str(), "\n");
        report(host_level, diagnostics::Code::LIBRARY_FAILURE, CoreString(), diagnostics::flatten(text));
    });
}

} // namespace

void follow_library_messages() {
    begin_library_load();
    ocio::set_library_log_function(take_message);
}

void leave_library_messages() {
    ocio::set_library_log_function(nullptr);
}

void begin_library_load() {
    get_reported_texts().clear();
}
