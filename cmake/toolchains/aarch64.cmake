# Debian's cross compiler for arm64, whose programs run in qemu's emulation of a processor. Libraries for arm64 that are
# not of the compiler lie below QB_ARM64_PACKAGES, as scripts/fetch_arm64 unpacks them.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QB_ARM64_PACKAGES)

set(CMAKE_FIND_ROOT_PATH "${QB_ARM64_PACKAGES}" /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
# For libraries that others need in turn.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${QB_ARM64_PACKAGES}/usr/lib/aarch64-linux-gnu")

set(CMAKE_CROSSCOMPILING_EMULATOR
  qemu-aarch64-static -L /usr/aarch64-linux-gnu -E LD_LIBRARY_PATH=${QB_ARM64_PACKAGES}/usr/lib/aarch64-linux-gnu)
