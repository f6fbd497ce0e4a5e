#include "manual/man_page.h"

#include <sstream>

#include <fmt/format.h>

namespace manual {

namespace {

/// Text without a meaning for roff.
std::string escape(const std::string& text) {
    std::string escaped;
    for (const char character : text)
        switch (character) {
        case '\\':
            escaped += "\\e";
            break;
        case '-':
            escaped += "\\-";
            break;
        case '\'':
            escaped += "\\(aq";
            break;
        case '`':
            escaped += "\\(ga";
            break;
        case '^':
            escaped += "\\(ha";
            break;
        case '~':
            escaped += "\\(ti";
            break;
        default:
            escaped += character;
        }
    return escaped;
}

/// A line of text, which may begin with a dot.
std::string format_line(const std::string& text) {
    const std::string escaped = escape(text);
    return (escaped.rfind('.', 0) == 0 ? "\\&" : "") + escaped + "\n";
}

std::string bold(const std::string& text) {
    return "\\fB" + escape(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + escape(text) + "\\fR";
}

std::string format_heading(const std::string& title) {
    std::string upper;
    for (const char letter : title)
        upper += letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    return fmt::format(".SH \"{}\"\n", escape(upper));
}

std::string format_synopsis(const CommandDescription& command, const std::string& line) {
    std::string text = bold(line) + " [" + italic("OPTIONS") + "]";
    for (const OptionDescription& option : command.options)
        if (option.is_positional) {
            const std::string name = italic(option.names.front()) + (option.is_repeatable ? " ..." : "");
            text += option.is_required ? " " + name : " [" + name + "]";
        }
    return text + (command.commands.empty() ? "" : " " + italic("COMMAND")) + "\n";
}

std::string format_option(const OptionDescription& option) {
    std::string names;
    for (const std::string& name : option.names)
        names += (names.empty() ? "" : ", ") + (option.is_positional ? italic(name) : bold(name));
    if (!option.value.empty())
        names += " " + (option.choices.empty() ? italic(option.value) : escape(option.value));
    return ".TP\n" + names + (option.is_required && !option.is_positional ? " (required)" : "") + "\n" +
           format_line(option.help);
}

std::string format_options(const CommandDescription& command, bool are_positional) {
    std::string text;
    for (const OptionDescription& option : command.options)
        if (option.is_positional == are_positional)
            text += format_option(option);
    return text.empty() ? "" : format_heading(are_positional ? "Arguments" : "Options") + text;
}

std::string format_commands(const CommandDescription& command, const std::string& page) {
    std::string text;
    for (const CommandDescription& part : command.commands)
        text += fmt::format(".TP\n{}(1)\n{}", bold(page + "-" + part.name), format_line(part.description));
    return text.empty() ? "" : format_heading("Commands") + text;
}

/// Headings, indented lines as they are, and paragraphs.
std::string format_footer(const std::string& footer) {
    std::string text;
    bool is_example = false;
    std::istringstream lines(footer);
    for (std::string line; std::getline(lines, line);) {
        const bool is_indented = !line.empty() && line.front() == ' ';
        if (is_indented != is_example && !line.empty()) {
            text += is_indented ? ".PP\n.EX\n" : ".EE\n.PP\n";
            is_example = is_indented;
        }
        if (!is_indented && !line.empty() && line.back() == ':')
            text += format_heading(line.substr(0, line.size() - 1));
        else if (!line.empty())
            text += format_line(line);
    }
    if (is_example)
        text += ".EE\n";
    // A heading is a paragraph already.
    for (std::size_t at; (at = text.find("\"\n.PP\n")) != std::string::npos;)
        text.erase(at + 2, 4);
    for (std::size_t at; (at = text.find(".PP\n.SH")) != std::string::npos;)
        text.erase(at, 4);
    return text;
}

class PageMaker {
public:
    explicit PageMaker(const std::string& version) : version(version) {}

    void add(const CommandDescription& command, const std::string& line, const std::string& page,
             const std::string& parent) {
        std::string text =
            fmt::format(".TH \"{}\" 1 \"\" \"{}\" \"User commands\"\n", escape(page), escape(version));
        text +=
            format_heading("Name") + fmt::format("{} \\- {}\n", escape(page), escape(command.description));
        text += format_heading("Synopsis") + format_synopsis(command, line);
        text += format_options(command, true) + format_options(command, false) +
                format_commands(command, page) + format_footer(command.footer);
        if (!parent.empty())
            text += format_heading("See also") + bold(parent) + "(1)\n";
        pages.push_back({page, text});
        for (const CommandDescription& part : command.commands)
            add(part, line + " " + part.name, page + "-" + part.name, page);
    }

    std::vector<ManPage> pages;

private:
    const std::string& version;
};

} // namespace

std::vector<ManPage> make_man_pages(const CommandDescription& program, const std::string& version) {
    PageMaker maker(version);
    maker.add(program, program.name, program.name, "");
    return std::move(maker.pages);
}

} // namespace manual
