# Shared build settings for every Quill Player target.
#
# Everything built lands in one folder, QUILL_BIN_DIR, which is a complete,
# runnable installation: executables, shared libraries, skins and translations.

if(NOT DEFINED QUILL_BIN_DIR)
  set(QUILL_BIN_DIR "${PROJECT_BINARY_DIR}/bin")
endif()
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${QUILL_BIN_DIR}")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${QUILL_BIN_DIR}")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

# Libraries find their siblings in their own folder, and so do the executables.
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_SKIP_BUILD_RPATH OFF)
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

# The installed layout: the executables in bin, the suite's libraries and the
# module in a private folder, read-only data in share/quillplayer. The host
# finds the other two from its own folder, so they are kept as relative paths.
include(GNUInstallDirs)
set(QUILL_INSTALL_LIBDIR "${CMAKE_INSTALL_LIBDIR}/quillplayer")
set(QUILL_INSTALL_DATADIR "${CMAKE_INSTALL_DATADIR}/quillplayer")
file(RELATIVE_PATH QUILL_LIBDIR_FROM_BINDIR
  "/${CMAKE_INSTALL_BINDIR}" "/${QUILL_INSTALL_LIBDIR}")
file(RELATIVE_PATH QUILL_DATADIR_FROM_BINDIR
  "/${CMAKE_INSTALL_BINDIR}" "/${QUILL_INSTALL_DATADIR}")

option(QUILL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
# clang only: instruments the whole tree for libFuzzer and adds the fuzz
# targets (scripts/fuzz.sh).
option(QUILL_FUZZ "Build the libFuzzer targets under fuzz/" OFF)
if(QUILL_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  message(FATAL_ERROR "QUILL_FUZZ needs clang (libFuzzer); scripts/fuzz.sh configures it")
endif()

add_library(quill_config INTERFACE)
add_library(Quill::config ALIAS quill_config)
target_compile_features(quill_config INTERFACE cxx_std_17)
target_compile_definitions(quill_config INTERFACE
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_USE_QSTRINGBUILDER
  QT_DISABLE_DEPRECATED_BEFORE=0x050F00
  QT_MESSAGELOGCONTEXT)
if(MSVC)
  target_compile_options(quill_config INTERFACE /W4 /permissive- /utf-8)
else()
  target_compile_options(quill_config INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wcast-align
    -Woverloaded-virtual -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough)
  target_link_options(quill_config INTERFACE -Wl,--as-needed)
  if(QUILL_SANITIZE)
    target_compile_options(quill_config INTERFACE
      -fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(quill_config INTERFACE -fsanitize=address,undefined)
  endif()
  if(QUILL_FUZZ)
    # Coverage for the fuzzer in every library; only the fuzz targets link
    # libFuzzer's main.
    target_compile_options(quill_config INTERFACE
      -fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
      -fno-sanitize-recover=undefined)
    target_link_options(quill_config INTERFACE -fsanitize=address,undefined)
  endif()
endif()

# quill_shared_library(<name> SOURCES ...): a plug-in style shared library that
# exports its contract only and finds its siblings through $ORIGIN.
function(quill_set_library_props target)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    BUILD_RPATH "$ORIGIN"
    INSTALL_RPATH "$ORIGIN")
endfunction()
