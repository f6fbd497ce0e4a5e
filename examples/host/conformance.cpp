// How preferences of this host change, for the conformance kit.
#include <stdlib.h>

#include <filesystem>

#include "app.h"
#include "conformance/host_app.h"
#include "host/event/event_ids.h"

namespace {

class ExampleHost : public conformance::HostApp {
public:
    ExampleHost() : app(make_folder()) {}
    ~ExampleHost() override { std::filesystem::remove_all(folder); }
    OfApp& get_app() override { return app; }
    void set_use_color_space_file(bool use) override {
        app.change(&ExampleApp::use_color_space_file, use, EVT_ID_APPLICATION_COLOR_SPACE_FILE_USE_CHANGED);
    }
    void set_color_space_file_path(const CoreString& path) override {
        app.change(&ExampleApp::color_space_file_path, path,
                   EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    }
    void set_cdl_library_file_path(const CoreString& path) override {
        app.change(&ExampleApp::cdl_library_file_path, path, EVT_ID_APPLICATION_CDL_FILE_PATH_CHANGED);
    }
    void set_default_color_space_name(const CoreString& name) override {
        app.change(&ExampleApp::default_color_space_name, name, EVT_ID_APPLICATION_COLOR_SPACE_NAME_CHANGED);
    }
    void set_use_color_space_by_extension_file(unsigned int use) override {
        app.change(&ExampleApp::use_color_space_by_extension_file, use,
                   EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    }
    void set_color_space_by_extension_file_path(const CoreString& path) override {
        app.change(&ExampleApp::color_space_by_extension_file_path, path,
                   EVT_ID_APPLICATION_COLOR_SPACE_BY_EXT_FILE_PATH_CHANGED);
    }
    std::string get_mapping_text() const override {
        return "[Photo]\nextensions=jpg,png\ncolor_space=sRGB\n\n[Film]\nextensions=dpx\ncolor_space="
               "Cineon\n";
    }

private:
    CoreString make_folder() {
        folder = (std::filesystem::temp_directory_path() / "example_host_XXXXXX").string();
        return CoreString(mkdtemp(folder.data()));
    }
    std::string folder;
    ExampleApp app;
};

} // namespace

std::unique_ptr<conformance::HostApp> conformance::make_host_app() {
    return std::make_unique<ExampleHost>();
}
