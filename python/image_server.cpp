// The process that image readers of the package come from.
#include "image/reader_server.h"

int main() {
    image::run_reader_server();
}
