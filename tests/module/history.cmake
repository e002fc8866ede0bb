# Play history: the store and its file, the panel, its rows and title bar,
# driven through the real message box module.
foreach(_test tst_HistroyStore tst_HistroyPanel)
  if(EXISTS "${CMAKE_CURRENT_LIST_DIR}/${_test}.cpp")
    quill_add_qtest(${_test}
      SOURCES "${CMAKE_CURRENT_LIST_DIR}/${_test}.cpp"
      LIBRARIES ModuleKoPlayerCore ${CMAKE_DL_LIBS}
      TIMEOUT 60)
    target_include_directories(${_test} PRIVATE "${PROJECT_SOURCE_DIR}/tests/msgbox")
    add_dependencies(${_test} KoLog WgtMsgBox)
  endif()
endforeach()
