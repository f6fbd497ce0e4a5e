#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace tool {

/// A JSON value for output; objects keep the order of their members. Wraps the JSON library, whose header
/// takes a second to compile.
class Json {
public:
    using Member = std::pair<const char*, Json>;

    Json(); ///< null
    Json(const char* text);
    Json(std::string_view text);
    Json(const std::string& text) : Json(std::string_view(text)) {}
    Json(double number);
    template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    Json(Number number) : Json(make(number)) {}
    Json(const std::vector<std::string>& texts); ///< An array.
    Json(const std::vector<Json>& items);        ///< An array.
    Json(std::initializer_list<Member> members); ///< An object.
    Json(const Json& other);
    Json(Json&& other) noexcept;
    Json& operator=(Json other) noexcept;
    ~Json();

    static Json array() { return Json(std::vector<Json>()); }
    static Json object() { return Json(std::initializer_list<Member>()); }

    /// Adds a member to an object, or replaces it.
    Json& set(const std::string& name, const Json& value);
    /// Adds the members of another object.
    Json& update(const Json& other);
    /// Adds an item to an array.
    Json& push(const Json& item);
    /// Members of an object, items of an array.
    std::size_t size() const;

    /// The text, indented by two spaces. Bytes that are not UTF-8 are replaced: names from files may hold
    /// any.
    std::string format() const;
    /// The text in one line.
    std::string format_line() const;

private:
    struct Value;

    static Json from_bool(bool value);
    static Json from_signed(long long value);
    static Json from_unsigned(unsigned long long value);
    template <class Number>
    static Json make(Number number) {
        if constexpr (std::is_same_v<Number, bool>)
            return from_bool(number);
        else if constexpr (std::is_floating_point_v<Number>)
            return Json(static_cast<double>(number));
        else if constexpr (std::is_signed_v<Number>)
            return from_signed(number);
        else
            return from_unsigned(number);
    }

    std::unique_ptr<Value> value;
};

} // namespace tool
