#include "image/reader_server.h"

int main() {
    image::run_reader_server();
}
