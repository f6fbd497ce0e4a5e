#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <string>

#include "host/parser/parser_entry.h"
#include "host/parser/parser_file.h"
#include "host/parser/parser_group.h"
#include "standalone/preferences.h"
#include "standalone/standalone_app.h"
#include "tests/support/recording_log.h"
#include "tests/support/temp_dir.h"

namespace {

// Runs `work` in a separate process and returns its id.
pid_t start(const std::function<bool()>& work) {
    const pid_t process = fork();
    if (process == 0)
        _exit(work() ? 0 : 1);
    return process;
}

bool succeeded(pid_t process) {
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Saves a color-space name that fills a few blocks of the file, made of one letter.
bool save_letter(const std::string& path, char letter) {
    PreferenceFile preferences(path.c_str());
    StandaloneApp app;
    app.set_default_color_space_name(CoreString(std::string_view(std::string(20'000, letter))));
    return preferences.save(app, {});
}

constexpr const char* DAMAGED = "file_type: \"qb_colorio preferences\"\n{";

// The letter that the whole name in the file consists of; '\0' for any other content.
char read_letter(const std::string& path) {
    RecordingLog log;
    PreferenceFile preferences(path.c_str());
    StandaloneApp app;
    if (!preferences.load(app) || !log.get_lines().empty())
        return '\0';
    const std::string name(app.get_default_color_space_name().view());
    return name.size() == 20'000 && name.find_first_not_of(name[0]) == std::string::npos ? name[0] : '\0';
}

TEST(PreferenceProcesses, SeveralMaySaveAtOnce) {
    const TempDir folder;
    const std::string path = folder.file("preferences.yaml");
    ASSERT_TRUE(save_letter(path, 'z'));
    pid_t processes[3];
    for (int i = 0; i < 3; ++i)
        processes[i] = start([&] {
            for (int repeat = 0; repeat < 20; ++repeat)
                if (!save_letter(path, static_cast<char>('a' + i)) || read_letter(path) == '\0')
                    return false;
            return true;
        });
    for (const pid_t process : processes)
        EXPECT_TRUE(succeeded(process));
    const char letter = read_letter(path);
    EXPECT_TRUE(letter >= 'a' && letter <= 'c') << letter;
    EXPECT_EQ(folder.count_entries(), 1u);
}

// Adds `letter` to the name in the file, as one change.
bool add_letter(const std::string& path, char letter) {
    PreferenceFile preferences(path.c_str());
    StandaloneApp app;
    app.set_default_color_space_name("");
    if (!preferences.load_to_change(app))
        return false;
    const std::string name = std::string(app.get_default_color_space_name().view()) + letter;
    app.set_default_color_space_name(CoreString(std::string_view(name)));
    return preferences.save(app, {});
}

TEST(PreferenceProcesses, NoChangeOfSeveralAtOnceIsLost) {
    const TempDir folder;
    const std::string path = folder.file("new/preferences.yaml");
    pid_t processes[4];
    for (int i = 0; i < 4; ++i)
        processes[i] = start([&] {
            for (int repeat = 0; repeat < 10; ++repeat)
                if (!add_letter(path, static_cast<char>('a' + i)))
                    return false;
            return true;
        });
    for (const pid_t process : processes)
        EXPECT_TRUE(succeeded(process));
    PreferenceFile preferences(path.c_str());
    StandaloneApp app;
    EXPECT_TRUE(preferences.load(app));
    std::string name(app.get_default_color_space_name().view());
    std::sort(name.begin(), name.end());
    EXPECT_EQ(name,
              std::string(10, 'a') + std::string(10, 'b') + std::string(10, 'c') + std::string(10, 'd'));
}

TEST(PreferenceProcesses, ADamagedFileIsSetAsideOnceWhenSeveralSave) {
    const TempDir folder;
    const std::string path = folder.write("preferences.yaml", DAMAGED);
    pid_t processes[3];
    for (pid_t& process : processes)
        process = start([&] {
            RecordingLog log;
            return save_letter(path, 'a');
        });
    for (const pid_t process : processes)
        EXPECT_TRUE(succeeded(process));
    EXPECT_EQ(read_letter(path), 'a');
    EXPECT_EQ(folder.read("preferences.yaml.damaged-1"), DAMAGED);
    EXPECT_EQ(folder.count_entries(), 2u);
}

TEST(PreferenceProcesses, AKillAtAnyMomentLeavesTheOldOrTheNewFile) {
    const TempDir folder;
    const std::string path = folder.file("preferences.yaml");
    ASSERT_TRUE(save_letter(path, 'a'));
    for (int kills = 0; kills < 10; ++kills) {
        int saves[2];
        ASSERT_EQ(pipe(saves), 0);
        const pid_t process = start([&] {
            for (char letter = 'a';; letter = letter == 'a' ? 'b' : 'a')
                if (!save_letter(path, letter) || write(saves[1], &letter, 1) != 1)
                    return false;
        });
        // After the first saves the child is somewhere in a later one.
        char letter;
        for (int i = 0; i <= kills % 4; ++i)
            ASSERT_EQ(read(saves[0], &letter, 1), 1);
        for (int i = 0; i < kills * 1000; ++i)
            getppid();
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        close(saves[0]);
        close(saves[1]);
        letter = read_letter(path);
        EXPECT_TRUE(letter == 'a' || letter == 'b');
    }
}

} // namespace
