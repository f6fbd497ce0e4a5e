#include "files/diagnosis.h"

#include <cerrno>

#include "diagnostics/file_failure.h"

namespace files {

namespace {

using diagnostics::Code;

bool is_missing(const Failure& failure) {
    return failure.error_number == ENOENT || failure.error_number == ENOTDIR;
}

Code get_code(const Failure& failure) {
    if (failure.operation != Operation::READ)
        return Code::FILE_UNWRITABLE;
    if (is_missing(failure))
        return Code::FILE_MISSING;
    // The only rule by which reading is refused is that the file must be a regular one.
    if (failure.error_number == EISDIR || failure.error_number == 0)
        return Code::FILE_NOT_REGULAR;
    return failure.error_number == EFBIG ? Code::FILE_TOO_LARGE : Code::FILE_UNREADABLE;
}

} // namespace

std::string get_reason(const Failure& failure) {
    if (failure.operation == Operation::READ && is_missing(failure))
        return diagnostics::NO_SUCH_FILE;
    return failure.error_number == EISDIR ? diagnostics::IS_FOLDER : failure.reason;
}

diagnostics::Diagnostic to_diagnostic(const Failure& failure) {
    Failure worded = failure;
    worded.reason = get_reason(failure);
    return diagnostics::make_file_error(get_code(failure), worded.describe(), failure.path);
}

} // namespace files
