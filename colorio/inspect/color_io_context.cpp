#include "colorio/color_io_context.h"

#include <utility>

#include "colorio/color_io_manager.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/ocio/context_overrides.h"

void ColorIOContext::set_variables(const CoreVector<Variable>& variables) {
    at_boundary([&] {
        ocio::ContextVariables values;
        for (const Variable& variable : variables)
            values.emplace_back(variable.name.get_data(), variable.value.get_data());
        ocio::set_context_overrides(std::move(values));
    });
}

bool ColorIOContext::is_used(const CoreString& name) {
    return at_boundary(false, [&] {
        const ColorIOManager* manager = ColorIOManager::get_instance();
        return manager && manager->get_config() &&
               ocio::uses_context_variable(manager->get_config(), name.get_data());
    });
}
