# Play history: the store and its file, the panel, its rows and title bar,
# driven through the real message box module.
quill_add_qtest(tst_HistroyList
  SOURCES "${CMAKE_CURRENT_LIST_DIR}/tst_HistroyList.cpp"
  LIBRARIES ModuleKoPlayerCore ${CMAKE_DL_LIBS}
  TIMEOUT 60)
target_include_directories(tst_HistroyList PRIVATE "${PROJECT_SOURCE_DIR}/tests/msgbox")
add_dependencies(tst_HistroyList KoLog WgtMsgBox)
