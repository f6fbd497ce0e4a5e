#pragma once

#include <string>
#include <utility>
#include <variant>

namespace files {

/// What was attempted when a file access failed.
enum class Operation { READ, WRITE, LOCK };

/// Why a file access failed: everything that an error message or a program needs, without parsing text.
struct Failure {
    std::string path; ///< As the caller named it.
    Operation operation = Operation::READ;
    int error_number = 0; ///< The system's (errno); 0 when a rule of this library refused the file.
    std::string reason;   ///< In words, without the path: "Permission denied".

    /// "cannot write 'PATH': REASON".
    std::string describe() const;
};

/// A failure that the system reported as `error_number`, in the system's words.
Failure make_failure(const std::string& path, Operation operation, int error_number);
/// A failure that a rule of this library decided.
Failure make_refusal(const std::string& path, Operation operation, const std::string& reason);

/// Shown for devices, pipes and sockets where only a regular file will do.
inline constexpr char NOT_A_REGULAR_FILE[] = "it exists and is not a regular file";

/// A value, or why there is none.
template <class Value>
class Result {
public:
    Result(Value value) : content(std::move(value)) {}
    Result(Failure failure) : content(std::move(failure)) {}

    explicit operator bool() const { return content.index() == 0; }
    Value& operator*() { return std::get<0>(content); }
    Value* operator->() { return &std::get<0>(content); }
    /// Only when there is no value.
    const Failure& get_failure() const { return std::get<1>(content); }

private:
    std::variant<Value, Failure> content;
};

} // namespace files
