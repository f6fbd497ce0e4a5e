// Runs a program and lets one of its system calls on files fail, or kills it there:
//
//   inject_fault --at N --fault FAULT --below FOLDER --report FILE -- PROGRAM ARGUMENT...
//
// Counted are the calls that name a path below FOLDER or work on a file that is open there, in all threads
// and child processes. The N-th, from 1, is not carried out: it returns the error, or the process is killed
// in front of it; 0 changes nothing. FILE then holds two lines: the count of calls, and the name of the one
// that was hit, if any. Exits as the program did, or with 128 and the signal's number more.

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int KILL = -1;
constexpr int NONE = -1;

/// Which arguments of a system call say what file it is about.
struct Call {
    const char* name;
    int file = NONE;              ///< An open file.
    int folder[2] = {NONE, NONE}; ///< An open folder that the path starts from.
    int path[2] = {NONE, NONE};
};

const std::map<std::uint64_t, Call> CALLS = {
    {SYS_open, {"open", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_openat, {"openat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_creat, {"creat", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_read, {"read", 0}},
    {SYS_pread64, {"pread", 0}},
    {SYS_readv, {"readv", 0}},
    {SYS_write, {"write", 0}},
    {SYS_pwrite64, {"pwrite", 0}},
    {SYS_writev, {"writev", 0}},
    {SYS_close, {"close", 0}},
    {SYS_fsync, {"fsync", 0}},
    {SYS_fdatasync, {"fdatasync", 0}},
    {SYS_ftruncate, {"ftruncate", 0}},
    {SYS_fallocate, {"fallocate", 0}},
    {SYS_fchmod, {"fchmod", 0}},
    {SYS_fchown, {"fchown", 0}},
    {SYS_flock, {"flock", 0}},
    {SYS_lseek, {"lseek", 0}},
    {SYS_fstat, {"fstat", 0}},
    {SYS_getdents64, {"getdents", 0}},
    {SYS_mmap, {"mmap", 4}},
    {SYS_stat, {"stat", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_lstat, {"lstat", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_newfstatat, {"fstatat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_statx, {"statx", NONE, {0, NONE}, {1, NONE}}},
    {SYS_access, {"access", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_faccessat, {"faccessat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_faccessat2, {"faccessat2", NONE, {0, NONE}, {1, NONE}}},
    {SYS_readlink, {"readlink", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_readlinkat, {"readlinkat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_rename, {"rename", NONE, {NONE, NONE}, {0, 1}}},
    {SYS_renameat, {"renameat", NONE, {0, 2}, {1, 3}}},
    {SYS_renameat2, {"renameat2", NONE, {0, 2}, {1, 3}}},
    {SYS_link, {"link", NONE, {NONE, NONE}, {0, 1}}},
    {SYS_linkat, {"linkat", NONE, {0, 2}, {1, 3}}},
    {SYS_unlink, {"unlink", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_unlinkat, {"unlinkat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_mkdir, {"mkdir", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_mkdirat, {"mkdirat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_rmdir, {"rmdir", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_chmod, {"chmod", NONE, {NONE, NONE}, {0, NONE}}},
    {SYS_fchmodat, {"fchmodat", NONE, {0, NONE}, {1, NONE}}},
    {SYS_truncate, {"truncate", NONE, {NONE, NONE}, {0, NONE}}},
};

struct Options {
    unsigned long at = 0;
    int fault = EIO;
    std::string folder;
    std::string report;
    std::vector<char*> program;
};

int parse_fault(const std::string& name) {
    const std::map<std::string, int> faults = {{"kill", KILL},   {"EIO", EIO},       {"ENOSPC", ENOSPC},
                                               {"EINTR", EINTR}, {"EMFILE", EMFILE}, {"EBADF", EBADF}};
    return faults.at(name);
}

Options parse_options(int count, char* arguments[]) {
    Options options;
    int i = 1;
    for (; i + 1 < count && std::strcmp(arguments[i], "--") != 0; i += 2) {
        const std::string name = arguments[i];
        const char* value = arguments[i + 1];
        if (name == "--at")
            options.at = std::stoul(value);
        else if (name == "--fault")
            options.fault = parse_fault(value);
        else if (name == "--below")
            options.folder = value;
        else if (name == "--report")
            options.report = value;
        else
            throw std::runtime_error("unknown option " + name);
    }
    for (++i; i < count; ++i)
        options.program.push_back(arguments[i]);
    if (options.program.empty() || options.folder.empty() || options.report.empty())
        throw std::runtime_error("see the comment at the top of inject_fault.cpp");
    options.program.push_back(nullptr);
    return options;
}

std::string read_link(const std::string& path) {
    char target[PATH_MAX];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    return length < 0 ? "" : std::string(target, static_cast<std::size_t>(length));
}

/// The text at an address of the other process, as far as its page can be read.
std::string read_text(pid_t thread, std::uint64_t address) {
    constexpr std::uint64_t PAGE = 4096;
    std::string text;
    while (address != 0 && text.size() < PATH_MAX) {
        char piece[PAGE];
        iovec local = {piece, static_cast<std::size_t>(PAGE - address % PAGE)};
        iovec remote = {reinterpret_cast<void*>(address), local.iov_len};
        const ssize_t count = process_vm_readv(thread, &local, 1, &remote, 1, 0);
        if (count <= 0)
            break;
        const std::size_t length = strnlen(piece, static_cast<std::size_t>(count));
        text.append(piece, length);
        if (length < static_cast<std::size_t>(count))
            break;
        address += static_cast<std::uint64_t>(count);
    }
    return text;
}

class Injector {
public:
    explicit Injector(const Options& options) : options(options) {}

    int run() {
        start();
        for (;;) {
            int status = 0;
            const pid_t thread = waitpid(-1, &status, __WALL);
            if (thread < 0 && errno == EINTR)
                continue;
            if (thread < 0)
                break;
            if (WIFSTOPPED(status))
                go_on(thread, status);
            else if (thread == program)
                result = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        write_report();
        return result;
    }

private:
    void start() {
        program = fork();
        if (program == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            execvp(options.program[0], options.program.data());
            _exit(127);
        }
        int status = 0;
        if (program < 0 || waitpid(program, &status, 0) != program || !WIFSTOPPED(status))
            throw std::runtime_error("cannot start the program");
        constexpr long WHAT = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACECLONE |
                              PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_TRACEEXEC;
        if (ptrace(PTRACE_SETOPTIONS, program, nullptr, WHAT) != 0)
            throw std::runtime_error(std::string("cannot step the program: ") + std::strerror(errno));
        ptrace(PTRACE_SYSCALL, program, nullptr, nullptr);
    }

    void go_on(pid_t thread, int status) {
        int signal = WSTOPSIG(status);
        const bool is_event = status >> 16 != 0;
        if (signal == (SIGTRAP | 0x80))
            meet_call(thread);
        if (signal == (SIGTRAP | 0x80) || is_event || signal == SIGSTOP || signal == SIGTRAP)
            signal = 0;
        ptrace(PTRACE_SYSCALL, thread, nullptr, signal);
    }

    void meet_call(pid_t thread) {
        __ptrace_syscall_info info = {};
        if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0)
            return;
        if (info.op == PTRACE_SYSCALL_INFO_EXIT && thread == failing_thread) {
            set_result(thread);
            failing_thread = 0;
        }
        if (info.op != PTRACE_SYSCALL_INFO_ENTRY)
            return;
        const auto call = CALLS.find(info.entry.nr);
        if (call == CALLS.end() || !is_below(thread, call->second, info.entry.args) || ++count != options.at)
            return;
        hit = call->second.name;
        if (options.fault == KILL)
            kill(program, SIGKILL);
        else
            skip(thread);
    }

    /// A call with a number that there is not does nothing.
    void skip(pid_t thread) {
        user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, thread, nullptr, &registers);
        registers.orig_rax = static_cast<unsigned long long>(-1);
        ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
        failing_thread = thread;
    }

    void set_result(pid_t thread) {
        user_regs_struct registers = {};
        ptrace(PTRACE_GETREGS, thread, nullptr, &registers);
        registers.rax = static_cast<unsigned long long>(-static_cast<long long>(options.fault));
        ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
    }

    bool is_below(pid_t thread, const Call& call, const std::uint64_t* arguments) const {
        if (call.file != NONE)
            return is_in_folder(get_open_file(thread, static_cast<int>(arguments[call.file])));
        for (int i = 0; i < 2 && call.path[i] != NONE; ++i) {
            const int folder =
                call.folder[i] == NONE ? AT_FDCWD : static_cast<int>(arguments[call.folder[i]]);
            std::string path = read_text(thread, arguments[call.path[i]]);
            if (path.empty() || path[0] != '/')
                path = get_open_file(thread, folder) + "/" + path;
            if (is_in_folder(path))
                return true;
        }
        return false;
    }

    static std::string get_open_file(pid_t thread, int number) {
        const std::string process = "/proc/" + std::to_string(thread);
        return read_link(number == AT_FDCWD ? process + "/cwd" : process + "/fd/" + std::to_string(number));
    }

    bool is_in_folder(const std::string& path) const {
        return path.compare(0, options.folder.size(), options.folder) == 0;
    }

    void write_report() const {
        FILE* file = std::fopen(options.report.c_str(), "w");
        if (!file || std::fprintf(file, "%lu\n%s\n", count, hit.c_str()) < 0 || std::fclose(file) != 0)
            throw std::runtime_error("cannot write the report");
    }

    const Options& options;
    pid_t program = 0;
    pid_t failing_thread = 0;
    unsigned long count = 0;
    std::string hit;
    int result = 127;
};

} // namespace

int main(int count, char* arguments[]) {
    try {
        const Options options = parse_options(count, arguments);
        return Injector(options).run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "inject_fault: %s\n", error.what());
        return 126;
    }
}
