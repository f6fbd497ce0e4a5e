#pragma once

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

/// The manager's custom definitions and the host's preference entry.
class Preferences : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }

    /// An entry of the group, made by the test; `fill` adds its values.
    void add_entry(const char* name, const std::function<void(ParserEntry&)>& fill) {
        ParserGroup* group = entry.is_group() ? entry.get_group(0) : entry.add_group(nullptr);
        fill(*group->add_entry(name, 0, 0));
    }
    /// A "space" entry of a LUT with `count` of its nine values.
    void add_space(const std::string& name, const std::string& lut, int count = 9,
                   const std::string& cdl = "", const std::string& cccid = "") {
        add_entry("space", [&](ParserEntry& item) {
            const std::function<void()> values[] = {
                [&] { item.add_string(name.c_str()); },
                [&] { item.add_string(lut.c_str()); },
                [&] { item.add_int(static_cast<int>(ocio::BIT_DEPTH_F32)); },
                [&] { item.add_int(static_cast<int>(ocio::ALLOCATION_UNIFORM)); },
                [&] { item.add_double(-1); },
                [&] { item.add_double(3); },
                [&] { item.add_double(0.1f); },
                [&] { item.add_string(cdl.c_str()); },
                [&] { item.add_string(cccid.c_str()); },
            };
            for (int i = 0; i < count; ++i)
                values[i]();
        });
    }
    /// A "CDL" entry of three strings and `numbers`.
    void add_cdl(const std::string& name, const std::vector<double>& numbers) {
        add_entry("CDL", [&](ParserEntry& item) {
            item.add_string(name.c_str());
            item.add_string("");
            item.add_string("");
            for (double number : numbers)
                item.add_double(number);
        });
    }

    /// Every value of an entry with its kind: s for strings, i for integers, d for doubles.
    static std::vector<std::string> values_of(const ParserEntry& item) {
        std::vector<std::string> values;
        for (unsigned int i = 0; i < item.get_value_count(); ++i)
            values.push_back((item.is_value_string(i)   ? "s:"
                              : item.is_value_int(i)    ? "i:"
                              : item.is_value_double(i) ? "d:"
                                                        : "?:") +
                             str(item.get_string(i)));
        return values;
    }
    std::vector<std::string> entry_names() {
        std::vector<std::string> names;
        ParserGroup* group = entry.get_group(0);
        for (unsigned int i = 0; group && i < group->get_entry_count(); ++i)
            names.push_back(str(group->get_entry(i)->get_name()));
        return names;
    }
    std::vector<std::string> spaces() { return strings(manager().get_color_space_names()); }
    std::vector<std::string> cdl_records() {
        std::vector<std::string> names;
        for (const auto& record : manager().get_tavelion_color_decision_lists())
            names.push_back(str(record.name));
        return names;
    }

    const std::vector<double> IDENTITY = {1, 1, 1, 0, 0, 0, 1, 1, 1, 1};
    ParserEntry entry{"color management"};
};
