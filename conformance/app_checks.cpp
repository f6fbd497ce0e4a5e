#include <sys/stat.h>

#include <fstream>
#include <functional>

#include "conformance/app_fixture.h"
#include "conformance/check.h"
#include "conformance/recorded_calls.h"

namespace conformance {

namespace {

constexpr const char* FILE_USE = "EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED";
constexpr const char* FILE_PATH = "EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED";
constexpr const char* CDL_PATH = "EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED";
constexpr const char* DEFAULT_NAME = "EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED";
constexpr const char* MAPPING_PATH = "EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED";

struct Preference {
    const char* name;
    const char* event;
    std::function<std::string(const OfApp& app)> get;
    std::function<void(HostApp& host, const CoreString& value)> set;
};

const Preference TEXTS[] = {
    {"color_space_file_path", FILE_PATH,
     [](const OfApp& app) { return std::string(app.get_color_space_file_path().view()); },
     [](HostApp& host, const CoreString& value) { host.set_color_space_file_path(value); }},
    {"cdl_library_file_path", CDL_PATH,
     [](const OfApp& app) { return std::string(app.get_cdl_library_file_path().view()); },
     [](HostApp& host, const CoreString& value) { host.set_cdl_library_file_path(value); }},
    {"default_color_space_name", DEFAULT_NAME,
     [](const OfApp& app) { return std::string(app.get_default_color_space_name().view()); },
     [](HostApp& host, const CoreString& value) { host.set_default_color_space_name(value); }},
    {"color_space_by_extension_file_path", MAPPING_PATH,
     [](const OfApp& app) { return std::string(app.get_color_space_by_extension_file_path().view()); },
     [](HostApp& host, const CoreString& value) { host.set_color_space_by_extension_file_path(value); }},
};

/// Counts the events of one name and keeps what `read` returns during the last one.
class Follower : public EventObject {
public:
    Follower(OfApp& app, const char* event, std::function<std::string()> read)
        : app(app), read(std::move(read)) {
        connect(app, CoreString(event), &Follower::on_event, nullptr);
    }
    void on_event(AppBase& sender, const EventInfo&, OfObject*) {
        ++count;
        is_from_app = &sender == &app;
        seen = read();
    }
    unsigned int count = 0;
    bool is_from_app = false;
    std::string seen;

private:
    const EventObject& app;
    std::function<std::string()> read;
};

void expect_event(Findings& findings, const Follower& follower, const std::string& name, const char* value) {
    findings.expect(follower.count > 0, "the event of " + name + " is raised");
    if (follower.count > 0) {
        findings.expect(follower.is_from_app, "the application is the sender of the event of " + name);
        findings.expect_text(follower.seen, value, "what a handler reads from " + name);
    }
}

void check_texts(Findings& findings) {
    for (const Preference& preference : TEXTS) {
        AppFixture app;
        const Follower follower(app.get(), preference.event, [&] { return preference.get(app.get()); });
        preference.set(app.get_host(), CoreString("conformance value"));
        expect_event(findings, follower, preference.name, "conformance value");
    }
}

void check_switches(Findings& findings) {
    AppFixture app;
    const bool used = app.get().get_use_color_space_file();
    const Follower file(app.get(), FILE_USE,
                        [&] { return app.get().get_use_color_space_file() ? "on" : "off"; });
    app.get_host().set_use_color_space_file(!used);
    expect_event(findings, file, "use_color_space_file", used ? "off" : "on");

    const bool mapped = app.get().get_use_color_space_by_extension_file() != 0;
    const Follower mapping(app.get(), MAPPING_PATH,
                           [&] { return app.get().get_use_color_space_by_extension_file() ? "on" : "off"; });
    app.get_host().set_use_color_space_by_extension_file(mapped ? 0 : 1);
    expect_event(findings, mapping, "use_color_space_by_extension_file", mapped ? "off" : "on");
}

void check_temp_folder(Findings& findings) {
    AppFixture app;
    CoreString path, again;
    findings.expect(app.get().create_temp_folder(CoreString("conformance"), path), "the folder is created");
    struct stat status = {};
    findings.expect(stat(path.get_data(), &status) == 0 && S_ISDIR(status.st_mode),
                    "the path is that of a folder: '" + std::string(path.view()) + "'");
    findings.expect(!path.is_empty() && path.view().back() != '/', "the path has no '/' at its end");
    const std::string file = std::string(path.view()) + "/conformance.txt";
    findings.expect(static_cast<bool>(std::ofstream(file) << "kept" << std::flush),
                    "files can be written in it");
    findings.expect(app.get().create_temp_folder(CoreString("conformance"), again),
                    "the folder is found again");
    findings.expect_text(again.view(), path.view(), "the path of the folder that is asked for again");
    findings.expect(static_cast<bool>(std::ifstream(file)), "its files are kept");
    remove(file.c_str());
}

void check_object_factory(Findings& findings) {
    AppFixture app;
    findings.expect(&app.get().get_object_factory() == &app.get().get_object_factory(),
                    "get_object_factory returns the same factory each time");
}

} // namespace

Checks list_app_checks() {
    return {
        {"app.texts", "a path or name is stored, and then its event is raised by the application",
         "the module reloads the old config, CDL library or mapping file, or none", check_texts},
        {"app.switches", "a switch is stored, and then its event is raised by the application",
         "the config or mapping file stays in use when it is switched off", check_switches},
        {"app.temp-folder", "create_temp_folder makes a folder that keeps its files, and finds it again",
         "the built-in LUTs cannot be written, and the module does not start", check_temp_folder},
        {"app.object-factory", "the application has one factory of enumerations",
         "converters do not find the published names", check_object_factory},
    };
}

} // namespace conformance
