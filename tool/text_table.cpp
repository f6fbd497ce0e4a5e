#include "tool/text_table.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include <fmt/ranges.h>

#include "tool/console.h"

namespace tool {

namespace {

constexpr char COLUMN_GAP[] = "  ";

std::size_t count_characters(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

} // namespace

TextTable::TextTable(std::vector<std::string> titles) : heading(std::move(titles)) {
    for (const std::string& title : heading)
        widths.push_back(count_characters(title));
}

void TextTable::add_row(std::vector<std::string> cells) {
    assert(cells.size() <= heading.size());
    cells.resize(heading.size());
    for (std::string& cell : cells)
        cell = escape_controls(cell); // as the console does, so that columns stay aligned
    for (std::size_t i = 0; i < cells.size(); ++i)
        widths[i] = std::max(widths[i], count_characters(cells[i]));
    rows.push_back(std::move(cells));
}

void TextTable::drop_empty_columns() {
    for (std::size_t i = heading.size(); i-- > 0;) {
        const auto is_empty = [i](const std::vector<std::string>& row) { return row[i].empty(); };
        if (!std::all_of(rows.begin(), rows.end(), is_empty))
            continue;
        const auto at = static_cast<std::ptrdiff_t>(i);
        heading.erase(heading.begin() + at);
        widths.erase(widths.begin() + at);
        for (std::vector<std::string>& row : rows)
            row.erase(row.begin() + at);
    }
}

void TextTable::print(Console& console) const {
    console.print_heading(format_row(heading));
    for (const std::vector<std::string>& row : rows)
        console.print(format_row(row));
}

std::string TextTable::format_row(const std::vector<std::string>& cells) const {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        line += cells[i];
        line.append(widths[i] - count_characters(cells[i]), ' ');
        line += COLUMN_GAP;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

std::string join(const std::vector<std::string>& texts, const char* separator) {
    return fmt::format("{}", fmt::join(texts, separator));
}

std::string count_things(std::size_t count, const char* singular) {
    return std::to_string(count) + " " + singular + (count == 1 ? "" : "s");
}

} // namespace tool
