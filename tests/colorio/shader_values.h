#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

/// Arithmetic of shader texts. All functions throw std::runtime_error for operands that do not fit.
namespace shader_values {

/// 1 number, 3 or 4 of a vector, or 16 of a matrix by columns.
using Value = std::vector<double>;

/// `function` of every component; a single number stands for as many as the other side has.
Value by_component(const Value& a, const Value& b, const std::function<double(double, double)>& function);
Value by_component(const Value& a, double (*function)(double));
/// A vector before a matrix is a row, one behind it a column.
Value multiply(const Value& a, const Value& b);
/// Positions that a swizzle names, for example 0, 1, 2 for "rgb".
std::vector<std::size_t> components(const std::string& swizzle);
/// A value of `size` components from those of the arguments.
Value construct(const std::vector<Value>& arguments, std::size_t size);

} // namespace shader_values
