#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "tests/colorio/shader_values.h"

/// Runs a fragment-shader function of the form `vec4 NAME(in vec4 PIXEL, const sampler3D TABLE) { ... }` (the
/// two qualifiers may be absent) on the processor, in double precision. It supports declarations,
/// assignments, blocks, arithmetic, swizzles and the built-in functions that color conversions use; anything
/// else throws std::runtime_error with the word it stopped at, so that a text outside the contract fails the
/// test that runs it.
class ShaderEvaluator {
public:
    using Pixel = std::array<double, 4>;

    /// `table`: edge^3 RGB triples, red fastest, sampled as a GL_CLAMP_TO_EDGE, GL_LINEAR 3D texture.
    ShaderEvaluator(const std::string& text, const std::string& function, std::vector<float> table,
                    unsigned int edge);

    Pixel run(const Pixel& pixel);

private:
    using Value = shader_values::Value;

    void parse_signature(const std::string& function);
    void run_block();
    void run_statement();
    void assign(const std::string& name, const std::string& swizzle, char operation, const Value& value);

    Value expression();
    Value term();
    Value factor();
    Value primary();
    Value call(const std::string& function);
    Value sample(const Value& coordinates) const;

    const std::string& peek() const;
    std::string next();
    void expect(const std::string& word);
    bool accept(const std::string& word);
    [[noreturn]] void fail(const std::string& reason) const;

    std::vector<std::string> words;
    size_t position = 0;
    size_t body = 0;
    std::string pixel_name;
    std::string table_name;
    std::vector<float> table;
    unsigned int edge;
    std::map<std::string, Value> variables;
    Value result;
};
