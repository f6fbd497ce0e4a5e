#include "workflow/offered_names.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <sys/stat.h>
#include <unistd.h>

#include "colorio/color_io_evaluation.h"
#include "diagnostics/failure.h"
#include "host/of/of_app.h"
#include "standalone/standalone_app.h"
#include "standalone/sys/user_folders.h"
#include "workflow/custom_spaces.h"
#include "workflow/format_associations.h"
#include "workflow/log_forwarding.h"
#include "workflow/published_cdls.h"
#include "workflow/published_names.h"
#include "workflow/session.h"
#include "workflow/text_file.h"

namespace workflow {

namespace {

using Names = std::vector<OfferedName>;

constexpr char SEPARATOR = '\t';
constexpr char GROUP[] = "qb_colorio";
constexpr char FOLDER[] = "completion";

Names collect(const Session& session) {
    Names names;
    for (const PublishedSpace& space : get_published_spaces()) {
        names.push_back({OfferedName::COLOR_SPACE, space.name, "", space.family});
        if (space.label != space.name)
            names.push_back({OfferedName::COLOR_SPACE, space.label, "", "with its family"});
    }
    for (const PublishedRole& role : get_published_roles())
        if (role.is_in_config)
            names.push_back({OfferedName::ROLE, role.role, "", "role: " + role.color_space});
    std::set<std::string> displays;
    for (const PublishedView& view : get_published_views()) {
        names.push_back({OfferedName::VIEW_LABEL, view.label, "", view.description});
        names.push_back({OfferedName::VIEW, view.view, view.display, "of the display " + view.display});
        if (displays.insert(view.display).second)
            names.push_back({OfferedName::DISPLAY, view.display, "", ""});
    }
    for (const std::string& look : get_published_looks())
        names.push_back({OfferedName::LOOK, look, "", ""});
    for (const DescribedTransform& transform : get_named_transforms())
        names.push_back({OfferedName::NAMED_TRANSFORM, transform.name, "", transform.family});
    for (const PublishedCdl& cdl : get_published_cdls(session))
        names.push_back({OfferedName::CDL, cdl.correction.id, "", describe_source(cdl)});
    for (const FormatAssociation& format : get_format_associations())
        names.push_back({OfferedName::FORMAT, format.category, "", format.color_space});
    for (const auto& space : get_custom_spaces())
        if (!space.is_builtin)
            names.push_back({OfferedName::CUSTOM_SPACE, space.name.get_data(), "", describe_origin(space)});
    for (OfferedName& name : names)
        name.help = diagnostics::flatten(name.help);
    return names;
}

/// Names with these characters would break a line of the cache; shells could not take them either.
bool is_one_line(const std::string& text) {
    return text.find_first_of("\t\n") == std::string::npos;
}

std::string format_names(const Names& names) {
    std::string text;
    for (const OfferedName& name : names)
        text +=
            fmt::format("{}\t{}\t{}\t{}\n", static_cast<int>(name.kind), name.name, name.display, name.help);
    return text;
}

Names parse_names(const std::string& text) {
    Names names;
    std::istringstream lines(text);
    for (std::string kind, name, display, help;
         std::getline(lines, kind, SEPARATOR) && std::getline(lines, name, SEPARATOR) &&
         std::getline(lines, display, SEPARATOR) && std::getline(lines, help);)
        names.push_back({static_cast<OfferedName::Kind>(std::atoi(kind.c_str())), name, display, help});
    return names;
}

/// What changes when the file does; its path alone if it cannot be examined.
std::string describe_state(const std::string& path) {
    struct stat status;
    if (path.empty() || stat(path.c_str(), &status) != 0)
        return path;
    return fmt::format("{} {}.{:09} {} {}", path, status.st_mtim.tv_sec, status.st_mtim.tv_nsec,
                       status.st_size, status.st_ino);
}

/// The variables that OpenColorIO follows.
std::string describe_environment() {
    std::vector<std::string> variables;
    for (char** variable = environ; variable && *variable; ++variable)
        if (std::string_view(*variable).substr(0, 4) == "OCIO")
            variables.emplace_back(*variable);
    std::sort(variables.begin(), variables.end());
    return fmt::format("{}", fmt::join(variables, ","));
}

/// A file of names, and what they were made of.
class NameCache {
public:
    explicit NameCache(const SessionOptions& options) {
        const LogForwarding silence({});
        const UserPreferences preferences(options, PreferenceUse::READ);
        const StandaloneApp& app = preferences.get_app();
        source = find_config_source(options.config_path, app);
        const std::string config = source.path.empty() ? "" : absolute(source.path);
        const std::string subject =
            fmt::format("{}|{}|{}", config, preferences.get_path(), fmt::join(options.context, ","));
        state = diagnostics::flatten(fmt::format(
            "{}|{}|{}|{}|{}|{}|{}", ColorIOEvaluation::get_library_version(), subject, describe_state(config),
            describe_state(preferences.get_path()),
            describe_state(app.get_cdl_library_file_path().get_data()),
            describe_state(app.get_color_space_by_extension_file_path().get_data()), describe_environment()));
        const std::string base = get_user_cache_folder();
        if (is_file() && !base.empty() && make_private_folder(base, GROUP, FOLDER).empty())
            path = fmt::format("{}/{}/{}/{:016x}", base, GROUP, FOLDER, std::hash<std::string>()(subject));
    }

    /// False when there are none, or others.
    bool load(Names& names) const {
        std::ifstream file(path, std::ios::binary);
        std::string line;
        if (path.empty() || !std::getline(file, line) || line != state)
            return false;
        names = parse_names({std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()});
        return true;
    }

    /// A failure is none: the names are listed again the next time.
    void save(const Names& names) const {
        if (path.empty())
            return;
        try {
            write_text_file(path, state + "\n" + format_names(names));
        } catch (const diagnostics::Failure&) {
        }
    }

private:
    static std::string absolute(const std::string& path) {
        std::error_code error;
        const std::string found = std::filesystem::absolute(path, error).string();
        return error ? path : found;
    }
    /// The built-in config loads in no time.
    bool is_file() const { return source.kind != ConfigSource::BUILTIN; }

    ConfigSource source;
    std::string state;
    std::string path; ///< Empty without a cache.
};

} // namespace

Names list_offered_names(const SessionOptions& options) {
    Names names;
    try {
        const NameCache cache(options);
        if (cache.load(names))
            return names;
        names = collect(Session(options));
        names.erase(
            std::remove_if(names.begin(), names.end(),
                           [](const OfferedName& name) { return !is_one_line(name.name + name.display); }),
            names.end());
        cache.save(names);
    } catch (const std::exception&) {
        names.clear();
    }
    return names;
}

} // namespace workflow
