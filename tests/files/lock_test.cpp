#include "files/lock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include "tests/support/temp_dir.h"

namespace {

using files::Lock;

// Reads the number in the file, and writes the next one.
void count_one(const std::string& path) {
    int number = 0;
    std::ifstream(path) >> number;
    std::ofstream(path) << number + 1;
}

TEST(Locking, LosesNothingOfWhatSeveralProcessesChange) {
    const TempDir folder;
    const std::string path = folder.write("count", "0");
    for (int i = 0; i < 4; ++i)
        if (fork() == 0) {
            for (int repeat = 0; repeat < 50; ++repeat)
                if (auto lock = Lock::take(folder.get_path()))
                    count_one(path);
            _exit(0);
        }
    for (int i = 0; i < 4; ++i)
        wait(nullptr);
    EXPECT_EQ(folder.read("count"), "200");
}

TEST(Locking, ALockEndsWithItsObjectAndWithItsProcess) {
    const TempDir folder;
    { auto lock = Lock::take(folder.get_path()); }
    const pid_t child = fork();
    if (child == 0) {
        auto lock = Lock::take(folder.get_path());
        kill(getpid(), SIGKILL);
    }
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(Lock::take(folder.get_path()));
}

TEST(Locking, AFolderThatIsNotThereIsAFailure) {
    const TempDir folder;
    auto lock = Lock::take(folder.file("none"));
    ASSERT_FALSE(lock);
    EXPECT_EQ(lock.get_failure().error_number, ENOENT);
    EXPECT_EQ(lock.get_failure().describe(),
              "cannot lock '" + folder.file("none") + "': No such file or directory");
}

} // namespace
