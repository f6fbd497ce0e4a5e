#include "colorio/color_io.h"
#include "colorio/color_io_auto_detection.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/module_boundary.h"
#include "host/core/core_set.h"
#include "host/event/event_ids.h"
#include "host/of/of_app.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "host/sys/sys_filesystem.h"

namespace {

constexpr char MAPPING_FILE[] = "Color Management: color space mapping configuration file '";
constexpr char EXTENSION_ENTRY[] = "extension";

bool color_space_exists(const CoreString& color_space) {
    return ColorIOManager::get_instance() && ColorIO::color_space_exists(color_space);
}

} // namespace

bool ColorIOAutoDetection::build_from_file(const CoreString& path) {
    file_table_loaded = false;
    file_table_loaded = at_boundary(false, [&] { return add_rows_of_file(path); });
    return file_table_loaded;
}

bool ColorIOAutoDetection::add_rows_of_file(const CoreString& path) {
    if (!app || path.is_empty())
        return false;
    if (!SysFilesystem::file_exists(path)) {
        report_unreadable(LOG_WARNING, diagnostics::Code::FILE_MISSING, CoreString(), path);
        return false;
    }
    ParserFile file;
    if (!file.read(path, "", "")) {
        if (!file.get_error().is_empty())
            log_message(LOG_INFO, "Color Management: ", file.get_error(), "\n");
        log_message(LOG_WARNING, MAPPING_FILE, path, "' has errors and can't be read.\n");
        report_file(LOG_WARNING, diagnostics::Code::MAPPING_MALFORMED, path,
                    diagnostics::flatten(file.get_error().get_data()));
        return false;
    }
    return read_mapping(path, file.get_root());
}

bool ColorIOAutoDetection::read_mapping(const CoreString& path, const ParserGroup& root) {
    bool fallback_seen = false;
    for (unsigned int i = 0; i < root.get_entry_count(); ++i) {
        const ParserEntry& entry = *root.get_entry(i);
        const CoreString& name = entry.get_name();
        if (entry.get_value_count() == 0) {
            log_message(LOG_WARNING, MAPPING_FILE, path, "' has an entry without value: '", name, ".\n");
            report_file(LOG_WARNING, diagnostics::Code::MAPPING_ENTRY_INVALID, path,
                        "the entry '" + std::string(name.view()) + "' has no value", name);
            return false;
        }
        if (!entry.is_group())
            continue;
        const ParserGroup& group = *entry.get_group(0);
        const ParserEntry* extensions = group.find_entry("extensions");
        const ParserEntry* color_space = group.find_entry("color_space");
        if (extensions && color_space) {
            // The fallback stays the last row.
            const unsigned int index = file_table.get_count() - (fallback_seen ? 1 : 0);
            file_table.insert(index, name, extensions->get_string(0), color_space->get_string(0));
        }
        fallback_seen = fallback_seen || name == FALLBACK_CATEGORY;
    }
    if (!fallback_seen)
        file_table.insert(file_table.get_count(), FALLBACK_CATEGORY, FALLBACK_CATEGORY_EXTENSIONS,
                          app->get_default_color_space_name());
    return true;
}

void ColorIOAutoDetection::set_table_in_force(bool from_file) {
    current_table = from_file ? &file_table : &builtin_table;
    using_file_table = from_file;
}

void ColorIOAutoDetection::use_file_config(bool use) {
    if (!app)
        return;
    at_boundary([&] {
        if (use) {
            const CoreString& path = app->get_color_space_by_extension_file_path();
            const bool held = file_table_loaded && path.is_empty();
            if (!held && !build_from_file(path)) {
                if (!path.is_empty())
                    log_message(LOG_WARNING,
                                "Color Management: failed to load color space mapping configuration file '",
                                path, "'. Defaulting to Tavelion built-in associations.\n");
                set_table_in_force(false);
                return;
            }
        }
        set_table_in_force(use);
        check_mappings();
        raise_module_event(EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED);
    });
}

bool ColorIOAutoDetection::check_mappings() const {
    if (!current_table) {
        log_message(LOG_ERROR,
                    "Color Management: file format / color space mapping configuration is empty.\n");
        return false;
    }
    return at_boundary(false, [&] { return !find_unknown_color_spaces(); });
}

bool ColorIOAutoDetection::find_unknown_color_spaces() const {
    unsigned int row_count = 0;
    CoreSet<CoreString> known;
    CoreVector<CoreString> unknown;
    for (const CoreString& color_space : current_table->color_spaces) {
        if (color_space_exists(color_space))
            continue;
        ++row_count;
        if (known.add(color_space))
            unknown.append(color_space);
    }
    if (row_count == 0)
        return false;
    log_message(LOG_WARNING, "Color Management: found ", unknown.get_count(),
                " unknown color space(s) assigned to ", row_count,
                " file format / color space mapping(s):\n");
    for (const CoreString& color_space : unknown)
        log_message(LOG_WARNING, "'", color_space, "'\n");
    const CoreString file =
        using_file_table && app ? app->get_color_space_by_extension_file_path() : CoreString();
    for (const CoreString& color_space : unknown)
        report_file(LOG_WARNING, diagnostics::Code::MAPPING_COLOR_SPACE_UNKNOWN, file,
                    "the color space '" + std::string(color_space.view()) +
                        "' of a format association does not exist",
                    color_space);
    log_message(LOG_WARNING,
                "Please update the file format / color space mappings or set an OCIO configuration that "
                "defines the missing color spaces and restart Tavelion.\n");
    return true;
}

bool ColorIOAutoDetection::save_config(ParserEntry* entry) {
    if (!entry || builtin_table.get_count() == 0)
        return false;
    return at_boundary(false, [&] {
        ParserGroup& group = entry->is_group() ? *entry->get_group(0) : *entry->add_group(nullptr);
        for (unsigned int row = 0; row < builtin_table.get_count(); ++row) {
            ParserEntry& category = *group.add_entry(EXTENSION_ENTRY, 0, 0);
            category.add_string(builtin_table.file_formats[row]);
            category.add_string(builtin_table.extensions[row]);
            category.add_string(builtin_table.color_spaces[row]);
        }
        return true;
    });
}

bool ColorIOAutoDetection::load_config(ParserEntry* entry) {
    return at_boundary(false, [&] {
        if (!entry || entry->get_value_count() == 0 || !entry->is_group())
            return false;
        const ParserGroup& group = *entry->get_group(0);
        for (unsigned int i = 0; i < group.get_entry_count(); ++i)
            read_record(*group.get_entry(i));
        return true;
    });
}

void ColorIOAutoDetection::read_record(const ParserEntry& category) {
    if (category.get_name() != EXTENSION_ENTRY || category.get_value_count() == 0 ||
        !category.is_value_string(0))
        return;
    const CoreString file_format = category.get_string(0);
    const CoreString extensions = category.get_string(1);
    const CoreString color_space = category.get_string(2);
    const unsigned int row = builtin_table.find(file_format);
    if (row == NOT_FOUND) {
        builtin_table.insert_before_last(file_format, extensions, color_space);
    } else {
        set_extension_from_file_format(row, extensions);
        set_default_color_space_from_file_format(row, color_space);
    }
}
