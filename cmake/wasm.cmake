# How the WebAssembly module of web/ is compiled: Debian's clang-19 for wasi, without exceptions and
# threads.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(POKERMATH_WASM ON)

set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_FLAGS_INIT "-msimd128 -fno-exceptions")
set(CMAKE_CXX_FLAGS_RELEASE_INIT "-DNDEBUG")
set(CMAKE_EXECUTABLE_SUFFIX_CXX .wasm)
# It makes no program that would run here.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
