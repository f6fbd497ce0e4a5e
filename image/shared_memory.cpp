#include "image/shared_memory.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace image {

namespace {

constexpr int FIXED_SIZE = F_SEAL_SHRINK | F_SEAL_GROW;

[[noreturn]] void fail(int number) {
    throw std::system_error(number, std::generic_category());
}

} // namespace

SharedMemory::SharedMemory(std::size_t wanted) {
    SharedMemory guard; // closes the descriptor when one of the calls fails
    guard.descriptor = memfd_create("colorio-pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (guard.descriptor < 0 || ftruncate(guard.descriptor, static_cast<off_t>(wanted)) != 0 ||
        fcntl(guard.descriptor, F_ADD_SEALS, FIXED_SIZE | F_SEAL_SEAL) != 0)
        fail(errno);
    guard.length = wanted;
    guard.map(false);
    *this = std::move(guard);
}

SharedMemory::SharedMemory(int received_descriptor, std::size_t wanted) {
    SharedMemory guard;
    guard.descriptor = received_descriptor;
    struct stat status;
    if (fstat(received_descriptor, &status) != 0)
        fail(errno);
    const int seals = fcntl(received_descriptor, F_GET_SEALS);
    if (seals < 0 || (seals & FIXED_SIZE) != FIXED_SIZE || status.st_size <= 0 ||
        static_cast<std::size_t>(status.st_size) < wanted)
        fail(EBADMSG);
    guard.length = static_cast<std::size_t>(status.st_size);
    guard.map(true);
    *this = std::move(guard);
}

SharedMemory::~SharedMemory() {
    if (address != nullptr)
        munmap(address, length);
    if (descriptor >= 0)
        close(descriptor);
}

SharedMemory::SharedMemory(SharedMemory&& other) noexcept {
    *this = std::move(other);
}

SharedMemory& SharedMemory::operator=(SharedMemory&& other) noexcept {
    std::swap(descriptor, other.descriptor);
    std::swap(address, other.address);
    std::swap(length, other.length);
    return *this;
}

bool SharedMemory::is_same(int other_descriptor) const {
    struct stat mine, other;
    return descriptor >= 0 && fstat(descriptor, &mine) == 0 && fstat(other_descriptor, &other) == 0 &&
           mine.st_dev == other.st_dev && mine.st_ino == other.st_ino;
}

/// With `filled` maps all pages at once, which saves a page fault for each; they must exist already.
void SharedMemory::map(bool filled) {
    void* place = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED | (filled ? MAP_POPULATE : 0),
                       descriptor, 0);
    if (place == MAP_FAILED)
        fail(errno);
    address = static_cast<std::byte*>(place);
}

} // namespace image
