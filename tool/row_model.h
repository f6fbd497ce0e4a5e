#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tool/json.h"
#include "tool/text_table.h"

namespace tool {

/// A value as it is shown in a table and in JSON. Truth values have no text.
struct Cell {
    Cell(std::string text, Json json) : text(std::move(text)), json(std::move(json)) {}
    Cell(const std::string& text) : Cell(text, text) {}
    Cell(const char* text) : Cell(std::string(text)) {}
    Cell(const std::vector<std::string>& texts) : Cell(join(texts), texts) {}
    Cell(bool flag) : Cell("", flag) {}
    template <class Number, std::enable_if_t<std::is_arithmetic_v<Number>, int> = 0>
    Cell(Number number) : Cell(std::to_string(number), number) {}

    std::string text;
    Json json;
};

/// What a list shows of its rows, as a table and in JSON.
template <class Row>
class RowModel {
public:
    /// Whether rows have their position as the column "#" and as the member "position".
    enum Numbering { UNNUMBERED, NUMBERED_IN_TABLES, NUMBERED };

    explicit RowModel(Numbering numbering = UNNUMBERED, std::size_t first = 0)
        : numbering(numbering), first(first) {}

    /// Adds a property: a column with this title, a member of this name, or both; the other one is null.
    /// `get` makes its Cell from a row: a member, a function or a lambda.
    template <class Get>
    RowModel& add(const char* title, const char* member, const Get& get) {
        properties.push_back({title, member, [get](const Row& row) { return Cell(std::invoke(get, row)); }});
        return *this;
    }

    // `rows` are any range of rows.

    template <class Rows>
    TextTable make_table(const Rows& rows) const {
        std::vector<std::string> titles;
        if (numbering != UNNUMBERED)
            titles.emplace_back("#");
        for (const Property& property : properties)
            if (property.title)
                titles.emplace_back(property.title);
        TextTable table(std::move(titles));
        for (const Row& row : rows) {
            std::vector<std::string> cells;
            if (numbering != UNNUMBERED)
                cells.push_back(std::to_string(first + table.count_rows()));
            for (const Property& property : properties)
                if (property.title)
                    cells.push_back(property.get(row).text);
            table.add_row(std::move(cells));
        }
        return table;
    }

    Json make_object(const Row& row) const {
        Json item = Json::object();
        for (const Property& property : properties)
            if (property.member)
                item.set(property.member, property.get(row).json);
        return item;
    }

    /// An array of objects.
    template <class Rows>
    Json make_array(const Rows& rows) const {
        Json list = Json::array();
        for (const Row& row : rows) {
            Json item = Json::object();
            if (numbering == NUMBERED)
                item.set("position", first + list.size());
            list.push(item.update(make_object(row)));
        }
        return list;
    }

private:
    struct Property {
        const char* title;
        const char* member;
        std::function<Cell(const Row& row)> get;
    };

    const Numbering numbering;
    const std::size_t first; ///< Number of the first row.
    std::vector<Property> properties;
};

} // namespace tool
