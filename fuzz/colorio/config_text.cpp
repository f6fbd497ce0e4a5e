#include "fuzz/colorio/config_text.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace {

constexpr const char* VARIABLES[] = {"A", "B", "C", "AB"};
constexpr const char* NAMES[] = {"lin",  "LIN",     "log",          "f|lin", "a.b",
                                 "a, b", "default", "scene_linear", "$A",    "-lin"};
constexpr const char* ROLES[] = {"scene_linear", "default",         "data",
                                 "reference",    "compositing_log", "my role"};

/// Writes one config; a class, because every part draws from the same input.
class ConfigWriter {
public:
    ConfigWriter(const std::uint8_t* data, std::size_t size) : input(data, size) {}

    ConfigText write();

private:
    template <std::size_t COUNT>
    const char* pick(const char* const (&choices)[COUNT]) {
        return choices[input.ConsumeIntegralInRange<std::size_t>(0, COUNT - 1)];
    }
    bool toss() { return input.ConsumeBool(); }
    int count(int most) { return input.ConsumeIntegralInRange(0, most); }
    std::string number() { return std::to_string(input.ConsumeIntegralInRange(-40, 40) / 8.0); }

    static std::string quote(const std::string& text);
    std::string name();
    std::string value_with_variables();
    std::string transform(int depth);
    std::string leaf_transform();
    std::string numbers(int how_many);
    std::string list_of_names();
    void write_variables();
    void write_roles();
    void write_looks();
    void write_views();
    void write_view_transforms();
    void write_color_spaces();
    void write_named_transforms();

    FuzzedDataProvider input;
    ConfigText config;
    bool is_version_2 = false;
};

/// Any bytes in double quotes.
std::string ConfigWriter::quote(const std::string& text) {
    static constexpr char DIGITS[] = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte < 0x7F && byte != '"' && byte != '\\')
            quoted += c;
        else
            quoted += {'\\', 'x', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    return quoted + '"';
}

std::string ConfigWriter::name() {
    return quote(count(7) == 0 ? input.ConsumeRandomLengthString(12) : std::string(pick(NAMES)));
}

std::string ConfigWriter::value_with_variables() {
    std::string text;
    for (int i = count(3); i > 0; --i) {
        const std::string variable = pick(VARIABLES);
        switch (count(5)) {
        case 0:
            text += "$" + variable;
            break;
        case 1:
            text += "${" + variable + "}";
            break;
        case 2:
            text += "%" + variable + "%";
            break;
        case 3:
            text += "curve.spi1d";
            break;
        case 4:
            text += input.ConsumeRandomLengthString(4);
            break;
        default:
            text += variable + "/";
            break;
        }
    }
    return quote(text);
}

std::string ConfigWriter::numbers(int how_many) {
    std::string list = "[";
    for (int i = 0; i < how_many; ++i)
        list += (i > 0 ? ", " : "") + number();
    return list + "]";
}

std::string ConfigWriter::list_of_names() {
    std::string list = "[";
    for (int i = count(3); i > 0; --i)
        list += name() + (i > 1 ? ", " : "");
    return list + "]";
}

std::string ConfigWriter::leaf_transform() {
    const std::string direction = toss() ? ", direction: inverse" : "";
    switch (count(8)) {
    case 0:
        return "!<ColorSpaceTransform> {src: " + name() + ", dst: " + name() + direction + "}";
    case 1:
        return "!<LookTransform> {src: " + name() + ", dst: " + name() + ", looks: " + name() + direction +
               "}";
    case 2:
        return "!<FileTransform> {src: " + value_with_variables() + ", interpolation: linear" + direction +
               "}";
    case 3:
        return "!<CDLTransform> {slope: " + numbers(3) + ", power: " + numbers(3) + ", sat: " + number() +
               direction + "}";
    case 4:
        return "!<ExponentTransform> {value: " + numbers(4) + direction + "}";
    case 5:
        return "!<MatrixTransform> {matrix: " + numbers(16) + ", offset: " + numbers(4) + direction + "}";
    case 6:
        return "!<AllocationTransform> {allocation: lg2, vars: " + numbers(count(3)) + direction + "}";
    case 7:
        return "!<FileTransform> {src: " + value_with_variables() + ", cccid: " + value_with_variables() +
               direction + "}";
    default:
        return "!<LogTransform> {base: " + number() + direction + "}";
    }
}

std::string ConfigWriter::transform(int depth) {
    if (depth == 0 || count(3) > 0)
        return leaf_transform();
    std::string group = "!<GroupTransform> {children: [";
    for (int i = count(3); i >= 0; --i)
        group += transform(depth - 1) + (i > 0 ? ", " : "");
    return group + "]}";
}

void ConfigWriter::write_variables() {
    config.text += "environment: {";
    const char* separator = "";
    for (const char* variable : VARIABLES) {
        const int place = count(3);
        if (place == 1) {
            config.text += separator + std::string(variable) + ": " + value_with_variables();
            separator = ", ";
        } else if (place == 2) {
            std::string value = value_with_variables();
            value.erase(value.find_first_of('\0') == std::string::npos ? value.size() : value.find('\0'));
            config.process_variables.emplace_back(variable, value.substr(1, value.size() - 2));
        }
    }
    config.text += "}\nsearch_path: " + value_with_variables() + "\n";
}

void ConfigWriter::write_roles() {
    config.text += "roles:\n";
    for (const char* role : ROLES)
        if (toss())
            config.text += std::string("  ") + role + ": " + name() + "\n";
    if (is_version_2)
        config.text += "file_rules: [!<Rule> {name: Default, colorspace: " + name() + "}]\n";
}

void ConfigWriter::write_looks() {
    config.text += "looks:\n";
    for (int i = count(2); i > 0; --i)
        config.text += "  - !<Look> {name: " + name() + ", process_space: " + name() +
                       ", transform: " + transform(1) + "}\n";
}

void ConfigWriter::write_views() {
    config.text += "displays:\n";
    for (int display = count(2); display >= 0; --display) {
        config.text += "  " + name() + ":\n";
        for (int view = count(2); view >= 0; --view) {
            config.text += "    - !<View> {name: " + name();
            config.text += is_version_2 && toss()
                               ? ", view_transform: " + name() + ", display_colorspace: " + name()
                               : ", colorspace: " + name();
            config.text += (toss() ? ", looks: " + name() : "") + "}\n";
        }
    }
}

void ConfigWriter::write_view_transforms() {
    config.text += "view_transforms:\n";
    for (int i = count(2); i >= 0; --i)
        config.text +=
            "  - !<ViewTransform> {name: " + name() + ", from_scene_reference: " + transform(1) + "}\n";
    config.text += "inactive_colorspaces: " + list_of_names() + "\n";
    config.text += "display_colorspaces:\n  - !<ColorSpace> {name: " + name() +
                   ", from_display_reference: " + transform(1) + "}\n";
}

void ConfigWriter::write_color_spaces() {
    config.text += "colorspaces:\n";
    for (int i = count(5); i >= 0; --i) {
        config.text += "  - !<ColorSpace> {name: " + name() + ", family: " + name();
        if (toss())
            config.text += ", isdata: true";
        if (is_version_2 && toss())
            config.text += ", aliases: " + list_of_names();
        if (toss())
            config.text += ", allocation: lg2, allocationvars: " + numbers(count(3));
        if (toss())
            config.text += ", to_reference: " + transform(2);
        if (toss())
            config.text += ", from_reference: " + transform(2);
        config.text += "}\n";
    }
}

void ConfigWriter::write_named_transforms() {
    config.text += "named_transforms:\n";
    for (int i = count(2); i > 0; --i)
        config.text += "  - !<NamedTransform> {name: " + name() + ", aliases: " + list_of_names() +
                       (toss() ? ", transform: " : ", inverse_transform: ") + transform(1) + "}\n";
}

ConfigText ConfigWriter::write() {
    is_version_2 = toss();
    config.text = is_version_2 ? "ocio_profile_version: 2\n" : "ocio_profile_version: 1\n";
    config.text += toss() ? "strictparsing: true\n" : "strictparsing: false\n";
    write_variables();
    write_color_spaces();
    write_views();
    write_roles();
    write_looks();
    if (is_version_2) {
        write_view_transforms();
        write_named_transforms();
    }
    return config;
}

} // namespace

ConfigText make_config_text(const std::uint8_t* data, std::size_t size) {
    return ConfigWriter(data, size).write();
}
