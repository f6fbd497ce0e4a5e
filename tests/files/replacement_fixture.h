#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "files/replacement.h"
#include "tests/support/temp_dir.h"

inline constexpr files::ReplacementRules WITH_PATH{std::nullopt, false, true};
inline constexpr files::ReplacementRules IN_PLACE{std::nullopt, true, false};

/// Every rule holds for a new file without a name and for one that has a path from the start.
class Replacing : public testing::TestWithParam<files::ReplacementRules> {
protected:
    bool replace(const std::string& path, const std::string& text) {
        files::Replacement file(path, GetParam());
        const bool done = file.write(text) && file.commit();
        reason = file.get_failure() ? file.get_failure()->reason : "";
        EXPECT_EQ(done, !file.get_failure());
        return done;
    }
    static unsigned mode_of(const std::string& path) {
        struct stat status = {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }

    TempDir folder;
    std::string reason;
};

/// "WithAPath" or "WithoutAName".
inline std::string name_rules(const testing::TestParamInfo<files::ReplacementRules>& info) {
    return info.param.has_path ? "WithAPath" : "WithoutAName";
}
