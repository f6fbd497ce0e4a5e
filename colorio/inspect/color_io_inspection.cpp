#include "colorio/color_io_inspection.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "colorio/names/display_view_walk.h"
#include "colorio/names/published_names.h"
#include "colorio/ocio/config.h"
#include "colorio/ocio/file_rules.h"
#include "colorio/ocio/inspection.h"
#include "colorio/ocio/lookup_memo.h"
#include "colorio/ocio/processor.h"
#include "colorio/ocio/sanity_check.h"
#include "colorio/ocio/source_files.h"

namespace {

ocio::ConstConfigRcPtr get_active_config() {
    const ColorIOManager* manager = ColorIOManager::s_instance;
    return manager ? manager->get_config() : ocio::ConstConfigRcPtr();
}

CoreVector<CoreString> to_host(const std::vector<std::string>& texts) {
    CoreVector<CoreString> out;
    for (const std::string& text : texts)
        out.append(text.c_str());
    return out;
}

void take_entry(const ocio::EntryFacts& facts, ColorIOInspection::Entry& entry) {
    entry.name = facts.name.c_str();
    entry.family = facts.family.c_str();
    entry.description = facts.description.c_str();
    entry.encoding = facts.encoding.c_str();
    entry.aliases = to_host(facts.aliases);
    entry.categories = to_host(facts.categories);
    entry.is_active = facts.is_active;
}

ColorIOInspection::View make_view(const ocio::ConstConfigRcPtr& config, const std::string& display,
                                  const std::string& view) {
    ColorIOInspection::View out;
    out.display = display.c_str();
    out.name = view.c_str();
    if (!config)
        return out;
    const ocio::ViewFacts facts = ocio::describe_view(config, display, view);
    out.color_space = facts.color_space.c_str();
    out.family = facts.family.c_str();
    out.named_transform = facts.named_transform.c_str();
    out.view_transform = facts.view_transform.c_str();
    out.looks = facts.looks.c_str();
    out.description = facts.description.c_str();
    out.is_shared = facts.is_shared;
    return out;
}

using ViewName = std::pair<std::string, std::string>;

std::set<ViewName> get_shown_views(const ocio::ConstConfigRcPtr& config) {
    std::set<ViewName> shown;
    find_view(config, [&](const char* display, const char* view) {
        shown.emplace(display, view);
        return false;
    });
    return shown;
}

/// Runs `read` on the active config; an empty result when there is none or reading fails.
template <class Result, class Read>
Result read_config(Read&& read) {
    return at_boundary(Result(), [&] {
        Result found{};
        if (const ocio::ConstConfigRcPtr config = get_active_config())
            read(config, found);
        return found;
    });
}

} // namespace

struct ColorIOInspection::Batch::Memo : ocio::LookupMemo {
    using LookupMemo::LookupMemo;
};

ColorIOInspection::Batch::Batch() {
    at_boundary([this] {
        const ocio::ConstConfigRcPtr config = get_active_config();
        if (!config)
            return;
        memo = std::make_unique<Memo>(config);
        const auto published = ColorIOManager::s_instance->get_published_spaces();
        if (!published || !published->are_of(config))
            return;
        for (const auto& [name, space] : published->get_all())
            if (space)
                memo->add_space(name, space);
    });
}

ColorIOInspection::Batch::~Batch() = default;

CoreVector<ColorIOInspection::ColorSpace> ColorIOInspection::get_color_spaces() {
    using Spaces = CoreVector<ColorSpace>;
    return read_config<Spaces>([](const ocio::ConstConfigRcPtr& config, Spaces& spaces) {
        for (const ocio::SpaceFacts& facts : ocio::describe_spaces(config)) {
            ColorSpace space;
            take_entry(facts, space);
            space.is_display_referred = facts.is_display_referred;
            space.is_data = facts.is_data;
            space.interop_id = facts.interop_id.c_str();
            spaces.append(std::move(space));
        }
    });
}

CoreVector<ColorIOInspection::NamedTransform> ColorIOInspection::get_named_transforms() {
    using Transforms = CoreVector<NamedTransform>;
    return read_config<Transforms>([](const ocio::ConstConfigRcPtr& config, Transforms& transforms) {
        for (const ocio::NamedTransformFacts& facts : ocio::describe_named_transforms(config)) {
            NamedTransform transform;
            take_entry(facts, transform);
            transform.has_forward = facts.has_forward;
            transform.has_inverse = facts.has_inverse;
            transforms.append(std::move(transform));
        }
    });
}

CoreVector<CoreString> ColorIOInspection::get_looks() {
    return read_config<CoreVector<CoreString>>(
        [](const auto& config, auto& looks) { looks = to_host(ocio::list_looks(config)); });
}

CoreVector<CoreString> ColorIOInspection::get_view_transforms() {
    return read_config<CoreVector<CoreString>>([](const auto& config, auto& transforms) {
        transforms = to_host(ocio::list_view_transforms(config));
    });
}

bool ColorIOInspection::has_role(const CoreString& role) {
    return read_config<bool>([&](const auto& config, bool& found) {
        found = !ocio::get_role_color_space(config, role.get_data()).empty();
    });
}

CoreVector<CoreString> ColorIOInspection::get_source_files() {
    return read_config<CoreVector<CoreString>>([](const ocio::ConstConfigRcPtr& config, auto& files) {
        files = to_host(ocio::get_source_files(config));
    });
}

ColorIOInspection::View ColorIOInspection::get_view(const CoreString& display, const CoreString& view) {
    return at_boundary(View(),
                       [&] { return make_view(get_active_config(), display.get_data(), view.get_data()); });
}

CoreVector<ColorIOInspection::View> ColorIOInspection::get_hidden_views() {
    return read_config<CoreVector<View>>([](const ocio::ConstConfigRcPtr& config, CoreVector<View>& hidden) {
        const std::set<ViewName> shown = get_shown_views(config);
        for (const ocio::DisplayViews& display : ocio::every_display(config))
            for (const std::string& view : display.views)
                if (shown.count({display.name, view}) == 0)
                    hidden.append(make_view(config, display.name, view));
    });
}

ColorIOInspection::FileRule ColorIOInspection::find_file_rule(const CoreString& path) {
    return read_config<FileRule>([&](const ocio::ConstConfigRcPtr& config, FileRule& found) {
        const ocio::FileRule rule = ocio::find_file_rule(config, path.get_data());
        found.name = rule.name.c_str();
        found.color_space = rule.color_space.c_str();
        found.is_default = rule.is_default;
    });
}

bool ColorIOInspection::try_view_transform(const CoreString& name) {
    const ocio::ConstConfigRcPtr config = get_active_config();
    if (!config) {
        report(LOG_ERROR, diagnostics::Code::CONVERSION_IMPOSSIBLE, CoreString(), "no config is active");
        return false;
    }
    return at_boundary(false, [&] {
        ocio::try_view_transform(config, name.get_data());
        return true;
    });
}
