#include "colorio/color_io_auto_detection.h"

#include <iterator>
#include <string>
#include <utility>

#include "colorio/color_io.h"
#include "colorio/color_io_constants.h"
#include "colorio/color_io_manager.h"
#include "colorio/facade/color_io_log.h"
#include "colorio/facade/make_room.h"
#include "colorio/facade/module_boundary.h"

namespace {

struct BuiltinCategory {
    const char* file_format;
    const char* extensions;
    const CoreStringView& color_space;
};

const BuiltinCategory BUILTIN_CATEGORIES[] = {
    {"Open EXR", "exr, sxr", ColorIOManager::BUILTIN_LINEAR},
    {"Jpeg", "jpg, jpeg", ColorIOManager::BUILTIN_SRGB},
    {"Bitmap", "bmp", ColorIOManager::BUILTIN_SRGB},
    {"Targa", "tga", ColorIOManager::BUILTIN_SRGB},
    {"Png", "png", ColorIOManager::BUILTIN_SRGB},
    {"Tiff", "tif, tiff", ColorIOManager::BUILTIN_SRGB},
    {"Tx", "tx, tex", ColorIOManager::BUILTIN_LINEAR},
    {"HDR", "hdr", ColorIOManager::BUILTIN_LINEAR},
    {FALLBACK_CATEGORY, FALLBACK_CATEGORY_EXTENSIONS, ColorIOManager::BUILTIN_SRGB},
};

CoreString get_builtin_label(const CoreStringView& name) {
    return CoreString(ColorIOManager::BUILTIN_FAMILY) + ColorIOManager::FAMILY_SEPARATOR + name;
}

CoreString get_full_name(const CoreString& color_space) {
    ColorIO::get_instance();
    return ColorIOManager::get_instance() ? ColorIO::get_full_color_space_name(color_space) : color_space;
}

bool lists_extension(const CoreString& extensions, const CoreString& extension) {
    for (const CoreString& token : extensions.split(','))
        if (token == extension)
            return true;
    return false;
}

void report_unknown_format(const CoreString& file_format) {
    report(LOG_ERROR, diagnostics::Code::FORMAT_UNKNOWN, file_format,
           "no category '" + std::string(file_format.view()) + "'");
}

/// Reports a call with the number of a category that does not exist.
void report_missing_row(CoreLogLevel level, unsigned int index) {
    report(level, diagnostics::Code::FORMAT_UNKNOWN, CoreString(),
           "no category with the number " + std::to_string(index));
}

} // namespace

unsigned int ColorIOAutoDetection::CategoryTable::find(const CoreString& file_format) const {
    for (unsigned int row = 0; row < get_count(); ++row)
        if (file_formats[row] == file_format)
            return row;
    return NOT_FOUND;
}

void ColorIOAutoDetection::CategoryTable::insert(unsigned int index, CoreString file_format,
                                                 CoreString extension_list, CoreString color_space) {
    for (CoreVector<CoreString>* column : {&file_formats, &extensions, &color_spaces})
        make_room(*column);
    file_formats.insert(index, std::move(file_format));
    extensions.insert(index, std::move(extension_list));
    color_spaces.insert(index, std::move(color_space));
}

void ColorIOAutoDetection::CategoryTable::insert_before_last(CoreString file_format,
                                                             CoreString extension_list,
                                                             CoreString color_space) {
    insert(get_count() - 1, std::move(file_format), std::move(extension_list), std::move(color_space));
}

void ColorIOAutoDetection::CategoryTable::remove(unsigned int index) {
    for (CoreVector<CoreString>* column : {&file_formats, &extensions, &color_spaces}) {
        if (index < column->get_count())
            column->remove(index);
        else
            column->remove_last();
    }
}

ColorIOAutoDetection::ColorIOAutoDetection(OfApp* app) : app(app), current_table(&builtin_table) {
    add_builtin_rows();
}

ColorIOAutoDetection::~ColorIOAutoDetection() = default;

bool ColorIOAutoDetection::static_init(OfApp* app) {
    at_boundary([&] {
        if (!s_instance)
            s_instance = new ColorIOAutoDetection(app);
    });
    return true;
}

ColorIOAutoDetection* ColorIOAutoDetection::get_instance() {
    return s_instance;
}

void ColorIOAutoDetection::destroy() {
    delete s_instance;
    s_instance = nullptr;
}

void ColorIOAutoDetection::init_default_color_spaces() {
    at_boundary([&] { add_builtin_rows(); });
}

void ColorIOAutoDetection::add_builtin_rows() {
    for (CoreVector<CoreString>* column :
         {&builtin_table.file_formats, &builtin_table.extensions, &builtin_table.color_spaces})
        column->reserve(builtin_table.get_count() + static_cast<unsigned int>(std::size(BUILTIN_CATEGORIES)));
    for (const BuiltinCategory& category : BUILTIN_CATEGORIES)
        builtin_table.insert(builtin_table.get_count(), category.file_format, category.extensions,
                             get_builtin_label(category.color_space));
}

unsigned int ColorIOAutoDetection::get_categories_count() const {
    return current_table ? current_table->get_count() : 0;
}

CoreString ColorIOAutoDetection::get_cell(Column column, unsigned int index) const {
    return at_boundary(CoreString(), [&] {
        return index < get_categories_count() ? (current_table->*column)[index] : CoreString();
    });
}

CoreString ColorIOAutoDetection::get_file_format(unsigned int index) const {
    return get_cell(&CategoryTable::file_formats, index);
}

CoreString ColorIOAutoDetection::get_extensions(unsigned int index) const {
    return get_cell(&CategoryTable::extensions, index);
}

CoreString ColorIOAutoDetection::get_color_space(unsigned int index) const {
    return get_cell(&CategoryTable::color_spaces, index);
}

CoreString ColorIOAutoDetection::get_extension_from_file_format(const CoreString& file_format) const {
    return at_boundary(CoreString(), [&] {
        const unsigned int row = current_table->find(file_format);
        if (row != NOT_FOUND)
            return current_table->extensions[row];
        log_message(LOG_ERROR, "Can't get extensions from category '", file_format,
                    "' because this category doesn't exist.\n");
        report_unknown_format(file_format);
        return CoreString();
    });
}

CoreString
ColorIOAutoDetection::get_default_color_space_from_file_format(const CoreString& file_format) const {
    return at_boundary(CoreString(), [&] { return find_color_space(file_format); });
}

CoreString ColorIOAutoDetection::find_color_space(const CoreString& file_format) const {
    const unsigned int row = current_table->find(file_format);
    if (row != NOT_FOUND)
        return current_table->color_spaces[row];
    log_message(LOG_ERROR, "Can't get color space from category '", file_format,
                "' because this category doesn't exist.\n");
    report_unknown_format(file_format);
    return get_builtin_label(ColorIOManager::BUILTIN_SRGB);
}

CoreString ColorIOAutoDetection::get_default_color_space_from_extension(const CoreString& extension) {
    return at_boundary(CoreString(), [&] {
        const CoreString fallback = find_color_space(FALLBACK_CATEGORY);
        const CoreString wanted = extension.get_lower_case();
        CoreString result = fallback;
        // A match that equals the fallback does not end the search: a later row may still override it.
        for (unsigned int row = 0; row < current_table->get_count() && result == fallback; ++row) {
            CoreString& extensions = current_table->extensions[row];
            extensions.replace(" ", "", true);
            if (lists_extension(extensions, wanted))
                result = current_table->color_spaces[row];
        }
        return result;
    });
}

void ColorIOAutoDetection::add_file_format(const CoreString& file_format, const CoreString& extensions,
                                           const CoreString& color_space) {
    at_boundary([&] { builtin_table.insert_before_last(file_format, extensions, color_space); });
}

void ColorIOAutoDetection::remove_file_format(unsigned int index) {
    if (index != NOT_FOUND)
        builtin_table.remove(index);
}

void ColorIOAutoDetection::set_file_format(unsigned int index, const CoreString& name) {
    at_boundary([&] {
        if (index < builtin_table.get_count()) {
            builtin_table.file_formats[index] = name;
            return;
        }
        log_message(LOG_WARNING, "Can not find the category to rename. \n");
        report_missing_row(LOG_WARNING, index);
    });
}

void ColorIOAutoDetection::set_extension_from_file_format(unsigned int index, const CoreString& extensions) {
    at_boundary([&] {
        if (index < builtin_table.get_count()) {
            builtin_table.extensions[index] = extensions;
            return;
        }
        if (index == NOT_FOUND)
            log_message(LOG_ERROR, "Can't set extensions from category: can't find the category.\n");
        report_missing_row(LOG_ERROR, index);
    });
}

void ColorIOAutoDetection::set_default_color_space_from_file_format(unsigned int index,
                                                                    const CoreString& color_space) {
    at_boundary([&] {
        const CoreString full_name = get_full_name(color_space);
        if (index < builtin_table.get_count()) {
            builtin_table.color_spaces[index] = full_name;
            return;
        }
        if (index == NOT_FOUND)
            log_message(LOG_ERROR, "Can't set color space from category: can't find the category.\n");
        report_missing_row(LOG_ERROR, index);
    });
}
