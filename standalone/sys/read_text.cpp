#include "standalone/sys/read_text.h"

#include <cstring>

#include "standalone/sys/input_file.h"

FileText read_text(const std::string& path, size_t max_size) {
    InputFile file(path);
    std::string text;
    if (!file.is_open() || !file.read(max_size + 1, text))
        return {std::nullopt, std::strerror(file.get_error_number()), file.get_error_number()};
    if (text.size() > max_size)
        return {std::nullopt, "longer than " + std::to_string(max_size) + " bytes", 0};
    return {std::move(text), {}, 0};
}
