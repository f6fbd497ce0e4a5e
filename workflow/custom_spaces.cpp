#include "workflow/custom_spaces.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "colorio/color_io.h"
#include "diagnostics/failure.h"

namespace workflow {

namespace {

namespace library = OCIO_NAMESPACE;
using ColorSpaceDef = ColorIOManager::ColorSpaceDef;

struct NamedNumber {
    const char* name;
    unsigned int number;
};
constexpr NamedNumber DEPTHS[] = {
    {"8ui", library::BIT_DEPTH_UINT8},   {"10ui", library::BIT_DEPTH_UINT10},
    {"12ui", library::BIT_DEPTH_UINT12}, {"14ui", library::BIT_DEPTH_UINT14},
    {"16ui", library::BIT_DEPTH_UINT16}, {"32ui", library::BIT_DEPTH_UINT32},
    {"16f", library::BIT_DEPTH_F16},     {"32f", library::BIT_DEPTH_F32},
};
constexpr NamedNumber ALLOCATIONS[] = {{"uniform", library::ALLOCATION_UNIFORM},
                                       {"lg2", library::ALLOCATION_LG2}};

template <class Table>
std::string find_name(const Table& table, unsigned int number) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const NamedNumber& one) { return one.number == number; });
    return found == std::end(table) ? "unknown" : found->name;
}

template <class Table>
std::vector<std::string> get_names(const Table& table) {
    std::vector<std::string> names;
    for (const NamedNumber& one : table)
        names.emplace_back(one.name);
    return names;
}

template <class Table>
unsigned int find_number(const Table& table, const char* kind, const std::string& name) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const NamedNumber& one) { return one.name == name; });
    if (found == std::end(table))
        diagnostics::fail(diagnostics::Code::USAGE, fmt::format("unknown {} '{}'", kind, name),
                          fmt::format("choices: {}", fmt::join(get_names(table), ", ")));
    return found->number;
}

} // namespace

std::vector<ColorSpaceDef> get_custom_spaces() {
    std::vector<ColorSpaceDef> spaces;
    for (const ColorSpaceDef& space : ColorIOManager::get_instance()->get_tavelion_color_spaces())
        if (!space.is_builtin)
            spaces.push_back(space);
    return spaces;
}

bool is_usable(const ColorSpaceDef& space) {
    return ColorIO::color_space_exists(get_label(space).c_str());
}

std::string get_label(const ColorSpaceDef& space) {
    return fmt::format("{}{}{}", ColorIOManager::BUILTIN_FAMILY.data, ColorIOManager::FAMILY_SEPARATOR,
                       space.name.view());
}

std::string describe_origin(const ColorSpaceDef& space) {
    std::string cdl(space.cdl_file.view());
    if (!space.cccid.is_empty())
        cdl += fmt::format(":{}", space.cccid.view());
    const std::string lut(space.lut_file.view());
    if (cdl.empty() || lut.empty())
        return cdl + lut;
    return cdl + " then " + lut;
}

std::string describe_allocation(const ColorSpaceDef& space) {
    const std::string range = fmt::format("{} {} {}", find_name(ALLOCATIONS, space.allocation),
                                          space.allocation_vars[0], space.allocation_vars[1]);
    return space.allocation == library::ALLOCATION_LG2 ? fmt::format("{} {}", range, space.allocation_vars[2])
                                                       : range;
}

std::string describe_depth(const ColorSpaceDef& space) {
    return find_name(DEPTHS, space.bit_depth);
}

unsigned int parse_depth(const std::string& name) {
    return find_number(DEPTHS, "bit depth", name);
}

unsigned int parse_allocation(const std::string& name) {
    return find_number(ALLOCATIONS, "allocation", name);
}

std::vector<std::string> get_depth_names() {
    return get_names(DEPTHS);
}

} // namespace workflow
