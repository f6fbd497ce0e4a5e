#include "files/failure.h"

#include <cstring>

namespace files {

namespace {

const char* get_verb(Operation operation) {
    switch (operation) {
    case Operation::WRITE:
        return "write";
    case Operation::LOCK:
        return "lock";
    default:
        return "read";
    }
}

} // namespace

std::string Failure::describe() const {
    return std::string("cannot ") + get_verb(operation) + " '" + path + "': " + reason;
}

Failure make_failure(const std::string& path, Operation operation, int error_number) {
    return {path, operation, error_number, std::strerror(error_number)};
}

Failure make_refusal(const std::string& path, Operation operation, const std::string& reason) {
    return {path, operation, 0, reason};
}

} // namespace files
