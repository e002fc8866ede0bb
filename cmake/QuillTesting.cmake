# quill_add_qtest(<name> SOURCES <src>... [LIBRARIES <lib>...] [DISPLAY] [TIMEOUT <s>] [LABELS <l>...])
#
# Builds one Qt Test executable into build/tests and registers it with ctest.
# Widget tests run on the offscreen platform; DISPLAY tests (OpenGL, native
# windows, end to end) run on xcb under a private Xvfb that the launcher starts
# and stops. Sound always goes to SDL's dummy driver unless a test says so.
set(QUILL_TEST_DIR "${PROJECT_BINARY_DIR}/tests")
set(QUILL_XVFB_LAUNCHER "${PROJECT_SOURCE_DIR}/scripts/with-xvfb.sh")

function(quill_add_qtest name)
  cmake_parse_arguments(ARG "DISPLAY" "TIMEOUT" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE Quill::config Qt5::Test quill_testsupport ${ARG_LIBRARIES})
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${QUILL_TEST_DIR}"
    BUILD_RPATH "${QUILL_BIN_DIR}"
    INSTALL_RPATH "${QUILL_BIN_DIR}")
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  set(_env "SDL_AUDIODRIVER=dummy" "QT_LOGGING_RULES=qt.qpa.*=false")
  if(ARG_DISPLAY)
    add_test(NAME ${name} COMMAND "${QUILL_XVFB_LAUNCHER}" $<TARGET_FILE:${name}>)
    list(APPEND _env "QT_QPA_PLATFORM=xcb")
    list(APPEND ARG_LABELS display)
  else()
    add_test(NAME ${name} COMMAND $<TARGET_FILE:${name}>)
    list(APPEND _env "QT_QPA_PLATFORM=offscreen")
  endif()
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "${_env}"
    WORKING_DIRECTORY "${QUILL_TEST_DIR}")
  if(ARG_LABELS)
    set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}")
  endif()
endfunction()
