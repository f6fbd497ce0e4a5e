#pragma once

#include <memory>
#include <string>

class ColorIOConverter;

namespace tool {

class ColorSession;

/// A correction of a CDL file, applied or undone in the scene-linear space. Ready to be applied by several
/// threads at once.
class Grade {
public:
    /// For colours of `source`, a label. `correction` is FILE or FILE:ID. Throws CommandError when that
    /// cannot be read or the configuration cannot lead to scene-linear.
    Grade(ColorSession& session, const std::string& source, const std::string& correction, bool is_undone);
    ~Grade();

    /// Label of the scene-linear space, which graded colours are in.
    const std::string& get_working_space() const { return working_space; }
    /// Grades interleaved red, green, blue, alpha floats in place.
    void apply(float* rgba, unsigned int width, unsigned int height) const;

    /// The converter that leads to the scene-linear space; null when the colours are in it.
    const ColorIOConverter* get_approach() const { return to_working_space.get(); }
    /// The converter that grades.
    const ColorIOConverter& get_correction() const { return *correction; }

private:
    std::string working_space;
    std::unique_ptr<ColorIOConverter> to_working_space; ///< Null when the colours are in it.
    std::unique_ptr<ColorIOConverter> correction;
};

} // namespace tool
