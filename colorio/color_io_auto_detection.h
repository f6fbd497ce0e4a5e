#pragma once

#include "colorio/color_io_export.h"
#include "host/core/core_string.h"
#include "host/core/core_vector.h"

class OfApp;
class ParserEntry;
class ParserGroup;

/// Finds the color space of an image by its file extension. There are two tables, the built-in one and the
/// one read from a mapping file; each row has a format's name, its extensions and its color space. One table
/// is active: lookups read it. Edits change the built-in one. A lookup by extension removes blanks from the
/// stored extensions, so it counts as a writer. Main thread only. Failures, including a shortage of memory,
/// are logged and reported as false or an empty string; only the constructor throws when memory is short.
class COLORIO_API ColorIOAutoDetection {
public:
    static ColorIOAutoDetection* s_instance; ///< What `get_instance` returns.

    /// `app` may be null: then no mapping file is read. Not owned; must outlive this object.
    explicit ColorIOAutoDetection(OfApp* app);
    ~ColorIOAutoDetection();
    ColorIOAutoDetection(const ColorIOAutoDetection&) = delete;
    ColorIOAutoDetection& operator=(const ColorIOAutoDetection&) = delete;

    /// Creates the instance if there is none; always true, so check `get_instance`.
    static bool static_init(OfApp* app);
    /// Null before `static_init` and after `destroy`.
    static ColorIOAutoDetection* get_instance();
    /// Deletes the instance, if there is one.
    static void destroy();

    /// Appends the nine built-in rows to the built-in table.
    void init_default_color_spaces();

    /// Count of rows of the active table.
    unsigned int get_categories_count() const;
    // A row of the active table by its position. Rows may repeat a format's name; lookups by name find the
    // first one only. The empty string past the end.

    /// Name of the row's format.
    CoreString get_file_format(unsigned int index) const;
    /// Extensions of the row, separated by commas, without '.'.
    CoreString get_extensions(unsigned int index) const;
    /// Color space of the row, as it was set: with or without its family.
    CoreString get_color_space(unsigned int index) const;

    /// Extensions of the first row with exactly that name; empty, and an error in the log, without one.
    CoreString get_extension_from_file_format(const CoreString& file_format) const;
    /// Color space of the first row with exactly that name; "Tavelion|sRGB", and an error in the log, without
    /// one.
    CoreString get_default_color_space_from_file_format(const CoreString& file_format) const;
    /// Color space of the first row that lists `extension` (any case, without '.') with another color space
    /// than the "default" row's; the "default" row's when no row does.
    CoreString get_default_color_space_from_extension(const CoreString& extension);

    /// Inserts a row before the last one.
    void add_file_format(const CoreString& file_format, const CoreString& extensions,
                         const CoreString& color_space);
    /// Removes a row; an index past the end removes the last one, NOT_FOUND none.
    void remove_file_format(unsigned int index);
    /// Renames a row; an index past the end is logged as a warning.
    void set_file_format(unsigned int index, const CoreString& name);
    /// Sets a row's extensions; NOT_FOUND is logged as an error, any other index past the end is ignored.
    void set_extension_from_file_format(unsigned int index, const CoreString& extensions);
    /// The same for its color space, stored with its family where it is a published name.
    void set_default_color_space_from_file_format(unsigned int index, const CoreString& color_space);

    /// Appends the rows of a mapping file to the file table. False without an application or a regular file,
    /// and for one that cannot be parsed or has an entry without a value; rows read before that entry stay.
    bool build_from_file(const CoreString& path);
    /// Makes the file table (reading the application's file first if needed) or the built-in one active, and
    /// raises EVT_ID_COLORIO_COLOR_SPACE_BY_EXTENSION_CHANGED. A file that cannot be read leaves the built-in
    /// one active without an event. Does nothing without an application.
    void use_file_config(bool use);
    /// Whether the file table is active.
    bool is_file_config() const { return using_file_table; }
    /// True when every color space of the active table exists; otherwise logs those that do not.
    bool check_mappings() const;

    /// Appends the built-in table to the group of `entry`, which is made if there is none. False for null.
    bool save_config(ParserEntry* entry);
    /// Updates the built-in table from the group of `entry`: rows of the same format are replaced, others are
    /// inserted before the last row. False, and nothing changed, unless `entry` holds a group.
    bool load_config(ParserEntry* entry);

private:
    struct CategoryTable {
        CoreVector<CoreString> file_formats;
        CoreVector<CoreString> extensions;
        CoreVector<CoreString> color_spaces;

        unsigned int get_count() const { return file_formats.get_count(); }
        unsigned int find(const CoreString& file_format) const;
        /// Inserts a row; throws std::bad_alloc and leaves the table unchanged.
        void insert(unsigned int index, CoreString file_format, CoreString extension_list,
                    CoreString color_space);
        void insert_before_last(CoreString file_format, CoreString extension_list, CoreString color_space);
        /// Removes a row; an index past the end removes the last one.
        void remove(unsigned int index);
    };

    using Column = CoreVector<CoreString> CategoryTable::*;

    void add_builtin_rows();
    CoreString get_cell(Column column, unsigned int index) const;
    CoreString find_color_space(const CoreString& file_format) const;
    bool add_rows_of_file(const CoreString& path);
    /// Logs the color spaces of the active table that do not exist; true when there are any.
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
