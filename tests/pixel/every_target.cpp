#include "every_target.h"

#include "pixel/vector_targets.h"
#include <hwy/highway.h>
#include <hwy/targets.h>

namespace pixel_test {

std::vector<std::int64_t> vector_targets() {
    return hwy::SupportedAndGeneratedTargets();
}

TargetGuard::TargetGuard(std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
}

TargetGuard::~TargetGuard() {
    hwy::SetSupportedTargetsForTest(0);
}

std::string target_name(const testing::TestParamInfo<std::int64_t>& info) {
    return hwy::TargetName(info.param);
}

} // namespace pixel_test
