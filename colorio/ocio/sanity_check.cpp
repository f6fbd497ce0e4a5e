#include "colorio/ocio/sanity_check.h"

#include <algorithm>
#include <cctype>
#include <new>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "colorio/ocio/config.h"
#include "colorio/ocio/config_location.h"
#include "colorio/ocio/error.h"
#include "colorio/ocio/failure_cause.h"
#include "colorio/ocio/guarded.h"
#include "colorio/ocio/look_list.h"

namespace ocio {

namespace {

/// Names compare without case throughout a config.
class NameSet {
public:
    void insert(std::string_view name) { names_.insert(lower_case(name)); }
    bool contains(std::string_view name) const { return names_.count(lower_case(name)) > 0; }

private:
    static std::string lower_case(std::string_view name) {
        std::string lower(name);
        std::transform(lower.begin(), lower.end(), lower.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return lower;
    }

    std::unordered_set<std::string> names_;
};

std::string quoted(std::string_view name) {
    return "'" + std::string(name) + "'";
}

[[noreturn]] void refuse(const std::string& reason, std::string_view subject = {}) {
    throw_error(diagnostics::Code::CONFIG_INVALID, "the config is invalid: " + reason, std::string(subject));
}

/// The first color space or look that a role, a look or a view names and the config lacks; empty for none.
std::string find_missing_name(const ConstConfigRcPtr& config) {
    for (const Role& role : known_roles(config))
        if (!knows_space(config, role.color_space))
            return role.color_space;
    for (int i = 0; i < config->getNumLooks(); ++i) {
        const std::string space = config->getLook(config->getLookNameByIndex(i))->getProcessSpace();
        if (!space.empty() && !knows_space(config, space))
            return space;
    }
    for (const DisplayViews& display : every_display(config))
        for (const std::string& view : display.views)
            for (const LookStep& look : all_look_steps(get_view_looks(config, display.name, view)))
                if (!config->getLook(look.name.c_str()))
                    return look.name;
    return {};
}

/// Whether no color space and no look of the config has the name.
bool is_unknown(const ConstConfigRcPtr& config, const std::string& name) {
    return !knows_space(config, name) && !config->getLook(name.c_str());
}

/// Throws the exception being handled, of checking the config of the file at `path`, with its cause.
[[noreturn]] void rethrow_refusal(const ConstConfigRcPtr& config, const std::string& path) {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const Error& error) {
        diagnostics::Diagnostic cause = error.get_cause();
        if (cause.file.empty())
            cause.file = path;
        if (is_unknown(config, cause.subject))
            locate_in_config(cause);
        throw Error(std::move(cause), error.what());
    } catch (const std::exception& exception) {
        diagnostics::Diagnostic cause = diagnostics::make_file_error(
            diagnostics::Code::CONFIG_INVALID, diagnostics::flatten(exception.what()), path);
        cause.subject = find_missing_name(config);
        locate_in_config(cause);
        throw Error(std::move(cause), exception.what());
    }
}

/// The rules by which OpenColorIO 1.x accepts a config. The check of 2.x refuses more, and so configs in
/// daily use: an active display that does not exist, a file transform without a search path, a negative CDL
/// value, an unknown variable, a transform that refers to an unknown color space. OpenColorIO itself checks,
/// when they are added, that names are not empty, and that no color space has the name of another one or of a
/// role.
class VersionOneCheck {
public:
    VersionOneCheck(const ConstConfigRcPtr& config, KnownViews known) : config_(config), known_(known) {
        if (known == KnownViews::NOTHING)
            own_names_ = list_own_names(config);
        for (int i = 0; i < get_num_color_spaces(config); ++i)
            spaces_.insert(get_color_space_name_by_index(config, i));
        for (int i = 0; i < config->getNumLooks(); ++i)
            looks_.insert(config->getLookNameByIndex(i));
    }

    void run() const {
        check_roles();
        check_displays();
        check_looks();
    }

private:
    void check_roles() const {
        for (const Role& role : known_roles(config_))
            require_space(role.color_space, role.name, [&] { return "role " + quoted(role.name); });
    }

    void check_displays() const {
        const std::vector<DisplayViews> displays = every_display(config_);
        if (displays.empty())
            refuse("it has no displays");
        for (const DisplayViews& display : displays) {
            if (display.views.empty())
                refuse("display " + quoted(display.name) + " has no views", display.name);
            for (const std::string& view : display.views)
                check_view(display.name, view);
        }
    }

    void check_view(const std::string& display, const std::string& view) const {
        const auto owner = [&] { return "view " + quoted(view) + " of display " + quoted(display); };
        if (known_ == KnownViews::SHOW_SPACES_OF_THEIR_NAMES)
            return require_space(view, view, owner);
        require_space(get_display_color_space_name(config_, display.c_str(), view.c_str(), own_names_), view,
                      owner);
        for (const LookStep& look : all_look_steps(get_view_looks(config_, display, view)))
            if (!looks_.contains(look.name))
                refuse(owner() + " refers to an unknown look, " + quoted(look.name), look.name);
    }

    void check_looks() const {
        for (int i = 0; i < config_->getNumLooks(); ++i) {
            const char* name = config_->getLookNameByIndex(i);
            require_space(config_->getLook(name)->getProcessSpace(), name,
                          [&] { return "look " + quoted(name); });
        }
    }

    /// A role is not accepted as a color space here. `describe_owner` is called only for an error message,
    /// since every start runs this check and errors are rare.
    template <class DescribeOwner>
    void require_space(std::string_view name, std::string_view owner,
                       const DescribeOwner& describe_owner) const {
        if (name.empty())
            refuse(describe_owner() + " names no color space", owner);
        if (!spaces_.contains(name))
            refuse(describe_owner() + " refers to an unknown color space, " + quoted(name), name);
    }

    const ConstConfigRcPtr& config_;
    const KnownViews known_;
    std::unordered_set<std::string> own_names_;
    NameSet spaces_;
    NameSet looks_;
};

} // namespace

void sanity_check(const ConstConfigRcPtr& config, KnownViews known, const std::string& path) {
    guarded([&] {
        try {
            if (get_major_version(config) == 1)
                VersionOneCheck(config, known).run();
            check_by_library(config);
        } catch (...) {
            rethrow_refusal(config, path);
        }
    });
}

} // namespace ocio
