#pragma once

#include <utility>
#include <vector>

#include "colorio/facade/module_boundary.h"
#include "host/of/of_enum.h"

/// Keeps enumerations asleep during its scope, so that the host sees one change of each, also after an
/// exception. Exceptions of the host's notification are ignored.
class MenuSleep {
public:
    explicit MenuSleep(std::vector<OfEnum*> menus) : menus(std::move(menus)) {
        for (OfEnum* menu : this->menus)
            at_boundary([&] { menu->asleep(); });
    }
    ~MenuSleep() {
        for (OfEnum* menu : menus)
            at_boundary([&] { menu->awake(true); });
    }
    MenuSleep(const MenuSleep&) = delete;
    MenuSleep& operator=(const MenuSleep&) = delete;

private:
    std::vector<OfEnum*> menus;
};
