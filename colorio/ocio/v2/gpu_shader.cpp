#include "colorio/ocio/v2/gpu_shader.h"

#include "colorio/ocio/gpu_contract.h"

namespace ocio {

namespace {

constexpr const char* PIXEL = "out_pixel";
constexpr const char* TABLE = "lut3d";

/// Position of element (row, column) in a 4 x 4 matrix.
constexpr int element(int row, int column) {
    return row * 4 + column;
}

/// Alpha is kept and no channel depends on another.
bool is_scale_and_offset(const library::MatrixTransform& transform) {
    double matrix[16];
    double offset[4];
    transform.getMatrix(matrix);
    transform.getOffset(offset);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            if (row != column && matrix[element(row, column)] != 0.0)
                return false;
    return matrix[element(3, 3)] == 1.0 && offset[3] == 0.0;
}

/// Every occurrence of `from`; returns how many there were.
int replace_all(std::string& text, const std::string& from, const std::string& to) {
    int count = 0;
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
        ++count;
    }
    return count;
}

/// The first occurrence of `from` after `start`; false when there is none.
bool replace_after(std::string& text, const std::string& start, const std::string& from,
                   const std::string& to) {
    const std::size_t begin = text.find(start);
    const std::size_t at = begin == std::string::npos ? begin : text.find(from, begin);
    if (at == std::string::npos)
        return false;
    text.replace(at, from.size(), to);
    return true;
}

/// From blue fastest to red fastest.
std::vector<float> with_red_fastest(const float* table, std::size_t edge_len) {
    std::vector<float> turned;
    turned.reserve(edge_len * edge_len * edge_len * 3);
    for (std::size_t blue = 0; blue < edge_len; ++blue)
        for (std::size_t green = 0; green < edge_len; ++green)
            for (std::size_t red = 0; red < edge_len; ++red) {
                const float* triple = table + ((red * edge_len + green) * edge_len + blue) * 3;
                turned.insert(turned.end(), triple, triple + 3);
            }
    return turned;
}

/// Makes the text sample its only texture through the parameter. False when it is not written as expected.
bool use_lut_parameter(std::string& text, const std::string& texture, const std::string& sampler) {
    const bool known = replace_all(text, "uniform sampler3D " + sampler + ";", "") == 1 &&
                       replace_after(text, "vec3 " + texture + "_coords = ", ".zyx", ".rgb");
    // Newer versions of OpenColorIO spell it so for newer versions of the language.
    replace_all(text, "= texture(" + sampler, "= texture3D(" + sampler);
    return known && replace_all(text, sampler, TABLE) == 1 &&
           text.find(std::string("= texture3D(") + TABLE + ",") != std::string::npos;
}

library::GpuLanguage library_language(GpuLanguage language) {
    return language == GPU_LANGUAGE_GLSL_1_3 ? library::GPU_LANGUAGE_GLSL_1_3
                                             : library::GPU_LANGUAGE_GLSL_1_2;
}

} // namespace

bool consists_of_luts(const library::ConstProcessorRcPtr& processor) {
    const GroupTransformRcPtr steps = processor->createGroupTransform();
    bool any_table = false;
    for (int i = 0; i < steps->getNumTransforms(); ++i) {
        const TransformRcPtr& step = steps->getTransform(i);
        switch (step->getTransformType()) {
        case library::TRANSFORM_TYPE_LUT1D:
        case library::TRANSFORM_TYPE_LUT3D:
            any_table = true;
            break;
        case library::TRANSFORM_TYPE_MATRIX:
            if (!is_scale_and_offset(static_cast<const library::MatrixTransform&>(*step)))
                return false;
            break;
        default:
            return false;
        }
    }
    return any_table;
}

bool have_same_steps(const library::ConstProcessorRcPtr& first, const library::ConstProcessorRcPtr& second) {
    const GroupTransformRcPtr ours = first->createGroupTransform();
    const GroupTransformRcPtr theirs = second->createGroupTransform();
    if (ours->getNumTransforms() != theirs->getNumTransforms())
        return false;
    for (int i = 0; i < ours->getNumTransforms(); ++i)
        if (ours->getTransform(i)->getTransformType() != theirs->getTransform(i)->getTransformType())
            return false;
    return true;
}

std::optional<GpuShader> adapted_shader(const library::ConstProcessorRcPtr& processor,
                                        library::OptimizationFlags optimization, const GpuShaderDesc& desc) {
    const auto edge_len = static_cast<unsigned>(desc.lut_3d_edge_len);
    library::GpuShaderDescRcPtr generated = library::GpuShaderDesc::CreateShaderDesc();
    generated->setLanguage(library_language(desc.language));
    generated->setFunctionName(desc.function_name);
    generated->setPixelName(PIXEL);
    processor->getOptimizedLegacyGPUProcessor(optimization, edge_len)->extractGpuShaderInfo(generated);
    return adapt_shader(generated, desc);
}

std::optional<GpuShader> adapt_shader(const library::ConstGpuShaderDescRcPtr& generated,
                                      const GpuShaderDesc& desc) {
    const unsigned tables = generated->getNum3DTextures();
    if (tables > 1 || generated->getNumTextures() > 0 || generated->getNumUniforms() > 0)
        return std::nullopt;

    GpuShader shader{generated->getShaderText(), {}};
    const std::string plain_signature = std::string("vec4 ") + desc.function_name + "(vec4 inPixel)";
    if (replace_all(shader.text, plain_signature, shader_signature(desc)) != 1)
        return std::nullopt;
    if (tables == 0)
        return shader;

    const char* texture = nullptr;
    const char* sampler = nullptr;
    unsigned edge_len = 0;
    library::Interpolation interpolation;
    generated->get3DTexture(0, texture, sampler, edge_len, interpolation);
    const float* values = nullptr;
    generated->get3DTextureValues(0, values);
    if (edge_len != static_cast<unsigned>(desc.lut_3d_edge_len) ||
        !use_lut_parameter(shader.text, texture, sampler))
        return std::nullopt;
    shader.lut = with_red_fastest(values, edge_len);
    return shader;
}

} // namespace ocio
