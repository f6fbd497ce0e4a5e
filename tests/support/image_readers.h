#pragma once

#include "image/reader_server.h"

/// Starts the server that image readers come from as a program does first of all: no thread runs yet.
inline const bool IMAGE_READERS_ARE_READY = (image::start_reader_server(), true);
