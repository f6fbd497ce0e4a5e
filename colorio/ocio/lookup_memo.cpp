#include "colorio/ocio/lookup_memo.h"

#include <utility>

namespace ocio {

namespace {

thread_local LookupMemo* latest = nullptr;

} // namespace

LookupMemo::LookupMemo(ConstConfigRcPtr config) : config_(std::move(config)), before_(latest) {
    latest = this;
}

LookupMemo::~LookupMemo() {
    latest = before_;
}

LookupMemo* LookupMemo::find(const ConstConfigRcPtr& config) {
    return latest && latest->config_ == config ? latest : nullptr;
}

ConstColorSpaceRcPtr LookupMemo::find_space(const std::string& name) {
    const auto known = spaces_.find(name);
    if (known != spaces_.end())
        return known->second;
    return spaces_.emplace(name, config_->getColorSpace(name.c_str())).first->second;
}

std::shared_ptr<const Dependencies> LookupMemo::dependencies_of(const GraphNode& node,
                                                                const std::function<Dependencies()>& find) {
    std::shared_ptr<const Dependencies>& known = dependencies_[key_of(node)];
    if (!known)
        known = std::make_shared<const Dependencies>(find());
    return known;
}

ConstColorSpaceRcPtr find_space(const ConstConfigRcPtr& config, const std::string& name) {
    LookupMemo* const memo = LookupMemo::find(config);
    return memo ? memo->find_space(name) : config->getColorSpace(name.c_str());
}

} // namespace ocio
