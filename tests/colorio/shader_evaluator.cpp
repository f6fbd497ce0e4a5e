#include "tests/colorio/shader_evaluator.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <functional>
#include <set>
#include <stdexcept>

#include "tests/colorio/shader_values.h"

using shader_values::by_component;
using shader_values::components;
using shader_values::construct;
using shader_values::multiply;

namespace {

const std::set<std::string> TYPES = {"float", "vec3", "vec4", "mat4"};

/// Length of the word that starts at `start`: a name, a number, an operator or one other character.
size_t word_length(const std::string& text, size_t start) {
    auto at = [&](size_t index) { return index < text.size() ? text[index] : '\0'; };
    auto is_name = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    auto is_digit = [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; };
    size_t end = start;
    if (is_digit(at(start)) || (at(start) == '.' && is_digit(at(start + 1)))) {
        while (is_name(at(end)) || at(end) == '.' ||
               ((at(end) == '-' || at(end) == '+') && (at(end - 1) == 'e' || at(end - 1) == 'E')))
            ++end;
        return end - start;
    }
    while (is_name(at(end)))
        ++end;
    if (end > start)
        return end - start;
    return std::string("+-*/").find(at(start)) != std::string::npos && at(start + 1) == '=' ? 2 : 1;
}

std::vector<std::string> split_into_words(const std::string& text) {
    std::vector<std::string> words;
    for (size_t position = 0; position < text.size();) {
        if (std::isspace(static_cast<unsigned char>(text[position]))) {
            ++position;
        } else if (text.compare(position, 2, "//") == 0) {
            position = std::min(text.find('\n', position), text.size());
        } else {
            words.push_back(text.substr(position, word_length(text, position)));
            position += words.back().size();
        }
    }
    words.push_back("");
    return words;
}

bool is_number(const std::string& word) {
    return !word.empty() && (std::isdigit(static_cast<unsigned char>(word[0])) || word[0] == '.') &&
           word != ".";
}

} // namespace

ShaderEvaluator::ShaderEvaluator(const std::string& text, const std::string& function, std::vector<float> lut,
                                 unsigned int lut_edge)
    : words(split_into_words(text)), table(std::move(lut)), edge(lut_edge) {
    if (table.size() != static_cast<size_t>(edge) * edge * edge * 3)
        throw std::runtime_error("the table has another size than its edge says");
    parse_signature(function);
}

void ShaderEvaluator::parse_signature(const std::string& function) {
    for (const std::string& word : {std::string("vec4"), function, std::string("(")})
        expect(word);
    accept("in");
    expect("vec4");
    pixel_name = next();
    expect(",");
    accept("const");
    expect("sampler3D");
    table_name = next();
    expect(")");
    body = position;
}

ShaderEvaluator::Pixel ShaderEvaluator::run(const Pixel& pixel) {
    position = body;
    variables = {{pixel_name, Value(pixel.begin(), pixel.end())}};
    result.clear();
    run_block();
    if (!peek().empty())
        fail("nothing may follow the function");
    if (result.size() != 4)
        fail("the function returns no vec4");
    return {result[0], result[1], result[2], result[3]};
}

void ShaderEvaluator::run_block() {
    expect("{");
    std::map<std::string, Value> outer = variables;
    while (!accept("}"))
        run_statement();
    for (auto& [name, value] : outer)
        value = variables[name];
    variables = outer;
}

void ShaderEvaluator::run_statement() {
    if (!result.empty())
        fail("nothing may follow return");
    if (peek() == "{")
        return run_block();
    if (accept("return")) {
        result = expression();
        return expect(";");
    }
    const bool declares = TYPES.count(peek()) != 0;
    if (declares)
        next();
    const std::string name = next();
    if (declares == (variables.count(name) != 0))
        fail(declares ? "declared twice: " + name : "not declared: " + name);
    const std::string swizzle = !declares && accept(".") ? next() : "";
    const std::string operation = next();
    if (operation.back() != '=' || operation.size() > 2)
        fail("no assignment");
    assign(name, swizzle, operation[0], expression());
    expect(";");
}

void ShaderEvaluator::assign(const std::string& name, const std::string& swizzle, char operation,
                             const Value& value) {
    if (swizzle.empty() && operation == '=') {
        variables[name] = value;
        return;
    }
    Value& target = variables[name];
    const std::vector<size_t> positions = components(swizzle.empty() ? "rgba" : swizzle);
    if (value.size() != positions.size() && value.size() != 1)
        fail("as many components as " + name + "." + swizzle);
    for (size_t i = 0; i < positions.size(); ++i) {
        double& component = target.at(positions[i]);
        const double operand = value[value.size() == 1 ? 0 : i];
        component = operation == '+'   ? component + operand
                    : operation == '-' ? component - operand
                    : operation == '*' ? component * operand
                    : operation == '/' ? component / operand
                                       : operand;
    }
}

ShaderEvaluator::Value ShaderEvaluator::expression() {
    Value value = term();
    while (peek() == "+" || peek() == "-") {
        const bool adds = next() == "+";
        const Value other = term();
        value = adds ? by_component(value, other, std::plus<>()) : by_component(value, other, std::minus<>());
    }
    return value;
}

ShaderEvaluator::Value ShaderEvaluator::term() {
    Value value = factor();
    while (peek() == "*" || peek() == "/") {
        const bool multiplies = next() == "*";
        const Value other = factor();
        value = multiplies ? multiply(value, other) : by_component(value, other, std::divides<>());
    }
    return value;
}

ShaderEvaluator::Value ShaderEvaluator::factor() {
    if (accept("-"))
        return multiply({-1.0}, factor());
    Value value = primary();
    while (accept(".")) {
        Value picked;
        for (size_t index : components(next()))
            picked.push_back(value.at(index));
        value = picked;
    }
    return value;
}

ShaderEvaluator::Value ShaderEvaluator::primary() {
    if (accept("(")) {
        const Value value = expression();
        expect(")");
        return value;
    }
    const std::string word = next();
    if (is_number(word))
        return {std::stod(word)};
    if (peek() == "(")
        return call(word);
    if (!variables.count(word))
        fail("not declared: " + word);
    return variables[word];
}

ShaderEvaluator::Value ShaderEvaluator::call(const std::string& function) {
    expect("(");
    if (function == "texture3D" || function == "texture") {
        expect(table_name);
        expect(",");
        const Value coordinates = expression();
        expect(")");
        return sample(coordinates);
    }
    std::vector<Value> arguments = {expression()};
    while (accept(","))
        arguments.push_back(expression());
    expect(")");

    if (function == "vec3" || function == "vec4" || function == "mat4")
        return construct(arguments, function == "vec3" ? 3 : function == "vec4" ? 4 : 16);
    if (arguments.size() == 1 && function == "log2")
        return by_component(arguments[0], std::log2);
    if (arguments.size() == 1 && function == "log")
        return by_component(arguments[0], std::log);
    if (arguments.size() == 1 && function == "exp2")
        return by_component(arguments[0], std::exp2);
    if (arguments.size() == 2 && function == "max")
        return by_component(arguments[0], arguments[1], [](double a, double b) { return std::max(a, b); });
    if (arguments.size() == 2 && function == "min")
        return by_component(arguments[0], arguments[1], [](double a, double b) { return std::min(a, b); });
    if (arguments.size() == 2 && function == "pow")
        return by_component(arguments[0], arguments[1], [](double a, double b) { return std::pow(a, b); });
    fail("unknown function: " + function);
}

ShaderEvaluator::Value ShaderEvaluator::sample(const Value& coordinates) const {
    if (coordinates.size() != 3)
        fail("three coordinates");
    size_t low[3];
    double fraction[3];
    for (int axis = 0; axis < 3; ++axis) {
        const double texel = std::clamp(coordinates[axis] * edge - 0.5, 0.0, edge - 1.0);
        low[axis] = std::min(static_cast<size_t>(texel), static_cast<size_t>(edge - 2));
        fraction[axis] = texel - static_cast<double>(low[axis]);
    }
    Value color = {0, 0, 0, 1};
    for (size_t corner = 0; corner < 8; ++corner) {
        double weight = 1;
        size_t index = 0, stride = 1;
        for (int axis = 0; axis < 3; ++axis, stride *= edge) {
            const bool high = (corner >> axis) & 1;
            weight *= high ? fraction[axis] : 1 - fraction[axis];
            index += stride * (low[axis] + high);
        }
        for (size_t channel = 0; channel < 3; ++channel)
            color[channel] += weight * table[index * 3 + channel];
    }
    return color;
}

const std::string& ShaderEvaluator::peek() const {
    return words[position];
}

std::string ShaderEvaluator::next() {
    if (peek().empty())
        fail("the text ends too early");
    return words[position++];
}

void ShaderEvaluator::expect(const std::string& word) {
    if (!accept(word))
        fail("expected " + word);
}

bool ShaderEvaluator::accept(const std::string& word) {
    if (peek() != word)
        return false;
    ++position;
    return true;
}

void ShaderEvaluator::fail(const std::string& reason) const {
    throw std::runtime_error("shader: " + reason + ", at '" + peek() + "' (word " + std::to_string(position) +
                             ")");
}
