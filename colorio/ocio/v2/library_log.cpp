#include "colorio/ocio/library_log.h"

#include <atomic>
#include <string_view>

#include "colorio/ocio/types.h"

namespace ocio {

namespace {

constexpr std::string_view WARNING_MARK = "[OpenColorIO Warning]";
constexpr std::string_view MARK_START = "[OpenColorIO ";
constexpr std::string_view MARK_END = "]: ";

std::atomic<LibraryLogFunction> log_function{nullptr};

/// Takes "[OpenColorIO Warning]: text\n".
void take_message(const char* message) {
    std::string_view text = message;
    const bool is_warning = text.substr(0, WARNING_MARK.size()) == WARNING_MARK;
    const std::size_t end_of_mark = text.find(MARK_END);
    if (text.substr(0, MARK_START.size()) == MARK_START && end_of_mark != std::string_view::npos)
        text.remove_prefix(end_of_mark + MARK_END.size());
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    if (const LibraryLogFunction function = log_function)
        function(is_warning ? LibraryLogLevel::WARNING : LibraryLogLevel::INFO, std::string(text));
}

} // namespace

void set_library_log_function(LibraryLogFunction function) {
    log_function = function;
    if (function)
        library::SetLoggingFunction(take_message);
    else
        library::ResetToDefaultLoggingFunction();
}

} // namespace ocio
