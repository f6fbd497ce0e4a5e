#include "workflow/text_file.h"

#include "files/replacement.h"
#include "tool/exit_code.h"

namespace tool {

void write_text_file(const std::string& path, const std::string& text) {
    files::Replacement file(path);
    if (!file.write(text) || !file.commit())
        throw CommandError(file.get_failure()->describe());
}

} // namespace tool
