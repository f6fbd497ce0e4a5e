#include "tests/gpu/sample_cdls.h"

std::vector<ColorIOManager::ColorDecisionListDef> get_sample_cdls() {
    return {
        {"slope", "", "", {1.25f, 1, 0.75f}, {0, 0, 0}, {1, 1, 1}, 1, false},
        {"offset", "", "", {1, 1, 1}, {0.1f, 0, -0.05f}, {1, 1, 1}, 1, false},
        {"power", "", "", {1, 1, 1}, {0, 0, 0}, {1.5f, 1, 0.5f}, 1, false},
        {"saturated", "", "", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 1.6f, false},
        {"gray", "", "", {1, 1, 1}, {0, 0, 0}, {1, 1, 1}, 0.25f, false},
        {"all", "", "", {1.1f, 0.95f, 0.9f}, {0.02f, -0.01f, 0.03f}, {1.2f, 0.9f, 1.1f}, 0.8f, false},
    };
}
