#include "colorio/color_io_auto_detection.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "colorio/color_io.h"
#include "host/parser/parser_entry.h"
#include "host/parser/parser_group.h"
#include "tests/colorio/running_module.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Row = std::vector<std::string>;

/// The built-in table of a fresh detector, and one preference entry.
class FormatPreferences : public RunningModule {
protected:
    /// The "extension" entries of a group as rows of strings; every other entry as its name alone.
    static std::vector<Row> stored_rows(ParserEntry& preferences) {
        std::vector<Row> stored;
        ParserGroup* group = preferences.get_group(0);
        for (unsigned int i = 0; group && i < group->get_entry_count(); ++i) {
            const ParserEntry& item = *group->get_entry(i);
            Row row;
            if (str(item.get_name()) != "extension")
                row.push_back(str(item.get_name()));
            else
                for (unsigned int value = 0; value < item.get_value_count(); ++value)
                    row.push_back(item.is_value_string(value) ? str(item.get_string(value)) : "?");
            stored.push_back(row);
        }
        return stored;
    }

    ParserEntry& add_row(std::initializer_list<const char*> values, const char* name = "extension") {
        ParserGroup* group = entry.is_group() ? entry.get_group(0) : entry.add_group(nullptr);
        ParserEntry* item = group->add_entry(name, 0, 0);
        for (const char* value : values)
            item->add_string(value);
        return *item;
    }

    std::vector<std::string> formats() const {
        std::vector<std::string> names;
        for (unsigned int i = 0; i < detection.get_categories_count(); ++i)
            names.push_back(str(detection.get_file_format(i)));
        return names;
    }
    std::string extensions(const char* format) const {
        return str(detection.get_extension_from_file_format(format));
    }
    std::string space(const char* format) const {
        return str(detection.get_default_color_space_from_file_format(format));
    }

    ParserEntry entry{"color management"};
    ColorIOAutoDetection detection{&app};
};

TEST_F(FormatPreferences, HoldOneEntryOfThreeStringsPerBuiltInRow) {
    EXPECT_TRUE(detection.save_config(&entry));
    ASSERT_TRUE(entry.is_group());
    EXPECT_THAT(stored_rows(entry),
                ElementsAre(Row{"Open EXR", "exr, sxr", "Tavelion|linear"},
                            Row{"Jpeg", "jpg, jpeg", "Tavelion|sRGB"}, Row{"Bitmap", "bmp", "Tavelion|sRGB"},
                            Row{"Targa", "tga", "Tavelion|sRGB"}, Row{"Png", "png", "Tavelion|sRGB"},
                            Row{"Tiff", "tif, tiff", "Tavelion|sRGB"},
                            Row{"Tx", "tx, tex", "Tavelion|linear"}, Row{"HDR", "hdr", "Tavelion|linear"},
                            Row{"default", "Other", "Tavelion|sRGB"}));
}

TEST_F(FormatPreferences, AreAddedBehindWhatTheEntryHolds) {
    add_row({"mine"}, "space");
    for (int i = 0; i < 8; ++i)
        detection.remove_file_format(0);
    EXPECT_TRUE(detection.save_config(&entry));
    EXPECT_EQ(entry.get_value_count(), 1u) << "the group that is there is used";
    EXPECT_THAT(stored_rows(entry), ElementsAre(Row{"space"}, Row{"default", "Other", "Tavelion|sRGB"}));
}

TEST_F(FormatPreferences, OfAnEmptyTableAreNotSaved) {
    for (int i = 0; i < 9; ++i)
        detection.remove_file_format(0);
    EXPECT_FALSE(detection.save_config(&entry));
    EXPECT_EQ(entry.get_value_count(), 0u);
}

TEST_F(FormatPreferences, NeverHoldTheRowsOfAMappingFile) {
    const std::string mapping = "Scans: {extensions: dpx, color_space: Tavelion|Cineon}\n";
    app.color_space_by_extension_file_path = write_file("mapping.yaml", mapping).c_str();
    detection.use_file_config(true);
    ASSERT_TRUE(detection.is_file_config());
    EXPECT_TRUE(detection.save_config(&entry));
    ASSERT_EQ(stored_rows(entry).size(), 9u);
    EXPECT_EQ(stored_rows(entry)[0][0], "Open EXR");
}

TEST_F(FormatPreferences, AreNotLoadedFromNothing) {
    EXPECT_FALSE(detection.load_config(nullptr));
    EXPECT_FALSE(detection.load_config(&entry));
    entry.add_string("extension");
    EXPECT_FALSE(detection.load_config(&entry));
    EXPECT_EQ(detection.get_categories_count(), 9u);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatPreferences, LoadFromAnEmptyGroupWithoutChangingAnything) {
    entry.add_group(nullptr);
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(detection.get_categories_count(), 9u);
}

TEST_F(FormatPreferences, ReplaceTheExtensionsAndColorSpaceOfAKnownFormat) {
    add_row({"Png", "png, apng", "linear"});
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(detection.get_categories_count(), 9u);
    EXPECT_EQ(extensions("Png"), "png, apng");
    EXPECT_EQ(space("Png"), "Tavelion|linear") << "the bare name is turned into the full one";
}

TEST_F(FormatPreferences, AddARowForAnUnknownFormatInFrontOfTheDefaultRow) {
    add_row({"Dpx", "dpx, cin", "Cineon"});
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_THAT(formats(), ElementsAre("Open EXR", "Jpeg", "Bitmap", "Targa", "Png", "Tiff", "Tx", "HDR",
                                       "Dpx", "default"));
    EXPECT_EQ(extensions("Dpx"), "dpx, cin");
    EXPECT_EQ(space("Dpx"), "Cineon") << "the name of a new row is stored as read";
}

TEST_F(FormatPreferences, AddNewRowsInTheOrderOfTheirEntries) {
    add_row({"B", "b", "x"});
    add_row({"A", "a", "x"});
    add_row({"B", "b2", "Cineon"});
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(detection.get_categories_count(), 11u);
    EXPECT_EQ(str(detection.get_file_format(8)), "B");
    EXPECT_EQ(str(detection.get_file_format(9)), "A");
    EXPECT_EQ(str(detection.get_file_format(10)), "default");
    EXPECT_EQ(extensions("B"), "b2");
    EXPECT_EQ(space("B"), "Tavelion|Cineon") << "the second entry of a format finds the row of the first";
}

TEST_F(FormatPreferences, PassOverEntriesOfOtherNamesAndKinds) {
    add_row({"Png", "x", "x"}, "Extension");
    add_row({"Png", "x", "x"}, "space");
    add_row({});
    add_row({}).add_int(7);
    add_row({}).add_group(nullptr);
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(detection.get_categories_count(), 9u);
    EXPECT_EQ(extensions("Png"), "png");
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(FormatPreferences, ReadMissingValuesAsEmpty) {
    add_row({"Png"});
    add_row({"Bare"});
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(extensions("Png"), "");
    EXPECT_EQ(space("Png"), "");
    EXPECT_EQ(extensions("Bare"), "");
    EXPECT_EQ(space("Bare"), "");
}

TEST_F(FormatPreferences, ChangeTheBuiltInTableWhileAMappingFileIsInForce) {
    const std::string mapping = "Scans: {extensions: dpx, color_space: Tavelion|Cineon}\n";
    app.color_space_by_extension_file_path = write_file("mapping.yaml", mapping).c_str();
    detection.use_file_config(true);
    add_row({"Png", "png, apng", "linear"});
    add_row({"Scans", "scan", "linear"});
    EXPECT_TRUE(detection.load_config(&entry));
    EXPECT_EQ(extensions("Scans"), "dpx");
    detection.use_file_config(false);
    EXPECT_EQ(extensions("Png"), "png, apng");
    EXPECT_EQ(extensions("Scans"), "scan");
}

TEST_F(FormatPreferences, SavedAndLoadedGiveTheSameTable) {
    detection.set_extension_from_file_format(0, "exr");
    detection.set_default_color_space_from_file_format(1, "Cineon");
    detection.add_file_format("Dpx", "dpx", "Film|log");
    ASSERT_TRUE(detection.save_config(&entry));

    ColorIOAutoDetection restored(&app);
    EXPECT_TRUE(restored.load_config(&entry));
    ParserEntry again("color management");
    ASSERT_TRUE(restored.save_config(&again));
    EXPECT_EQ(stored_rows(again), stored_rows(entry));
    EXPECT_EQ(stored_rows(again)[8], (Row{"Dpx", "dpx", "Film|log"}));
}

TEST_F(FormatPreferences, RaiseNoEvents) {
    add_row({"Png", "png", "linear"});
    detection.load_config(&entry);
    ParserEntry saved("color management");
    detection.save_config(&saved);
    EXPECT_THAT(take_events(), IsEmpty());
}

} // namespace
