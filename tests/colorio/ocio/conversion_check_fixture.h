#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "colorio/ocio/color_space.h"
#include "colorio/ocio/processor.h"
#include "tests/colorio/ocio/test_configs.h"

namespace conversion_check {

inline const std::string ACCEPTED = "nothing thrown";
inline const std::string CYCLE = "the config contains a cycle: ";

inline ocio::TransformRcPtr shift() {
    const auto transform = ocio::create_CDL_transform();
    const float offset[] = {0.1f, 0.1f, 0.1f};
    ocio::set_offset(transform, offset);
    return transform;
}

inline ocio::TransformRcPtr conversion(const std::string& source, const std::string& destination) {
    const auto transform = ocio::library::ColorSpaceTransform::Create();
    transform->setSrc(source.c_str());
    transform->setDst(destination.c_str());
    return transform;
}

inline ocio::library::LookTransformRcPtr looks(const char* list) {
    const auto transform = ocio::library::LookTransform::Create();
    transform->setSrc("raw");
    transform->setDst("raw");
    transform->setLooks(list);
    return transform;
}

inline ocio::TransformRcPtr group(std::initializer_list<ocio::TransformRcPtr> members) {
    const auto transform = ocio::create_group_transform();
    for (const auto& member : members)
        ocio::push_back(transform, member);
    return transform;
}

/// A configuration with the reference space "raw", filled in by the tests.
class ConversionCheck : public testing::Test {
protected:
    ConversionCheck() : config_(ocio::create_config()) { space("raw", {}); }

    void space(const char* name, const ocio::ConstTransformRcPtr& to_reference,
               const ocio::ConstTransformRcPtr& from_reference = {}) {
        const auto made = test_configs::make_space(name, to_reference);
        if (from_reference)
            made->setTransform(from_reference, ocio::COLORSPACE_DIR_FROM_REFERENCE);
        ocio::add_color_space(config_, made);
    }

    void look(const char* name, const char* process_space, const ocio::ConstTransformRcPtr& transform,
              const ocio::ConstTransformRcPtr& inverse = {}) {
        const auto made = ocio::library::Look::Create();
        made->setName(name);
        made->setProcessSpace(process_space);
        made->setTransform(transform);
        if (inverse)
            made->setInverseTransform(inverse);
        config_->addLook(made);
    }

    std::string refusal(const char* source, const char* destination) {
        return test_configs::refusal_of([&] { ocio::get_processor(config_, source, destination); });
    }

    std::string refusal_of_view() {
        return test_configs::refusal_of([&] {
            ocio::get_processor(config_, ocio::DisplayTransform{"raw", "d", "v"});
        });
    }

    /// "s0" -> "s1" -> ... -> the last of `count` spaces, which shifts.
    void chain(int count) {
        for (int i = 0; i + 1 < count; ++i)
            space(("s" + std::to_string(i)).c_str(), conversion("s" + std::to_string(i + 1), "raw"));
        space(("s" + std::to_string(count - 1)).c_str(), shift());
    }

    ocio::ConfigRcPtr config_;
};

} // namespace conversion_check
