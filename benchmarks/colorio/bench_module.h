#pragma once

#include <filesystem>
#include <string>

#include "host/of/of_app.h"
#include "host/of/of_object_factory.h"

/// An application that keeps everything in one temporary folder.
class BenchApp : public OfApp {
public:
    /// Also silences the log, since building messages is not measured.
    explicit BenchApp(std::string folder);

    bool get_use_color_space_file() const override { return !config_path.is_empty(); }
    const CoreString& get_color_space_file_path() const override { return config_path; }
    const CoreString& get_cdl_library_file_path() const override { return cdl_path; }
    const CoreString& get_default_color_space_name() const override { return default_space; }
    unsigned int get_use_color_space_by_extension_file() const override { return 0; }
    const CoreString& get_color_space_by_extension_file_path() const override { return mapping_path; }
    OfObjectFactory& get_object_factory() override { return factory; }
    bool create_temp_folder(const CoreString& name, CoreString& path) override {
        if (name != created_name) { // The module asks four times; what the host does for it is not measured.
            created = (folder + "/" + name.get_data()).c_str();
            std::filesystem::create_directories(created.get_data());
            created_name = name;
        }
        path = created;
        return true;
    }

    CoreString config_path;
    CoreString cdl_path;

private:
    std::string folder;
    CoreString created_name;
    CoreString created;
    CoreString default_space{"linear"};
    CoreString mapping_path;
    OfObjectFactory factory;
};

/// A folder below the system's temporary one that goes away with the object.
class BenchFolder {
public:
    BenchFolder();
    ~BenchFolder();
    const std::string& get_path() const { return path; }
    std::string write(const std::string& name, const std::string& text) const;

private:
    std::string path;
};

/// Removes every singleton of the module that can be removed.
void stop_module();
