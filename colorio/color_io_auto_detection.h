#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

class OfApp;
class ParserEntry;
class ParserGroup;

/// Answers which color space an image of a given file extension is in. Rows of two tables, the built-in one
/// and the one read from a mapping file, each give a format's name, its extensions and its color space; one
/// of them is in force. Look-ups read the table in force, edits change the built-in one. A look-up may tidy
/// the stored extensions, so it counts as a writer. Main thread only. Failures, memory that ran short
/// included, are logged and answered with false or an empty string; only constructing throws then.
class COLORIO_API ColorIOAutoDetection {
public:
    static ColorIOAutoDetection* s_instance;

    /// `app` may be null: then no mapping file is read. Not owned.
    explicit ColorIOAutoDetection(OfApp* app);
    ~ColorIOAutoDetection();
    ColorIOAutoDetection(const ColorIOAutoDetection&) = delete;
    ColorIOAutoDetection& operator=(const ColorIOAutoDetection&) = delete;

    static bool static_init(OfApp* app);
    static ColorIOAutoDetection* get_instance();
    static void destroy();

    /// Appends the nine built-in rows to the built-in table.
    void init_default_color_spaces();

    unsigned int get_categories_count() const;
    // A row of the table in force by its position: rows may repeat a format's name, of which the look-ups by
    // name see the first alone. Past the end the null string.

    CoreString get_file_format(unsigned int index) const;
    CoreString get_extensions(unsigned int index) const;
    CoreString get_color_space(unsigned int index) const;

    CoreString get_extension_from_file_format(const CoreString& file_format) const;
    CoreString get_default_color_space_from_file_format(const CoreString& file_format) const;
    /// Color space of the first row that lists `extension` (any case); the "default" row's when none does.
    CoreString get_default_color_space_from_extension(const CoreString& extension);

    /// Inserts a row in front of the last one.
    void add_file_format(const CoreString& file_format, const CoreString& extensions,
                         const CoreString& color_space);
    /// Removes a row; an index past the end drops the last one, NOT_FOUND none.
    void remove_file_format(unsigned int index);
    void set_file_format(unsigned int index, const CoreString& name);
    void set_extension_from_file_format(unsigned int index, const CoreString& extensions);
    void set_default_color_space_from_file_format(unsigned int index, const CoreString& color_space);

    /// Reads a mapping file into the file table, after the rows that it holds already.
    bool build_from_file(const CoreString& path);
    /// Puts the file table (read first if needed) or the built-in one in force, and tells listeners.
    void use_file_config(bool use);
    bool is_file_config() const { return using_file_table; }
    /// True when every color space of the table in force exists; otherwise logs those that do not.
    bool check_mappings() const;

    bool save_config(ParserEntry* entry);
    bool load_config(ParserEntry* entry);

private:
    struct CategoryTable {
        CoreVector<CoreString> file_formats;
        CoreVector<CoreString> extensions;
        CoreVector<CoreString> color_spaces;

        unsigned int get_count() const { return file_formats.get_count(); }
        unsigned int find(const CoreString& file_format) const;
        /// Inserts a whole row, or throws and leaves the table as it was.
        void insert(unsigned int index, CoreString file_format, CoreString extension_list,
                    CoreString color_space);
        void insert_before_last(CoreString file_format, CoreString extension_list, CoreString color_space);
        /// Removes a row; an index past the end drops the last one.
        void remove(unsigned int index);
    };

    using Column = CoreVector<CoreString> CategoryTable::*;

    void add_builtin_rows();
    CoreString get_cell(Column column, unsigned int index) const;
    CoreString find_color_space(const CoreString& file_format) const;
    bool add_rows_of_file(const CoreString& path);
    /// Logs the color spaces of the table in force that do not exist.
    bool find_unknown_color_spaces() const;
    void read_record(const ParserEntry& category);
    bool read_mapping(const CoreString& path, const ParserGroup& root);
    void set_table_in_force(bool from_file);

    OfApp* app;
    bool file_table_loaded = false;
    bool using_file_table = false;
    CategoryTable* current_table;
    CategoryTable builtin_table;
    CategoryTable file_table;
};
