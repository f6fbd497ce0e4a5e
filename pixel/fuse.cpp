#include "pixel/compile.h"

#include <algorithm>
#include <utility>

namespace pixel {

namespace {

/// The member of a stage for a diagonal matrix before it; null if it has none.
Scaling* scaling_before(Stage& stage) {
    if (auto* table = std::get_if<TableStage>(&stage)) {
        return &table->before;
    }
    auto* power = std::get_if<PowerStage>(&stage);
    return power && std::all_of(power->active.flag, power->active.flag + 3, [](bool a) { return a; })
               ? &power->before
               : nullptr;
}

Scaling* scaling_after(Stage& stage) {
    auto* inverse = std::get_if<InverseTableStage>(&stage);
    return inverse ? &inverse->after : nullptr;
}

bool leaves_alpha(const DiagonalStage* diagonal) {
    return diagonal && !diagonal->active[3];
}

void take_in(const DiagonalStage& diagonal, Scaling& scaling) {
    for (std::size_t c = 0; c < 4; ++c) {
        if (diagonal.active[c]) {
            scaling.scale[c] = diagonal.scale[c];
            scaling.offset[c] = diagonal.offset[c];
        }
    }
    scaling.used = true;
}

/// Merges `next` into the last stage; true on success.
bool give_to_last(std::vector<Stage>& stages, const Stage& next) {
    const auto* diagonal = std::get_if<DiagonalStage>(&next);
    Scaling* after = stages.empty() ? nullptr : scaling_after(stages.back());
    if (!leaves_alpha(diagonal) || !after || after->used) {
        return false;
    }
    take_in(*diagonal, *after);
    return true;
}

/// Merges the last stage into `next`, if possible.
void take_from_last(std::vector<Stage>& stages, Stage& next) {
    const auto* diagonal = stages.empty() ? nullptr : std::get_if<DiagonalStage>(&stages.back());
    Scaling* before = scaling_before(next);
    if (leaves_alpha(diagonal) && before) {
        take_in(*diagonal, *before);
        stages.pop_back();
    }
}

} // namespace

std::vector<Stage> compile(const OpChain& chain) {
    std::vector<Stage> stages;
    stages.reserve(chain.size());
    for (const Op& op : chain) {
        Stage next = compile(op);
        if (give_to_last(stages, next)) {
            continue;
        }
        take_from_last(stages, next);
        stages.push_back(std::move(next));
    }
    return stages;
}

} // namespace pixel
