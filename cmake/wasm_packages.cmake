# The header-only libraries of the WebAssembly module. The compiler finds Debian's in /usr/include,
# behind the headers of wasi; what the packages tell CMake would put them in front.
foreach(target fmt::fmt-header-only nlohmann_json::nlohmann_json utf8cpp)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
endforeach()
target_compile_definitions(fmt::fmt-header-only INTERFACE FMT_HEADER_ONLY=1)

macro(pokermath_provide_package method name)
  set(${name}_FOUND ON)
endmacro()
cmake_language(SET_DEPENDENCY_PROVIDER pokermath_provide_package SUPPORTED_METHODS FIND_PACKAGE)
