#include "colorio/color_io_manager.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/event/event_ids.h"
#include "tests/colorio/converter_fixture.h"
#include "tests/colorio/custom_space_files.h"

namespace {

using testing::IsEmpty;
using testing::SizeIs;

using CdlDef = ColorIOManager::ColorDecisionListDef;

/// A list of "warm" (slope 2) and "cool" (slope 8), and local CDLs on top.
class LocalCdl : public ConverterTest {
protected:
    void SetUp() override {
        ConverterTest::SetUp();
        use_cdls({cdl_record("warm", {{2, 2, 2}}), cdl_record("cool", {{8, 8, 8}})});
    }

    void add(const char* name, float slope) {
        EXPECT_TRUE(ColorIOManager::get_instance()->add_local_CDL(cdl_record(name, {{slope, slope, slope}})));
    }
    /// The published names but "No CDL".
    static std::vector<std::string> published_cdls() {
        std::vector<std::string> names;
        for (const CoreString& name : ColorIOManager::get_instance()->get_CDL_names())
            if (name != "No CDL")
                names.emplace_back(name.get_data());
        return names;
    }
    /// What the CDL of that name makes of 0.125.
    float grade(const char* name) {
        EXPECT_TRUE(converter->configure_CDL("No CDL", name)) << name;
        return convert(0.125f, 0.125f, 0.125f)[0];
    }
};

TEST_F(LocalCdl, GivesWayToTheListedOneWhenAnotherIsAdded) {
    add("warm", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("input_local_CDL", 16);
    EXPECT_EQ(grade("warm"), 0.25f);
    EXPECT_EQ(grade("input_local_CDL"), 2.0f);
}

TEST_F(LocalCdl, StaysWhileItIsAddedAgain) {
    add("warm", 4);
    add("warm", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("warm", 6);
    EXPECT_EQ(grade("warm"), 0.75f);
}

TEST_F(LocalCdl, TakesThePlaceOfAListedOneOfOtherCaseUntilAnotherIsAdded) {
    add("WARM", 4);
    EXPECT_EQ(grade("warm"), 0.5f);
    add("cool", 16);
    EXPECT_EQ(grade("warm"), 0.25f);
}

TEST_F(LocalCdl, OfTheLastNameIsKeptWithEarlierOnes) {
    add("input_local_CDL", 4);
    add("output_local_CDL", 16);
    EXPECT_EQ(grade("input_local_CDL"), 0.5f);
    EXPECT_EQ(grade("output_local_CDL"), 2.0f);
}

TEST_F(LocalCdl, HasADamagedListedFileTriedAgain) {
    CdlDef damaged = cdl_record("damaged", {});
    damaged.file = write_file("damaged.cc", "<ColorCorrection>").c_str();
    use_cdls({damaged});
    take_log();
    add("input_local_CDL", 4);
    EXPECT_THAT(take_log(), SizeIs(2)) << "the message and the library's words, as when the list was set";
    EXPECT_EQ(grade("input_local_CDL"), 0.5f);
}

TEST_F(LocalCdl, HasAListedFileThatIsGoneReplacedByTheRecordsNumbers) {
    CdlDef filed = cdl_record("filed", {{4, 4, 4}});
    const std::string path = write_file("filed.cc", correction_text("filed", "2"));
    filed.file = path.c_str();
    use_cdls({filed});
    EXPECT_EQ(grade("filed"), 0.25f);
    std::filesystem::remove(path);
    add("input_local_CDL", 16);
    EXPECT_EQ(grade("filed"), 0.5f);
    EXPECT_THAT(take_log(), IsEmpty());
}

TEST_F(LocalCdl, HasAListedFileThatCameBackReadAgain) {
    CdlDef filed = cdl_record("filed", {{4, 4, 4}});
    const std::string path = write_file("filed.cc", correction_text("filed", "2"));
    filed.file = path.c_str();
    use_cdls({filed});
    std::filesystem::remove(path);
    add("input_local_CDL", 16);
    EXPECT_EQ(grade("filed"), 0.5f);
    write_file("filed.cc", correction_text("filed", "2"));
    add("input_local_CDL", 8);
    EXPECT_EQ(grade("filed"), 0.25f);
    EXPECT_EQ(grade("input_local_CDL"), 1.0f);
}

TEST_F(LocalCdl, HasListedFilesReadAgainAfterTheConfigIsLoadedAgain) {
    CdlDef filed = cdl_record("filed", {});
    filed.file = write_file("filed.cc", correction_text("filed", "2")).c_str();
    use_cdls({filed});
    use_config(CONFIG_WITHOUT_FAMILIES);
    add("input_local_CDL", 16);
    write_file("filed.cc", correction_text("filed", "4"));
    add("input_local_CDL", 8);
    EXPECT_EQ(grade("filed"), 0.25f) << "OpenColorIO keeps what it has read";
    app.raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);
    add("input_local_CDL", 8);
    EXPECT_EQ(grade("filed"), 0.5f);
}

TEST_F(LocalCdl, HasListedFilesReadAgainAfterTheCustomSpacesAreReplaced) {
    CdlDef filed = cdl_record("filed", {});
    filed.file = write_file("filed.cc", correction_text("filed", "2")).c_str();
    use_cdls({filed});
    write_file("filed.cc", correction_text("filed", "4"));
    add("input_local_CDL", 8);
    EXPECT_EQ(grade("filed"), 0.25f) << "OpenColorIO keeps what it has read";
    ColorIOManager::get_instance()->set_tavelion_config(CoreVector<ColorIOManager::ColorSpaceDef>());
    add("input_local_CDL", 8);
    EXPECT_EQ(grade("filed"), 0.5f);
}

TEST_F(LocalCdl, GivesWayToACustomRecordBehindTheBuiltInOneThatItOverwrites) {
    CdlDef builtin = cdl_record("warm", {});
    builtin.is_builtin = true;
    use_cdls({builtin, cdl_record("warm", {{2, 2, 2}})});
    add("warm", 4);
    EXPECT_EQ(grade("warm"), 0.25f);
}

/// The color spaces that lists and local CDLs leave behind when every local CDL has the whole list added
/// again: by name in lower case, the factor of each.
class WholeCopies {
public:
    void set_list(const std::vector<CdlDef>& records, const std::string& file, float slope) {
        list = records;
        filed = file;
        file_slope = slope;
        slopes.clear();
        add_all(list);
    }
    void add_local(const CdlDef& entry) {
        std::vector<CdlDef> copy = list;
        const auto same =
            std::find_if(copy.begin(), copy.end(), [&](const CdlDef& def) { return def.name == entry.name; });
        if (same != copy.end())
            *same = entry;
        else
            copy.push_back(entry);
        add_all(copy);
    }
    const std::map<std::string, float>& get_slopes() const { return slopes; }

private:
    void add_all(const std::vector<CdlDef>& records) {
        for (const CdlDef& def : records) {
            const bool from_file = !def.file.is_empty() && std::filesystem::exists(filed);
            if (!def.is_builtin)
                slopes[std::string(def.name.get_lower_case().view())] = from_file ? file_slope : def.slope[0];
        }
    }

    std::vector<CdlDef> list;
    std::string filed;
    float file_slope = 1;
    std::map<std::string, float> slopes;
};

TEST_F(LocalCdl, IsTheSameAsAddingTheWholeListWithItWhateverCameBefore) {
    constexpr std::array<const char*, 4> NAMES = {"warm", "Warm", "cool", "filed"};
    const std::string path = path_of("filed.cc");
    const std::string text = correction_text("filed", "2");
    std::mt19937 random(20);
    const auto pick = [&random](unsigned int count) { return random() % count; };
    const auto pick_record = [&] {
        const auto slope = static_cast<float>(4 + pick(8));
        CdlDef def = cdl_record(NAMES[pick(4)], {{slope, slope, slope}});
        def.is_builtin = pick(4) == 0;
        def.file = pick(3) == 0 ? path.c_str() : "";
        return def;
    };
    WholeCopies expected;
    for (int round = 0; round < 60; ++round) {
        std::vector<CdlDef> list;
        for (unsigned int i = 0; i < 4; ++i)
            list.push_back(pick_record());
        write_file("filed.cc", text);
        use_cdls(list);
        expected.set_list(list, path, 2);
        for (int step = 0; step < 8; ++step) {
            if (pick(3) == 0 && !std::filesystem::remove(path))
                write_file("filed.cc", text);
            const CdlDef entry = pick_record();
            EXPECT_TRUE(ColorIOManager::get_instance()->add_local_CDL(entry));
            expected.add_local(entry);
            for (const std::string& name : published_cdls()) {
                const std::string key(CoreString(name.c_str()).get_lower_case().view());
                ASSERT_EQ(grade(name.c_str()), 0.125f * expected.get_slopes().at(key))
                    << "round " << round << ", step " << step << ", " << name;
            }
        }
    }
}

} // namespace
