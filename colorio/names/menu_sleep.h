#pragma once

#include <vector>

#include "host/of/of_enum.h"

/// Keeps enumerations asleep during its scope, so that the host sees one change of each, whatever happens in
/// between.
class MenuSleep {
public:
    explicit MenuSleep(std::vector<OfEnum*> menus) : menus(std::move(menus)) {
        for (OfEnum* menu : this->menus)
            menu->asleep();
    }
    ~MenuSleep() {
        for (OfEnum* menu : menus)
            menu->awake(true);
    }
    MenuSleep(const MenuSleep&) = delete;
    MenuSleep& operator=(const MenuSleep&) = delete;

private:
    std::vector<OfEnum*> menus;
};
