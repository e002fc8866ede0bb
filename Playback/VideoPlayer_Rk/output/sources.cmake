# The engine's video outputs, for inclusion by the engine's CMakeLists (and by
# tests that build the outputs on their own). Sets VIDEO_OUTPUT_SOURCES and
# VIDEO_OUTPUT_LIBS; the outputs use no Qt.
find_package(PkgConfig REQUIRED)
if(NOT TARGET PkgConfig::QUILL_OUTPUT_FFMPEG)
  pkg_check_modules(QUILL_OUTPUT_FFMPEG REQUIRED IMPORTED_TARGET GLOBAL libavutil libswscale)
endif()

set(_quill_output_dir "${CMAKE_CURRENT_LIST_DIR}")
set(VIDEO_OUTPUT_SOURCES
  ${_quill_output_dir}/IVideoOutput.h
  ${_quill_output_dir}/CreateVideoOutput.cpp
  ${_quill_output_dir}/CLS_DiscardVideoOutput.h
  ${_quill_output_dir}/CLS_OutputDiagnostics.h
  ${_quill_output_dir}/CLS_OutputDiagnostics.cpp
  ${_quill_output_dir}/CLS_VideoFrameTraits.h
  ${_quill_output_dir}/CLS_VideoFrameTraits.cpp
  ${_quill_output_dir}/CLS_SharedLibrary.h
  ${_quill_output_dir}/CLS_QGLRenderLibrary.h
  ${_quill_output_dir}/CLS_QGLRenderLibrary.cpp
  ${_quill_output_dir}/CLS_GLWidgetVideoOutput.h
  ${_quill_output_dir}/CLS_GLWidgetVideoOutput.cpp
  ${_quill_output_dir}/CLS_NativeWindowSurface.h
  ${_quill_output_dir}/CLS_NativeWindowVideoOutput.h
  ${_quill_output_dir}/CLS_NativeWindowVideoOutput.cpp)
set(VIDEO_OUTPUT_LIBS PkgConfig::QUILL_OUTPUT_FFMPEG)

if(WIN32)
  list(APPEND VIDEO_OUTPUT_SOURCES
    ${_quill_output_dir}/CLS_SharedLibrary_win.cpp
    ${_quill_output_dir}/CLS_NativeWindowSurface_win.cpp)
  list(APPEND VIDEO_OUTPUT_LIBS gdi32 user32)
else()
  if(NOT TARGET PkgConfig::QUILL_OUTPUT_XCB)
    pkg_check_modules(QUILL_OUTPUT_XCB REQUIRED IMPORTED_TARGET GLOBAL xcb)
  endif()
  list(APPEND VIDEO_OUTPUT_SOURCES
    ${_quill_output_dir}/CLS_SharedLibrary_posix.cpp
    ${_quill_output_dir}/CLS_NativeWindowSurface_posix.cpp)
  list(APPEND VIDEO_OUTPUT_LIBS PkgConfig::QUILL_OUTPUT_XCB ${CMAKE_DL_LIBS})
endif()

# The outputs read the frame-sink declarations of QGLRender; its header is
# all they take from it (the library itself is found at run time).
if(NOT TARGET quill_video_output_headers)
  add_library(quill_video_output_headers INTERFACE)
  target_include_directories(quill_video_output_headers INTERFACE
    "${_quill_output_dir}" "${_quill_output_dir}/../../QGLRender")
endif()
list(APPEND VIDEO_OUTPUT_LIBS quill_video_output_headers)
unset(_quill_output_dir)
