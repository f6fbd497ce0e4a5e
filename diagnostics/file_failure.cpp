#include "diagnostics/file_failure.h"

namespace diagnostics {

Diagnostic make_read_error(Code code, const std::string& path, const std::string& reason) {
    return make_file_error(code, "cannot read '" + path + "': " + reason, path);
}

void fail_to_read(Code code, const std::string& path, const std::string& reason) {
    throw Failure(make_read_error(code, path, reason));
}

void fail_to_write(Code code, const std::string& path, const std::string& reason, std::string hint) {
    throw Failure(
        with_hint(make_file_error(code, "cannot write '" + path + "': " + reason, path), std::move(hint)));
}

} // namespace diagnostics
