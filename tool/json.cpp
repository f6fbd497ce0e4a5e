#include "tool/json.h"

#include <nlohmann/json.hpp>

namespace tool {

using Library = nlohmann::ordered_json;

struct Json::Value {
    Library json;
};

namespace {

constexpr int INDENT = 2;

std::string dump(const Library& json, int indent) {
    return json.dump(indent, ' ', false, Library::error_handler_t::replace);
}

} // namespace

Json::Json() : value(std::make_unique<Value>()) {}
Json::Json(const char* text) : Json(std::string_view(text)) {}
Json::Json(std::string_view text) : value(std::make_unique<Value>(Value{Library(text)})) {}
Json::Json(double number) : value(std::make_unique<Value>(Value{Library(number)})) {}

Json::Json(const std::vector<std::string>& texts) : value(std::make_unique<Value>(Value{Library::array()})) {
    for (const std::string& text : texts)
        push(text);
}

Json::Json(const std::vector<Json>& items) : value(std::make_unique<Value>(Value{Library::array()})) {
    for (const Json& item : items)
        push(item);
}

Json::Json(std::initializer_list<Member> members) : value(std::make_unique<Value>(Value{Library::object()})) {
    for (const Member& member : members)
        set(member.first, member.second);
}

Json::Json(const Json& other) : value(std::make_unique<Value>(*other.value)) {}
Json::Json(Json&& other) noexcept = default;
Json::~Json() = default;

Json& Json::operator=(Json other) noexcept {
    value.swap(other.value);
    return *this;
}

Json& Json::set(const std::string& name, const Json& member) {
    value->json[name] = member.value->json;
    return *this;
}

Json& Json::update(const Json& other) {
    value->json.update(other.value->json);
    return *this;
}

Json& Json::push(const Json& item) {
    value->json.push_back(item.value->json);
    return *this;
}

std::size_t Json::size() const {
    return value->json.size();
}

std::string Json::format() const {
    return dump(value->json, INDENT);
}

std::string Json::format_line() const {
    return dump(value->json, -1);
}

Json Json::from_bool(bool flag) {
    Json result;
    result.value->json = flag;
    return result;
}

Json Json::from_signed(long long number) {
    Json result;
    result.value->json = number;
    return result;
}

Json Json::from_unsigned(unsigned long long number) {
    Json result;
    result.value->json = number;
    return result;
}

} // namespace tool
