#pragma once

#include <string>

#include "colorio/color_io_converter.h"
#include "tests/gpu/module_fixture.h"
#include "tests/support/temp_dir.h"

/// A fragment shader of a core profile around the text of a conversion.
std::string make_core_shader(const std::string& text, const std::string& version);
/// The same of GLSL 1.20.
std::string make_legacy_shader(const std::string& text);

/// From this version on the compiler does not accept texture3D; in 3.30 it does.
constexpr char STRICT_GLSL[] = "420";

/// Shaders for the reference compiler of the language, each a file in a separate folder.
class ShaderTexts {
public:
    static bool is_compiler_installed();

    /// The conversion's shader in both dialects, that of the core profile in two versions of the language.
    void add(const NamedConversion& conversion);
    /// Any shader.
    void add(const std::string& shader);

    unsigned int get_count() const { return count; }
    /// Whether all of them compile.
    bool are_valid();
    /// What the compiler said last.
    std::string get_messages() const { return folder.read("output"); }

private:
    TempDir folder;
    std::string files;
    unsigned int count = 0;
};
