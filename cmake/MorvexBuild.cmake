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
  # Clones in different folders share what was compiled.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=true ${MORVEX_CCACHE})
endif()

# The system's records have the layout of these versions, for users as for us.
set(MORVEX_WINDOWS_VERSIONS WINVER=0x0A00 _WIN32_WINNT=0x0A00 _RICHEDIT_VER=0x0800)

add_library(morvex_options INTERFACE)
target_include_directories(morvex_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(morvex_options INTERFACE
  -Wall -Wextra -Wpedantic -pedantic-errors -Werror -Wconversion -Wshadow -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wundef -Wcast-align -Wimplicit-fallthrough)
if(WIN32)
  target_compile_definitions(morvex_options INTERFACE
    WIN32_LEAN_AND_MEAN NOMINMAX ${MORVEX_WINDOWS_VERSIONS})
  # <windows.h> and its kin are written in the old style.
  target_compile_options(morvex_options INTERFACE -Wno-old-style-cast)
else()
  # Our own calls of our own functions are direct, as on Windows: nothing replaces them at load.
  target_compile_options(morvex_options INTERFACE -fno-semantic-interposition)
  # What a thread has of its own is small enough to be found without a call.
  target_compile_options(morvex_options INTERFACE -ftls-model=initial-exec)
  target_link_options(morvex_options INTERFACE -Wl,--as-needed -Wl,-Bsymbolic-functions)
  # Clang puts the sanitizers' runtime into the program alone: a shared library finds it there.
  if(NOT (MORVEX_SANITIZE AND CMAKE_CXX_COMPILER_ID MATCHES Clang))
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

# What the distributions' package note calls the kind of package that this becomes: deb, rpm, ...
set(MORVEX_PACKAGE_TYPE "generic" CACHE STRING "Kind of package, for the binaries' package note")
if(WIN32)
  enable_language(RC)
endif()

# morvex_version(<target> <description>): the binary tells its version, in a resource on Windows and
# in ELF notes elsewhere.
function(morvex_version target file_description)
  set(file_version ${PROJECT_VERSION}.0)
  set(generated ${CMAKE_CURRENT_BINARY_DIR}/${target}.version)
  if(WIN32)
    string(REPLACE "." "," version_numbers ${file_version})
    get_target_property(type ${target} TYPE)
    set(file_type 2)
    if(type STREQUAL EXECUTABLE)
      set(file_type 1)
    endif()
    get_target_property(file_name ${target} OUTPUT_NAME)
    if(NOT file_name)
      set(file_name ${target})
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${generated}.rc @ONLY)
    target_sources(${target} PRIVATE ${generated}.rc)
  else()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/VersionNote.cpp.in ${generated}.cpp @ONLY)
    target_sources(${target} PRIVATE ${generated}.cpp)
  endif()
endfunction()

# morvex_public_target(<target> <name>): users link it as Morvex::<name>, inside the project too.
function(morvex_public_target target name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(${target} INTERFACE cxx_std_20)
  add_library(Morvex::${name} ALIAS ${target})
  set_property(GLOBAL APPEND PROPERTY MORVEX_LIBRARIES ${target})
  target_include_directories(${target} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:include/morvex>)
endfunction()

# morvex_shared_library(<target> <Name>): <Name>.dll on Windows, lib<name>.so with an SONAME elsewhere.
function(morvex_shared_library target name)
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name})
  else()
    string(TOLOWER ${name} lower)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${lower}
      VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  endif()
endfunction()
