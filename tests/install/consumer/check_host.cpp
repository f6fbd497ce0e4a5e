// The conformance kit with the standalone host.
#include "conformance/host_app.h"
#include "standalone/standalone_app.h"

namespace {

class Host : public conformance::HostApp {
public:
    OfApp& get_app() override { return app; }
    void set_use_color_space_file(bool use) override { app.set_use_color_space_file(use); }
    void set_color_space_file_path(const CoreString& path) override { app.set_color_space_file_path(path); }
    void set_cdl_library_file_path(const CoreString& path) override { app.set_cdl_library_file_path(path); }
    void set_default_color_space_name(const CoreString& name) override {
        app.set_default_color_space_name(name);
    }
    void set_use_color_space_by_extension_file(unsigned int use) override {
        app.set_use_color_space_by_extension_file(use);
    }
    void set_color_space_by_extension_file_path(const CoreString& path) override {
        app.set_color_space_by_extension_file_path(path);
    }
    std::string get_mapping_text() const override {
        return "Photo: {extensions: 'jpg,png', color_space: sRGB}\nFilm: {extensions: dpx, color_space: "
               "Cineon}\n";
    }

private:
    StandaloneApp app;
};

} // namespace

std::unique_ptr<conformance::HostApp> conformance::make_host_app() {
    return std::make_unique<Host>();
}
