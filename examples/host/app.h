#pragma once

#include "host/of/of_app.h"
#include "host/of/of_object_factory.h"

/// The preferences as plain members: each change is stored, and then its event is raised.
class HOST_API ExampleApp : public OfApp {
public:
    /// Temporary folders are made in `folder`, which must be private to the user.
    explicit ExampleApp(const CoreString& folder) : folder(folder) {}

    template <class Value>
    void change(Value ExampleApp::*preference, const Value& value, const CoreString& event) {
        this->*preference = value;
        raise_event(event);
    }
    bool use_color_space_file = false;
    CoreString color_space_file_path, cdl_library_file_path, default_color_space_name = "linear";
    unsigned int use_color_space_by_extension_file = 0;
    CoreString color_space_by_extension_file_path;

    bool get_use_color_space_file() const override { return use_color_space_file; }
    const CoreString& get_color_space_file_path() const override { return color_space_file_path; }
    const CoreString& get_cdl_library_file_path() const override { return cdl_library_file_path; }
    const CoreString& get_default_color_space_name() const override { return default_color_space_name; }
    unsigned int get_use_color_space_by_extension_file() const override {
        return use_color_space_by_extension_file;
    }
    const CoreString& get_color_space_by_extension_file_path() const override {
        return color_space_by_extension_file_path;
    }
    OfObjectFactory& get_object_factory() override { return factory; }
    bool create_temp_folder(const CoreString& name, CoreString& path) override;

private:
    CoreString folder;
    OfObjectFactory factory;
};
