#include "image/reader_server.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "image/message.h"
#include "image/message_channel.h"
#include "image/reader_loop.h"

namespace image {

namespace {

constexpr char IN_PROCESS_VARIABLE[] = "COLORIO_READ_IN_PROCESS";

/// Request to the server: 0 to start a reader, else the id of the reader to end.
struct Order {
    pid_t reader;
};
/// Answer to a start: the id of the reader, or the negative error number. To an end: the status of the
/// reader.
struct Answer {
    int value;
};

/// The program's connection to its server.
struct ServerConnection {
    std::mutex mutex;
    int socket = -1;
    int error = 0; ///< Error number of a failed start.
};

/// Never destroyed: other threads may use it until the end, or hold its mutex in a process that was forked.
ServerConnection*& get_connection_place() {
    static auto* connection = new ServerConnection;
    return connection;
}

ServerConnection& get_connection() {
    return *get_connection_place();
}

/// Closes all descriptors but `socket`, which becomes 3, so that this process keeps no pipe open. Discards
/// what libraries print. Returns 3.
int leave_only(int socket) {
    constexpr int KEPT = STDERR_FILENO + 1;
    if (socket < KEPT)
        socket = fcntl(socket, F_DUPFD, KEPT + 1);
    if (socket != KEPT)
        dup2(socket, KEPT);
    const int null = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(null, standard);
    close_range(KEPT + 1, ~0u, 0);
    return KEPT;
}

/// Resets signal handlers and the signal mask.
void reset_signals() {
    for (int number = 1; number < NSIG; ++number)
        std::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

class ReaderServer {
public:
    explicit ReaderServer(int socket) : channel(socket) {}

    [[noreturn]] void run() {
        MessageChannel::Received message;
        while (channel.receive(message) == MessageChannel::Outcome::RECEIVED) {
            const auto order = MessageReader(message.bytes).get<Order>();
            MessageWriter answer;
            answer.add(Answer{order.reader == 0 ? start(message.descriptor) : end(order.reader)});
            if (message.descriptor >= 0)
                close(message.descriptor);
            if (!channel.send(answer.get_bytes()))
                break;
        }
        for (const pid_t reader : readers)
            kill(reader, SIGKILL);
        _exit(0);
    }

private:
    int start(int reader_socket) {
        const pid_t reader = fork();
        if (reader == 0)
            serve_images(leave_only(reader_socket));
        if (reader < 0)
            return -errno;
        readers.push_back(reader);
        return reader;
    }

    /// A reader that has ended keeps its id until waitpid, so that no other process can be signaled.
    int end(pid_t reader) {
        const auto known = std::find(readers.begin(), readers.end(), reader);
        if (known == readers.end())
            return 0;
        readers.erase(known);
        kill(reader, SIGKILL);
        int status = 0;
        while (waitpid(reader, &status, 0) < 0 && errno == EINTR) {
        }
        return status;
    }

    MessageChannel channel;
    std::vector<pid_t> readers;
};

[[noreturn]] void serve(int socket) {
    setpgid(0, 0); // an interrupt from the terminal is for the program, which then ends its readers
    reset_signals();
    ReaderServer(leave_only(socket)).run();
}

/// Starts the program with the socket as its SERVER_SOCKET. Returns an error number.
int spawn(const std::string& program, int socket) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, socket, SERVER_SOCKET);
    std::string name = program;
    char* arguments[] = {name.data(), nullptr};
    pid_t server;
    const int error = posix_spawn(&server, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

/// Connects this process to a server that `start` starts with the other end of the connection, unless there
/// is one. `start` returns an error number.
template <class Start>
void connect_to_server(const Start& start) {
    ServerConnection& connection = get_connection();
    std::lock_guard<std::mutex> lock(connection.mutex);
    if (connection.socket >= 0 || reads_in_process())
        return;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        connection.error = errno;
        return;
    }
    connection.error = start(ends[1]);
    close(ends[1]);
    if (connection.error != 0)
        close(ends[0]);
    else
        connection.socket = ends[0];
}

std::optional<int> ask(pid_t reader, int descriptor) {
    ServerConnection& connection = get_connection();
    std::lock_guard<std::mutex> lock(connection.mutex);
    const MessageChannel channel(connection.socket);
    MessageWriter order;
    order.add(Order{reader});
    MessageChannel::Received answer;
    if (connection.socket < 0 || !channel.send(order.get_bytes(), descriptor) ||
        channel.receive(answer) != MessageChannel::Outcome::RECEIVED)
        return std::nullopt;
    return MessageReader(answer.bytes).get<Answer>().value;
}

} // namespace

bool reads_in_process() {
    const char* wish = std::getenv(IN_PROCESS_VARIABLE);
    return wish != nullptr && std::string_view(wish) == "1";
}

void start_reader_server() {
    connect_to_server([](int socket) {
        const pid_t server = fork();
        if (server == 0)
            serve(socket);
        return server < 0 ? errno : 0;
    });
}

void start_reader_server(const std::string& program) {
    connect_to_server([&](int socket) { return spawn(program, socket); });
}

void run_reader_server() {
    serve(SERVER_SOCKET);
}

void abandon_reader_server() {
    if (const int socket = get_connection().socket; socket >= 0)
        close(socket);
    get_connection_place() = new ServerConnection; // the mutex of the old one may be locked for ever
}

pid_t start_reader(int socket) {
    const std::optional<int> reader = ask(0, socket);
    if (!reader) {
        const int error = get_connection().error;
        throw std::runtime_error(error != 0 ? std::strerror(error)
                                            : "the process that starts image readers is not running");
    }
    if (*reader < 0)
        throw std::runtime_error(std::strerror(-*reader));
    return *reader;
}

std::optional<int> end_reader(pid_t reader) {
    return ask(reader, -1);
}

} // namespace image
