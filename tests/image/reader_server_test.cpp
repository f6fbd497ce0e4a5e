#include "image/reader_server.h"

#include <sys/wait.h>
#include <unistd.h>

#include "image/reader_process.h"
#include "tests/image/reader_fixture.h"

namespace {

using testing::HasSubstr;

/// In copies of this process, which has a server already.
class ReaderServers : public ImageTest {
protected:
    /// Whether `action` is true in a copy of this process without a server.
    template <class Action>
    static bool holds_without_server(const Action& action) {
        const pid_t copy = fork();
        if (copy == 0) {
            image::abandon_reader_server();
            _exit(action() ? 0 : 1);
        }
        int status = 0;
        waitpid(copy, &status, 0);
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    std::string path = write_image("good.exr", 4, 3);
};

TEST_F(ReaderServers, MayBeProgramsOfTheirOwn) {
    EXPECT_TRUE(holds_without_server([&] {
        image::start_reader_server(QB_READER_SERVER);
        image::start_reader_server(QB_READER_SERVER); // does nothing
        image::ReaderProcess process;
        return process.open(path).parts[0].spec.width == 4;
    }));
}

TEST_F(ReaderServers, AreAbandonedByACopyOfTheProcess) {
    EXPECT_TRUE(holds_without_server([&] {
        image::ReaderProcess process;
        return failure_of([&] { process.open(path); }).find("is not running") != std::string::npos;
    }));
    image::ReaderProcess process;
    EXPECT_EQ(process.open(path).parts[0].spec.width, 4) << "the original still has its server";
}

TEST_F(ReaderServers, SayWhyTheirProgramCannotBeStarted) {
    EXPECT_TRUE(holds_without_server([&] {
        image::start_reader_server(folder.file("none"));
        image::ReaderProcess process;
        return failure_of([&] { process.open(path); }).find("No such file") != std::string::npos;
    }));
}

} // namespace
