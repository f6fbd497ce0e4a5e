#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/tool/tool_fixture.h"

/// Runs a program to its end, after `prepare` in its process; its output goes through files in `folder`.
inline ToolRun run_program(
    const std::string& program, std::vector<std::string> arguments, const TempDir& folder,
    const std::function<void()>& prepare = [] {}) {
    arguments.insert(arguments.begin(), program);
    std::vector<char*> line;
    for (std::string& argument : arguments)
        line.push_back(argument.data());
    line.push_back(nullptr);
    const std::string out = folder.file("out.txt"), err = folder.file("err.txt");
    const pid_t child = fork();
    if (child == 0) {
        (void)!freopen(out.c_str(), "w", stdout);
        (void)!freopen(err.c_str(), "w", stderr);
        prepare();
        execv(program.c_str(), line.data());
        _exit(127);
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), folder.read("out.txt"),
            folder.read("err.txt")};
}
