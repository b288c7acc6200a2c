# For 64-bit Arm, compiled on another machine and run there by qemu-user: Debian's cross compiler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/aarch64-linux-gnu)
# It has headers only, which serve every machine; Debian files it under this one's name.
file(GLOB utf8cpp_DIR /usr/lib/*-linux-gnu/cmake/utf8cpp)
