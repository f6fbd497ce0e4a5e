#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace image {

/// Starts the server process, from which reader processes are forked. The server itself is forked from this
/// process, opens no files, and ends with this process, together with all its readers.
///
/// Call it at the beginning of `main`, before any thread is started. If it fails, start_reader reports the
/// reason. Does nothing when the server is running or when images are read in this process.
void start_reader_server();

/// The same for a process that has threads already, which cannot be forked safely: the server is the program
/// at `program`, which calls run_reader_server. Thread-safe.
void start_reader_server(const std::string& program);

/// The descriptor of the socket that a program started as a server gets.
inline constexpr int SERVER_SOCKET = 3;

/// `main` of the server's program: serves the process at the other end of SERVER_SOCKET until that ends.
[[noreturn]] void run_reader_server();

/// Called in a forked copy of the process: the server goes on serving the original alone. Another one may be
/// started; without one no images can be read.
void abandon_reader_server();

/// True when images are read in this process, without a reader process: COLORIO_READ_IN_PROCESS is 1.
bool reads_in_process();

/// Makes the server fork a reader process that runs serve_images on `socket`, with no other descriptor open.
/// Returns its process id. Throws std::runtime_error with the reason when it cannot. Thread-safe.
pid_t start_reader(int socket);

/// Ends a reader process, if it is running, and returns its status as waitpid does; nothing when the server
/// is not running. Thread-safe.
std::optional<int> end_reader(pid_t reader);

} // namespace image
