#include "every_target.h"

#include "pixel/vector_targets.h"
#include <hwy/highway.h>
#include <hwy/targets.h>

namespace pixel_test {

std::vector<std::int64_t> vector_targets() {
    return hwy::SupportedAndGeneratedTargets();
}

bool is_scalar(std::int64_t target) {
    return target == HWY_SCALAR || target == HWY_EMU128;
}

TargetGuard::TargetGuard(std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
}

TargetGuard::~TargetGuard() {
    hwy::SetSupportedTargetsForTest(0);
}

std::string target_name(std::int64_t target) {
    return hwy::TargetName(target);
}

} // namespace pixel_test
