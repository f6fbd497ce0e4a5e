#pragma once

#include <string>
#include <vector>

namespace tool {

class Console;

/// Rows of text printed in aligned columns under a heading. Widths count UTF-8 characters, not bytes.
class TextTable {
public:
    explicit TextTable(std::vector<std::string> heading);

    /// Missing cells are left empty; more cells than columns are not allowed.
    void add_row(std::vector<std::string> cells);
    std::size_t count_rows() const { return rows.size(); }
    /// Removes the columns whose cells are empty in every row.
    void drop_empty_columns();
    void print(Console& console) const;

private:
    std::string format_row(const std::vector<std::string>& cells) const;

    std::vector<std::string> heading;
    std::vector<std::vector<std::string>> rows;
    std::vector<std::size_t> widths;
};

/// "lin, render space".
std::string join(const std::vector<std::string>& texts, const char* separator = ", ");

/// "2 color spaces", "1 view".
std::string count_things(std::size_t count, const char* singular);

} // namespace tool
