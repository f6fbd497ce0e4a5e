#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "colorio/color_io_manager.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

using SpaceDef = ColorIOManager::ColorSpaceDef;

/// The names of the records that the manager keeps.
inline std::vector<std::string> record_names() {
    std::vector<std::string> names;
    for (const SpaceDef& record : ColorIOManager::get_instance()->get_tavelion_color_spaces())
        names.push_back(str(record.name));
    return names;
}

/// The running module's custom color spaces.
class CustomSpaces : public ConverterTest {
protected:
    ColorIOManager& manager() { return *ColorIOManager::get_instance(); }

    /// Hands the built-in records and these to the manager, as a host's editor does.
    void edit(const std::vector<SpaceDef>& custom) {
        CoreVector<SpaceDef> list;
        for (const SpaceDef& record : manager().get_tavelion_color_spaces())
            if (record.is_builtin)
                list.append(record);
        for (const SpaceDef& record : custom)
            list.append(record);
        manager().set_tavelion_config(list);
    }
    std::vector<std::string> spaces() { return strings(manager().get_color_space_names()); }
    std::vector<std::string> views() { return strings(manager().get_display_view_names()); }

    /// Red of the converted gray.
    float convert_gray(const char* source, const char* destination, float value) {
        EXPECT_TRUE(converter->configure(source, destination));
        return convert(value, value, value)[0];
    }
    std::string write_lut(const char* name, double factor) { return write_file(name, lut_text(factor)); }
};
