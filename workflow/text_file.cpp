#include "workflow/text_file.h"

#include "diagnostics/failure.h"
#include "files/replacement.h"

namespace workflow {

void write_text_file(const std::string& path, const std::string& text) {
    files::Replacement file(path);
    if (!file.write(text) || !file.commit())
        diagnostics::fail_file(diagnostics::Code::FILE_UNWRITABLE, file.get_failure()->describe(), path);
}

} // namespace workflow
