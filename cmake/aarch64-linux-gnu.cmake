# Cross build for the handsets' processor (64-bit ARM) with Debian's cross toolchain
# (g++-aarch64-linux-gnu) and Debian's arm64 multiarch libraries (dpkg --add-architecture
# arm64; android-liblog-dev:arm64, android-libutils-dev:arm64). Test programs run under
# qemu-aarch64 user emulation (package qemu-user), through CTest.
#
#   cmake -S . -B build-arm64 -DCMAKE_TOOLCHAIN_FILE=cmake/aarch64-linux-gnu.cmake \
#         -DMMI_TARGET_JAVA_HOME=<an arm64 JDK>
#
# (./mmi test --arm64 does this.) Programs the build itself runs (code generators, javac, jar)
# are the host's: find_program never looks in the target's folders.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# The emulator runs target programs for CTest and for test discovery. The programs use the
# multiarch arm64 C library (/lib/ld-linux-aarch64.so.1, /lib/aarch64-linux-gnu): the same
# one the arm64 packages above were built for and pull in. No -L prefix: with
# -L /usr/aarch64-linux-gnu the cross toolchain's dynamic loader would be combined with the
# multiarch libc.so.6 of another Debian revision, and a JVM hangs at start-up on that mix.
find_program(MMI_QEMU_AARCH64 qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${MMI_QEMU_AARCH64})

# Headers and libraries: the cross toolchain's sysroot and the multiarch folders of the
# host's root (CMAKE_LIBRARY_ARCHITECTURE selects /usr/lib/aarch64-linux-gnu there).
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE BOTH)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)
