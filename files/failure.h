#pragma once

#include <string>
#include <utility>
#include <variant>

namespace files {

/// The operation that failed.
enum class Operation { READ, WRITE, LOCK };

/// Why a file access failed, for error messages and for programs.
struct Failure {
    std::string path;                      ///< As the caller gave it.
    Operation operation = Operation::READ; ///< What was tried.
    int error_number = 0; ///< The system's (errno); 0 when a rule of this library refused the file.
    std::string reason;   ///< In words, without the path: "Permission denied".

    /// The message: "cannot write 'PATH': REASON".
    std::string describe() const;
};

/// A failure with the system's error `error_number` and its text.
Failure make_failure(const std::string& path, Operation operation, int error_number);
/// A failure because of a rule of this library.
Failure make_refusal(const std::string& path, Operation operation, const std::string& reason);

/// A value, or the failure.
template <class Value>
class Result {
public:
    Result(Value value) : content(std::move(value)) {}       ///< A value.
    Result(Failure failure) : content(std::move(failure)) {} ///< A failure.

    /// Whether there is a value.
    explicit operator bool() const { return content.index() == 0; }
    /// The value; there must be one.
    Value& operator*() { return std::get<0>(content); }
    Value* operator->() { return &std::get<0>(content); }
    /// The failure; there must be no value.
    const Failure& get_failure() const { return std::get<1>(content); }

private:
    std::variant<Value, Failure> content;
};

} // namespace files
