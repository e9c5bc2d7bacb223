# What every target of the project is built with, and the shape of a shared library of ours.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# One folder for everything that runs: a DLL is found beside the program that needs it.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

find_program(MORVEX_CCACHE ccache)
if(MORVEX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${MORVEX_CCACHE})
endif()

add_library(morvex_options INTERFACE)
target_include_directories(morvex_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(morvex_options INTERFACE
  -Wall -Wextra -Wpedantic -pedantic-errors -Werror -Wconversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wcast-align -Wimplicit-fallthrough)
if(WIN32)
  target_compile_definitions(morvex_options INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX WINVER=0x0A00 _WIN32_WINNT=0x0A00 _RICHEDIT_VER=0x0800)
  # <windows.h> and its kin are written in the old style.
  target_compile_options(morvex_options INTERFACE -Wno-old-style-cast)
else()
  # Our own calls of our own functions are direct, as on Windows: nothing replaces them at load.
  target_compile_options(morvex_options INTERFACE -fno-semantic-interposition)
  target_link_options(morvex_options INTERFACE -Wl,--as-needed -Wl,-Bsymbolic-functions)
  if(NOT (MORVEX_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang"))
    # A library of Clang's finds the sanitizers in the program.
    target_link_options(morvex_options INTERFACE -Wl,--no-undefined)
  endif()
  # A unique symbol, as GCC makes of a static in an inline function, would pin the library in
  # memory: it could no more be unloaded.
  target_compile_options(morvex_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
endif()

if(MORVEX_SANITIZE)
  # The check of virtual tables looks at memory through a pipe, and reports healthy objects where a
  # test has left the process without descriptors.
  add_compile_options(-fsanitize=${MORVEX_SANITIZE} -fno-sanitize=vptr -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${MORVEX_SANITIZE})
endif()
if(MORVEX_COVERAGE)
  add_compile_options(--coverage)
  add_link_options(--coverage)
endif()

# morvex_shared_library(<target> <Name>): <Name>.dll on Windows, lib<name>.so with an SONAME elsewhere.
function(morvex_shared_library target name)
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name})
  else()
    string(TOLOWER ${name} lower)
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${lower}
      VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  endif()
endfunction()
