#include "files/replacement.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include "files/temporary_name.h"
#include "tests/files/replacement_fixture.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/other_user.h"

namespace {

using files::Replacement;
using files::ReplacementRules;

/// What does not come to its end.
class InterruptedReplacement : public Replacing {};

INSTANTIATE_TEST_SUITE_P(Files, InterruptedReplacement, testing::Values(ReplacementRules(), WITH_PATH),
                         name_rules);

TEST_P(InterruptedReplacement, AFullDiskIsReportedAndLeavesTheOldFile) {
    const std::string path = folder.write("old", "old");
    const std::string text(100000, 'x');
    {
        const FileSizeLimit limit(90000);
        EXPECT_FALSE(replace(path, text));
        EXPECT_EQ(reason, "File too large");
        EXPECT_FALSE(replace(folder.file("new"), text));
    }
    EXPECT_EQ(folder.read("old"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(InterruptedReplacement, WhatIsNotCommittedLeavesTheOldFileAndNothingElse) {
    const std::string path = folder.write("old", "old");
    {
        Replacement file(path, GetParam());
        EXPECT_TRUE(file.write(std::string(100000, 'x')));
    }
    EXPECT_EQ(folder.read("old"), "old");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(InterruptedReplacement, TwoAtOnceLeaveTheFileOfTheLast) {
    Replacement first(folder.file("a"), GetParam());
    Replacement second(folder.file("a"), GetParam());
    ASSERT_TRUE(first.write("first") && second.write("second"));
    EXPECT_TRUE(first.commit());
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(folder.read("a"), "second");
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(InterruptedReplacement, WhatAKilledProcessLeftGoesWithTheNextReplacement) {
    const std::string path = folder.write("old.exr", "old");
    const pid_t child = fork();
    if (child == 0) {
        Replacement file(path, GetParam());
        file.write("half of it");
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(folder.read("old.exr"), "old");
    EXPECT_EQ(folder.count_entries(), GetParam().has_path ? 2u : 1u);
    EXPECT_TRUE(replace(path, "new"));
    EXPECT_EQ(folder.count_entries(), 1u);
}

TEST_P(InterruptedReplacement, WhatAnotherProcessWritesAndFilesOfOtherNamesStay) {
    const std::vector<std::string> names = {".colorio-1-0.exr",
                                            "qb_colorio-1-0-17979cfe362a0000.tmp",
                                            ".qb_colorio-notes.tmp",
                                            ".qb_colorio-1-0-17979cfe.tmp.exr",
                                            ".qb_colorio-1-0-17979cfe362a0000.tmp.exr.bak",
                                            ".qb_colorio-1-x-17979cfe362a0000.tmp"};
    for (const std::string& name : names)
        folder.write(name, "a user's");
    int to_child[2], to_parent[2];
    ASSERT_EQ(pipe(to_child) + pipe(to_parent), 0);
    char byte = 'x';
    const pid_t child = fork();
    if (child == 0) {
        Replacement file(folder.file("other"), WITH_PATH);
        const bool done = write(to_parent[1], &byte, 1) == 1 && read(to_child[0], &byte, 1) == 1;
        _exit(done && file.commit() ? 0 : 1);
    }
    ASSERT_EQ(read(to_parent[0], &byte, 1), 1);
    EXPECT_TRUE(replace(folder.file("new"), "new"));
    EXPECT_EQ(folder.count_entries(), names.size() + 2) << "one that is new, one that is being written";
    for (const std::string& name : names)
        EXPECT_TRUE(folder.exists(name)) << name;
    ASSERT_EQ(write(to_child[1], &byte, 1), 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(folder.exists("other"));
    for (const int end : {to_child[0], to_child[1], to_parent[0], to_parent[1]})
        close(end);
}

} // namespace
