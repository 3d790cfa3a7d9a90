# One place for what every target is compiled with.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # What makes use of a precompiled header is otherwise never cached.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()
find_program(MOLD_PROGRAM mold)
# Clang's fuzzer and sanitizer runtimes are linked by its own choice of linker.
if(MOLD_PROGRAM AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_link_options(-fuse-ld=mold)
endif()

# Warnings travel with this interface target, which every target of ours links.
add_library(dravik_options INTERFACE)
target_include_directories(dravik_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(dravik_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2 -Wimplicit-fallthrough)
if(DRAVIK_WERROR)
  target_compile_options(dravik_options INTERFACE -Werror)
endif()
if(DRAVIK_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Instrumented code looks uninitialized to it where it is not.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
  add_compile_options(-fsanitize=${DRAVIK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${DRAVIK_SANITIZE})
endif()
if(DRAVIK_COVERAGE)
  add_compile_options(--coverage -O0)
  add_link_options(--coverage)
endif()
