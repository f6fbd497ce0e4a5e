#include "standalone/sys/set_aside.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "tests/support/refused_call.h"
#include "tests/support/temp_dir.h"

namespace {

constexpr int UNAVAILABLE = 77;

TEST(SetAside, TakesTheFirstFreeNumber) {
    const TempDir folder;
    const std::string path = folder.write("file", "third");
    folder.write("file.damaged-1", "first");
    folder.write("file.damaged-2", "second");
    EXPECT_EQ(set_aside(path), path + ".damaged-3");
    EXPECT_FALSE(folder.exists("file"));
    EXPECT_EQ(folder.read("file.damaged-1") + folder.read("file.damaged-2") + folder.read("file.damaged-3"),
              "firstsecondthird");
}

TEST(SetAside, AFileThatIsNotThereIsNotRenamed) {
    const TempDir folder;
    EXPECT_EQ(set_aside(folder.file("absent")), "");
    EXPECT_EQ(folder.count_entries(), 0u);
}

TEST(SetAside, ThereAreTenThousandNames) {
    const TempDir folder;
    const std::string path = folder.write("file", "kept");
    for (int number = 1; number < 10'000; ++number)
        ASSERT_EQ(symlink("anything", (path + ".damaged-" + std::to_string(number)).c_str()), 0);
    EXPECT_EQ(set_aside(path), path + ".damaged-10000");
    folder.write("file", "left");
    EXPECT_EQ(set_aside(path), "");
    EXPECT_EQ(folder.read("file"), "left");
    EXPECT_EQ(folder.read("file.damaged-10000"), "kept");
}

// Sets a file aside, and tries one that is not there, where renaming without replacing fails with `error`.
// For a process of its own; answers 0 when the outcome is the usual one.
int set_aside_without(const TempDir& folder, unsigned int error) {
    if (!refuse_system_call(SYS_renameat2, error))
        return UNAVAILABLE;
    const std::string path = folder.file("file");
    if (set_aside(path) != path + ".damaged-2")
        return 1;
    return set_aside(folder.file("absent")).empty() ? 0 : 2;
}

class SetAsideWithout : public testing::TestWithParam<unsigned int> {};

TEST_P(SetAsideWithout, TheOperationNoFileIsReplaced) {
    const TempDir folder;
    folder.write("file", "damaged");
    folder.write("file.damaged-1", "earlier");
    const pid_t process = fork();
    if (process == 0)
        _exit(set_aside_without(folder, GetParam()));
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == UNAVAILABLE)
        GTEST_SKIP() << "this system does not let a process refuse its own calls";
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(folder.read("file.damaged-1"), "earlier");
    EXPECT_EQ(folder.read("file.damaged-2"), "damaged");
    EXPECT_EQ(folder.count_entries(), 2u);
}

INSTANTIATE_TEST_SUITE_P(Errors, SetAsideWithout, testing::Values(EINVAL, ENOSYS));

TEST(SetAside, OtherErrorsLeaveTheFile) {
    const TempDir folder;
    const std::string path = folder.write("file", "damaged");
    const pid_t process = fork();
    if (process == 0)
        _exit(refuse_system_call(SYS_renameat2, EPERM) ? !set_aside(path).empty() : UNAVAILABLE);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == UNAVAILABLE)
        GTEST_SKIP() << "this system does not let a process refuse its own calls";
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(folder.read("file"), "damaged");
}

} // namespace
