#include "tests/gpu/shader_texts.h"

#include <cstdlib>

#include "tests/gpu/shader_proof.h"

std::string make_core_shader(const std::string& text, const std::string& version) {
    return "#version " + version +
           " core\nin vec2 place;\nout vec4 result;\nuniform sampler2D image;\nuniform sampler3D table;\n" +
           text + "\nvoid main() { result = OCIODisplay(texture(image, place), table); }\n";
}

std::string make_legacy_shader(const std::string& text) {
    return "#version 120\nvarying vec2 place;\nuniform sampler2D image;\nuniform sampler3D table;\n" + text +
           "\nvoid main() { gl_FragColor = OCIODisplay(texture2D(image, place), table); }\n";
}

bool ShaderTexts::is_compiler_installed() {
    return std::system("glslangValidator --version > /dev/null 2>&1") == 0;
}

void ShaderTexts::add(const NamedConversion& conversion) {
    const ColorIOConverter& converter = *conversion.converter;
    const std::string end = "// " + conversion.name + "\n";
    add(make_legacy_shader(get_shader_source(converter, ColorIOConverter::GLSL_VERSION_LEGACY).text) + end);
    const std::string core = get_shader_source(converter, ColorIOConverter::GLSL_VERSION_CORE).text;
    for (const char* version : {"330", STRICT_GLSL})
        add(make_core_shader(core, version) + end);
}

void ShaderTexts::add(const std::string& shader) {
    files += " " + folder.write("shader" + std::to_string(count++) + ".frag", shader);
}

bool ShaderTexts::are_valid() {
    return std::system(("glslangValidator" + files + " > " + folder.file("output") + " 2>&1").c_str()) == 0;
}
