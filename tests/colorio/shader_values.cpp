#include "tests/colorio/shader_values.h"

#include <algorithm>
#include <stdexcept>

namespace shader_values {

Value by_component(const Value& a, const Value& b, const std::function<double(double, double)>& function) {
    if (a.size() != b.size() && a.size() != 1 && b.size() != 1)
        throw std::runtime_error("operands of different sizes");
    Value result(std::max(a.size(), b.size()));
    for (size_t i = 0; i < result.size(); ++i)
        result[i] = function(a[a.size() == 1 ? 0 : i], b[b.size() == 1 ? 0 : i]);
    return result;
}

Value by_component(const Value& a, double (*function)(double)) {
    Value result = a;
    std::transform(a.begin(), a.end(), result.begin(), function);
    return result;
}

Value multiply(const Value& a, const Value& b) {
    const bool matrix_first = a.size() == 16;
    if (!matrix_first && b.size() != 16)
        return by_component(a, b, std::multiplies<>());
    const Value& matrix = matrix_first ? a : b;
    const Value& vector = matrix_first ? b : a;
    if (vector.size() != 4)
        throw std::runtime_error("a matrix times something else than a vec4");
    Value result(4, 0.0);
    for (size_t column = 0; column < 4; ++column)
        for (size_t row = 0; row < 4; ++row)
            result[matrix_first ? row : column] +=
                matrix[column * 4 + row] * vector[matrix_first ? column : row];
    return result;
}

std::vector<size_t> components(const std::string& swizzle) {
    std::vector<size_t> positions;
    for (char letter : swizzle) {
        size_t index = std::string("rgbaxyzw").find(letter);
        if (index == std::string::npos)
            throw std::runtime_error("no such component: " + swizzle);
        positions.push_back(index % 4);
    }
    return positions;
}

Value construct(const std::vector<Value>& arguments, size_t size) {
    Value result;
    for (const Value& argument : arguments)
        result.insert(result.end(), argument.begin(), argument.end());
    if (result.size() == 1 && size < 16)
        result.resize(size, result[0]);
    if (result.size() != size)
        throw std::runtime_error("wrong count of components in a constructor");
    return result;
}

} // namespace shader_values
