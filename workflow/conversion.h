#pragma once

#include <memory>
#include <string>

class ColorIOConverter;

namespace tool {

class ColorSession;
class Grade;

/// The two ends of a conversion as the user names them: a colour space, and a colour space or a view.
struct ConversionRequest {
    std::string from;
    std::string to;
    std::string display; ///< With `view`; empty when `view` is a label that holds both.
    std::string view;
    std::string cdl;         ///< FILE or FILE:ID of a correction on the way; empty for none.
    bool undoes_cdl = false; ///< Undo the correction instead of applying it.
};

/// A conversion of the module, ready to be applied by several threads at once.
class ColorConversion {
public:
    /// Throws CommandError when a name is unknown or the configuration cannot make the conversion.
    ColorConversion(ColorSession& session, const ConversionRequest& request);
    ~ColorConversion();

    /// Labels of the two ends.
    const std::string& get_source() const { return source; }
    const std::string& get_target() const { return target; }
    /// Label of the colour space that the result is in; of a view, that which it shows, where known.
    const std::string& get_target_space() const { return target_space; }
    /// Name of that colour space in picture files: without its family, "sRGB" and "Linear" as readers of such
    /// files know them.
    std::string get_target_tag() const;

    /// Label of the space that the correction works in; empty without one.
    std::string get_working_space() const;

    /// True when both ends are the same colour space without a correction between; `apply` then leaves
    /// everything.
    bool is_identity() const { return identity && !grade; }
    /// True when equal red, green and blue stay equal.
    bool keeps_neutrals() const;
    /// Converts interleaved red, green, blue, alpha floats in place.
    void apply(float* rgba, unsigned int width, unsigned int height) const;

    /// The correction; null without one.
    const Grade* get_grade() const { return grade.get(); }
    /// The module's converter behind the correction; unconfigured when it has nothing to do.
    const ColorIOConverter& get_converter() const { return *converter; }

private:
    std::unique_ptr<Grade> grade; ///< Null without a correction.
    std::unique_ptr<ColorIOConverter> converter;
    std::string source;
    std::string target;
    std::string target_space;
    bool identity = false; ///< The converter has nothing to do.
};

} // namespace tool
