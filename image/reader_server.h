#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace image {

/// The process that image readers are forked from. It is itself forked from a program that has no threads
/// yet, opens no file, and ends with the program, together with all its readers.
///
/// A program calls this first of all, before anything starts a thread. Where it fails, start_reader says why.
/// Does nothing when the server runs already, or when images are read in this process.
void start_reader_server();

/// True when the user wants images to be read without a process of their own: COLORIO_READ_IN_PROCESS is 1.
bool reads_in_process();

/// Has the server fork a reader that serves the other end of `socket` (see serve_images), and nothing else
/// open. Throws std::runtime_error with a reason when it cannot. Thread-safe.
pid_t start_reader(int socket);

/// Ends a reader, if it still runs, and answers how it ended: the status of waitpid, or nothing when the
/// server is gone. Thread-safe.
std::optional<int> end_reader(pid_t reader);

} // namespace image
